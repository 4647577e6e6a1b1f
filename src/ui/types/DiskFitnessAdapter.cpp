#include "controls/cDiskFitness.h"
#include "ui/base/WindowText.h"
#include "ui/binding/ControlAdapter.h"
#include "ui/binding/ControlContext.h"
#include "ui/description/InterfaceDocument.h"
#include "ui/types/DescribedSize.h"

#include <QPainter>
#include <QProgressBar>

#include <memory>

namespace paravue
{
namespace
{

const QString GreenBar =
    QStringLiteral("QProgressBar {border: 0.5px solid white; border-radius: 2px; text-align: center;}"
                   "QProgressBar::chunk { border-radius: 2px; background: #32CD32;}");
const QString RedBar =
    QStringLiteral("QProgressBar {border: 0.5px solid white; border-radius: 2px; text-align: center;}"
                   "QProgressBar::chunk { border-radius: 2px; background: #FF0000;}");

/// On a light page the white border of the style sheets would not show how long a full bar is.
class HealthBar : public QProgressBar
{
public:
    using QProgressBar::QProgressBar;

protected:
    void paintEvent(QPaintEvent *event) override
    {
        QProgressBar::paintEvent(event);
        QColor outline = palette().color(QPalette::WindowText);
        outline.setAlphaF(0.4F);
        QPainter painter(this);
        painter.setRenderHint(QPainter::Antialiasing);
        painter.setPen(outline);
        painter.drawRoundedRect(QRectF(rect()).adjusted(0.5, 0.5, -0.5, -0.5), 2, 2);
    }
};

QString healthText(const cDiskFitness &fitness)
{
    if (fitness.report().isEmpty())
        return WindowText::tr("No report of this disk");
    return WindowText::tr("Health: %1%\nHours in use: %2\nReallocated sectors: %3")
        .arg(QString::number(fitness.healthPercent), QString::number(fitness.powerOnHours),
             QString::number(fitness.reallocatedRaw));
}

/// A bar of a fixed size that shows how healthy the disk is whose S.M.A.R.T. report stands at the address of
/// the first "key" (see cDiskFitness): green from 30 on, red below. The figure itself is in the tool tip,
/// unless the description has one of its own, and in the value that screen readers hear. Writes nothing.
class DiskFitnessAdapter : public TypedAdapter<QProgressBar>
{
public:
    DiskFitnessAdapter()
        : TypedAdapter(
              {.attributes = {{"minvalue"}, {"maxvalue"}}, .range = RangeRule{.usualMost = 100}, .cost = 3})
    {
    }

    QWidget *create(ControlContext &, const Control &control, QWidget *parent) const override
    {
        auto *bar = new HealthBar(parent);
        const auto [least, most] = traits().range->rangeOf(control.element);
        bar->setRange(least, most);
        bar->setTextVisible(false);
        bar->setFixedSize(describedSize(control.element, bar->sizeHint()));
        return bar;
    }

    bool load(ControlContext &context, const Control &control) const override
    {
        QProgressBar &bar = widget(control);
        const QString key = firstAddress(control.element);
        const cDiskFitness fitness(nullptr, key.isEmpty() ? QString() : context.value(control, key));
        const int before = bar.value();
        bar.setValue(qBound(bar.minimum(), fitness.healthPercent, bar.maximum()));
        bool changed = bar.value() != before;
        if (const QString &look = fitness.isGood() ? GreenBar : RedBar; bar.styleSheet() != look) {
            bar.setStyleSheet(look);
            changed = true;
        }
        if (control.element.firstChildElement(QStringLiteral("tooltip")).isNull())
            bar.setToolTip(healthText(fitness));
        return changed;
    }
};

} // namespace

std::unique_ptr<const ControlAdapter> makeDiskFitnessAdapter()
{
    return std::make_unique<DiskFitnessAdapter>();
}

} // namespace paravue
