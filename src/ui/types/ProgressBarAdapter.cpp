#include "ui/binding/ControlAdapter.h"
#include "ui/binding/ControlContext.h"
#include "ui/description/InterfaceDocument.h"
#include "ui/types/AdapterTexts.h"

#include <QProgressBar>

#include <algorithm>
#include <memory>

namespace paravue
{
namespace
{

class ProgressBarAdapter : public TypedAdapter<QProgressBar>
{
public:
    ProgressBarAdapter()
        : TypedAdapter({.attributes = {{"minvalue"}, {"maxvalue"}, {"value"}},
                        .range = RangeRule(),
                        .showsUnit = true,
                        .cost = 5})
    {
    }

    QWidget *create(ControlContext &, const Control &control, QWidget *parent) const override
    {
        auto *bar = new QProgressBar(parent);
        const auto [least, most] = traits().range->rangeOf(control.element);
        bar->setRange(least, most);
        bar->setValue(intAttribute(control.element, QStringLiteral("value")));
        return bar;
    }

    Qt::Orientations fills(const QDomElement &) const override { return Qt::Horizontal; }

    bool load(ControlContext &context, const Control &control) const override
    {
        QProgressBar &bar = widget(control);
        // Without a unit the bar shows how full it is, in per cent.
        if (const QString unit = unitBehind(context, control); !unit.isEmpty())
            bar.setFormat(QStringLiteral("%v") + unit);
        const QDomElement key = control.element.firstChildElement(QStringLiteral("key"));
        if (key.isNull())
            return false;
        const int before = bar.value();
        // QProgressBar ignores a value outside its range, and would go on showing the last one.
        const int value = context.value(control, addressText(key)).toInt();
        bar.setValue(qBound(bar.minimum(), value, bar.maximum()));
        return bar.value() != before;
    }
};

} // namespace

std::unique_ptr<const ControlAdapter> makeProgressBarAdapter()
{
    return std::make_unique<ProgressBarAdapter>();
}

} // namespace paravue
