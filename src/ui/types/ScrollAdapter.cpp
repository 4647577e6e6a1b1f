#include "ui/base/Alignment.h"
#include "ui/base/SliderLook.h"
#include "ui/binding/ControlAdapter.h"
#include "ui/binding/ControlContext.h"
#include "ui/description/InterfaceDocument.h"
#include "ui/page/GridCell.h"
#include "ui/types/AdapterTexts.h"

#include <QScrollBar>
#include <QSignalBlocker>

#include <algorithm>
#include <memory>

namespace paravue
{
namespace
{

class ScrollAdapter : public TypedAdapter<QScrollBar>
{
public:
    ScrollAdapter()
        : TypedAdapter({.changes = {onSignal<&QScrollBar::valueChanged>},
                        .attributes = {orientationRule(), {"minvalue"}, {"maxvalue"}, {"value"}},
                        .range = RangeRule(),
                        .runsCalls = true,
                        .hasUnfitValues = true})
    {
    }

    QWidget *create(ControlContext &, const Control &control, QWidget *parent) const override
    {
        const QDomElement &element = control.element;
        auto *bar = new QScrollBar(direction(element), parent);
        const auto [least, most] = traits().range->rangeOf(element);
        bar->setRange(least, most);
        bar->setSingleStep(1);
        bar->setPageStep(std::max(1, int((qint64(bar->maximum()) - bar->minimum()) / 10)));
        bar->setValue(intAttribute(element, QStringLiteral("value")));
        bar->setFocusPolicy(Qt::StrongFocus);
        // Qt means the direction in which a page moves: its right arrow would make a value smaller.
        bar->setInvertedControls(bar->orientation() == Qt::Vertical);
        showAsSlider(*bar);
        return bar;
    }

    Qt::Orientations fills(const QDomElement &item) const override { return direction(item); }

    bool load(ControlContext &context, const Control &control) const override
    {
        QScrollBar &bar = widget(control);
        const QDomElement key = control.element.firstChildElement(QStringLiteral("key"));
        if (key.isNull())
            return false;
        const int before = bar.value();
        const QSignalBlocker silent(bar);
        bar.setValue(context.value(control, addressText(key)).toInt());
        return bar.value() != before;
    }

    std::optional<QString> unfitValue(ControlContext &context, const Control &control) const override
    {
        const QString key = firstAddress(control.element);
        const QString value = key.isEmpty() ? QString() : context.value(control, key);
        bool isNumber = false;
        const int position = value.toInt(&isNumber);
        const bool isShown = value.isEmpty() || (isNumber && position == widget(control).value());
        return isShown ? std::nullopt : std::optional(value);
    }

    QList<Assignment> assignments(ControlContext &, const Control &control) const override
    {
        return assignmentToFirstKey(control, QString::number(widget(control).value()));
    }

private:
    static Qt::Orientation direction(const QDomElement &element)
    {
        return orientation(element.attribute(QStringLiteral("orientation")));
    }
};

} // namespace

std::unique_ptr<const ControlAdapter> makeScrollAdapter()
{
    return std::make_unique<ScrollAdapter>();
}

} // namespace paravue
