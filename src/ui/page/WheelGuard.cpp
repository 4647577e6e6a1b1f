#include "ui/page/WheelGuard.h"

#include <QAbstractSpinBox>
#include <QComboBox>
#include <QEvent>
#include <QScrollBar>

namespace paravue
{

void WheelGuard::install(QWidget *control)
{
    if (qobject_cast<QComboBox *>(control) || qobject_cast<QAbstractSpinBox *>(control) ||
        qobject_cast<QScrollBar *>(control))
        new WheelGuard(control);
}

WheelGuard::WheelGuard(QWidget *field) : QObject(field)
{
    // With Qt::WheelFocus the first step of the wheel would give the field the focus that lets it through.
    field->setFocusPolicy(Qt::StrongFocus);
    field->installEventFilter(this);
}

bool WheelGuard::eventFilter(QObject *watched, QEvent *event)
{
    if (event->type() != QEvent::Wheel || static_cast<QWidget *>(watched)->hasFocus())
        return QObject::eventFilter(watched, event);
    // Qt offers an ignored event to the parent.
    event->ignore();
    return true;
}

} // namespace paravue
