#include "ui/base/PageTabs.h"
#include "ui/binding/ControlAdapter.h"
#include "ui/binding/ControlContext.h"
#include "ui/page/TabCaptions.h"

#include <memory>

namespace paravue
{
namespace
{

class TabWidgetAdapter : public TypedAdapter<PageTabs>
{
public:
    TabWidgetAdapter()
        : TypedAdapter({.children = {{"tab"}, {"selection"}}, .keys = {}, .hasPages = true, .cost = 4})
    {
    }

    QWidget *create(ControlContext &, const Control &, QWidget *parent) const override
    {
        return new PageTabs(parent);
    }

    Qt::Orientations fills(const QDomElement &) const override { return Qt::Horizontal | Qt::Vertical; }
    PageTabs *tabs(const Control &control) const override { return &widget(control); }

    bool load(ControlContext &context, const Control &control) const override
    {
        PageTabs &tabs = widget(control);
        const bool changed = showTabCaptions(control.element, tabs,
                                             [&](const QString &raw) { return context.text(control, raw); });
        // A reload does not leave the page that the user has opened.
        const QDomElement selection = control.element.firstChildElement(QStringLiteral("selection"));
        if (!control.loaded && !selection.isNull())
            tabs.setCurrentIndex(selection.text().toInt());
        return changed;
    }
};

} // namespace

std::unique_ptr<const ControlAdapter> makeTabWidgetAdapter()
{
    return std::make_unique<TabWidgetAdapter>();
}

} // namespace paravue
