#include "ui/tasks/RetryGesture.h"

#include <QKeyEvent>
#include <QMouseEvent>

namespace paravue
{

RetryGesture::RetryGesture(QWidget &widget) : m_widget(&widget)
{
    widget.setCursor(Qt::PointingHandCursor);
    m_hasToolTip = widget.toolTip().isEmpty();
    if (m_hasToolTip)
        widget.setToolTip(tr("Click, or press Enter, to try again now"));
    widget.installEventFilter(this);
}

RetryGesture::~RetryGesture()
{
    if (!m_widget)
        return;
    m_widget->unsetCursor();
    if (m_hasToolTip)
        m_widget->setToolTip(QString());
}

bool RetryGesture::eventFilter(QObject *watched, QEvent *event)
{
    if (event->type() == QEvent::MouseButtonRelease) {
        const auto *click = static_cast<QMouseEvent *>(event);
        if (click->button() == Qt::LeftButton && m_widget->rect().contains(click->position().toPoint()))
            m_isRequested = true;
    } else if (event->type() == QEvent::KeyPress) {
        const int key = static_cast<QKeyEvent *>(event)->key();
        if (key == Qt::Key_Return || key == Qt::Key_Enter || key == Qt::Key_Space) {
            m_isRequested = true;
            return true;
        }
    }
    return QObject::eventFilter(watched, event);
}

} // namespace paravue
