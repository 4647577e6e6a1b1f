#include "ui/types/DeviceControls.h"

#include "controls/K9mButton.h"
#include "controls/OnlineView.h"
#include "controls/cDiskFitness.h"
#include "ui/base/UiLimits.h"
#include "ui/base/WindowText.h"
#include "ui/binding/ControlContext.h"
#include "ui/binding/ControlTable.h"
#include "ui/description/InterfaceDocument.h"

#include <QPainter>
#include <QProgressBar>

#include <algorithm>

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

/// The size that the description gives, with \a usual for what it leaves out.
QSize fixedSize(const QDomElement &element, const QSize &usual)
{
    const auto side = [&](const QString &name, int otherwise) {
        const int length = intAttribute(element, name);
        return length > 0 ? std::min(length, limits::Pixels) : otherwise;
    };
    return {side(QStringLiteral("width"), usual.width()), side(QStringLiteral("height"), usual.height())};
}

QString healthText(const cDiskFitness &fitness)
{
    if (fitness.report().isEmpty())
        return WindowText::tr("No report of this disk");
    return WindowText::tr("Health: %1%\nHours in use: %2\nReallocated sectors: %3")
        .arg(QString::number(fitness.healthPercent), QString::number(fitness.powerOnHours),
             QString::number(fitness.reallocatedRaw));
}

} // namespace

QWidget *DiskFitnessControl::create(ControlContext &, const Control &control, QWidget *parent) const
{
    auto *bar = new HealthBar(parent);
    const QDomElement &element = control.element;
    const bool hasEnd = element.hasAttribute(QStringLiteral("maxvalue"));
    bar->setRange(intAttribute(element, QStringLiteral("minvalue")),
                  hasEnd ? intAttribute(element, QStringLiteral("maxvalue")) : 100);
    bar->setTextVisible(false);
    bar->setFixedSize(fixedSize(element, bar->sizeHint()));
    return bar;
}

const QMetaObject &DiskFitnessControl::widgetClass() const
{
    return QProgressBar::staticMetaObject;
}

bool DiskFitnessControl::load(ControlContext &context, const Control &control) const
{
    auto *bar = qobject_cast<QProgressBar *>(control.widget);
    const QString key = firstAddress(control.element);
    const cDiskFitness fitness(nullptr, key.isEmpty() ? QString() : context.value(control, key));
    const int before = bar->value();
    bar->setValue(qBound(bar->minimum(), fitness.healthPercent, bar->maximum()));
    bool changed = bar->value() != before;
    if (const QString &look = fitness.isGood() ? GreenBar : RedBar; bar->styleSheet() != look) {
        bar->setStyleSheet(look);
        changed = true;
    }
    if (control.element.firstChildElement(QStringLiteral("tooltip")).isNull())
        bar->setToolTip(healthText(fitness));
    return changed;
}

QWidget *K9mButtonControl::create(ControlContext &context, const Control &control, QWidget *parent) const
{
    auto *button = new K9mButton(parent);
    prepare(*button, context, control);
    return button;
}

const QMetaObject &K9mButtonControl::widgetClass() const
{
    return K9mButton::staticMetaObject;
}

bool K9mButtonControl::load(ControlContext &context, const Control &control) const
{
    const bool newCaption = PushButtonControl::load(context, control);
    auto *button = qobject_cast<K9mButton *>(control.widget);
    const QString key = firstAddress(control.element);
    if (key.isEmpty())
        return newCaption;
    const bool before = button->isOn();
    button->setState(context.value(control, key));
    return newCaption || button->isOn() != before;
}

QString K9mButtonControl::actionState(const Control &control) const
{
    const auto *button = qobject_cast<const K9mButton *>(control.widget);
    if (!button->isCheckable() && firstAddress(control.element).isEmpty())
        return {};
    return button->isOn() ? QStringLiteral("on") : QStringLiteral("off");
}

QWidget *OnlineControl::create(ControlContext &, const Control &control, QWidget *parent) const
{
    auto *picture = new OnlineView(parent);
    picture->setFixedSize(fixedSize(control.element, QSize(320, 240)));
    return picture;
}

const QMetaObject &OnlineControl::widgetClass() const
{
    return OnlineView::staticMetaObject;
}

} // namespace paravue
