#include "controls/K9mButton.h"

#include "controls/DrawnIcon.h"

#include <QEvent>
#include <QPainter>

namespace paravue
{

K9mButton::K9mButton(QWidget *parent) : QPushButton(parent)
{
    for (const auto signal : {&QAbstractButton::pressed, &QAbstractButton::released})
        connect(this, signal, this, &K9mButton::showLamp);
    connect(this, &QAbstractButton::toggled, this, &K9mButton::showLamp);
    showLamp();
}

bool K9mButton::isOn() const
{
    return isCheckable() ? isChecked() : m_on;
}

void K9mButton::setOn(bool on)
{
    if (on == isOn())
        return;
    if (isCheckable())
        setChecked(on);
    else
        m_on = on;
    showLamp();
}

void K9mButton::setState(const QString &state)
{
    setOn(state == QLatin1String("on"));
}

void K9mButton::changeEvent(QEvent *event)
{
    QPushButton::changeEvent(event);
    if (event->type() == QEvent::PaletteChange)
        showLamp();
}

void K9mButton::showLamp()
{
    const bool lit = isOn() || (isDown() && !isCheckable());
    const QPalette colors = palette();
    setIcon(paravue::drawnIcon([lit, colors](QPainter &painter, const QRectF &rect, QIcon::Mode mode,
                                             QIcon::State) {
        const QPalette::ColorGroup group = mode == QIcon::Disabled ? QPalette::Disabled : QPalette::Active;
        const QColor color = colors.color(group, QPalette::ButtonText);
        const double line = rect.width() / 9;
        const QRectF ring = rect.adjusted(2 * line, 2 * line, -2 * line, -2 * line);
        painter.setPen(QPen(color, line));
        painter.setBrush(lit ? QBrush(color) : Qt::NoBrush);
        painter.drawEllipse(ring);
    }));
}

} // namespace paravue
