#include "controls/KeptPlace.h"

#include <QMoveEvent>
#include <QWidget>

namespace paravue
{
namespace
{

constexpr int PlaceAttempts = 3;

/// With or without the title bar and border of a window manager.
bool isCorner(const QPoint &position)
{
    constexpr int Frame = 64;
    return QRect(0, 0, Frame, Frame).contains(position);
}

} // namespace

KeptPlace::KeptPlace(QWidget &window) : m_window(window)
{
    window.installEventFilter(this);
}

void KeptPlace::put(const QPoint &topLeft)
{
    m_asked = topLeft;
    m_attempts = PlaceAttempts;
    m_sincePut.start();
    m_window.move(topLeft);
}

bool KeptPlace::eventFilter(QObject *, QEvent *event)
{
    if (event->type() != QEvent::Move || !isNew() || m_attempts == 0)
        return false;
    if (isCorner(static_cast<QMoveEvent *>(event)->pos()) && !isCorner(m_asked)) {
        --m_attempts;
        // Outside of the event. The window manager answers each request.
        QMetaObject::invokeMethod(
            this, [this] { m_window.move(m_asked); }, Qt::QueuedConnection);
    }
    return false;
}

} // namespace paravue
