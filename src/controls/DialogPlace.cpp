#include "controls/DialogPlace.h"

#include <QDialog>
#include <QEvent>
#include <QScreen>
#include <QWindow>

#include <algorithm>

namespace paravue
{
namespace
{

bool isExposed(const QWidget &widget)
{
    const QWindow *window = widget.windowHandle();
    return window && window->isExposed();
}

} // namespace

DialogPlace::DialogPlace(QDialog &dialog)
    : QObject(&dialog), m_dialog(dialog),
      m_above(dialog.parentWidget() ? dialog.parentWidget()->window() : nullptr), m_place(dialog)
{
    dialog.installEventFilter(this);
    if (m_above)
        m_above->installEventFilter(this);
}

void DialogPlace::keepCentred(QDialog &dialog)
{
    new DialogPlace(dialog);
}

bool DialogPlace::eventFilter(QObject *watched, QEvent *event)
{
    if (watched == &m_dialog) {
        const bool isShown = event->type() == QEvent::Show && !event->spontaneous();
        // Message boxes get their size while they are shown. Later it is the user who changes it.
        if (isShown || (event->type() == QEvent::Resize && m_dialog.isVisible() && !isExposed(m_dialog)))
            place();
    } else if (event->type() == QEvent::Move && m_dialog.isVisible() && m_place.isNew()) {
        place();
    }
    return false;
}

void DialogPlace::place()
{
    const QRect ground = (m_above ? m_above->screen() : m_dialog.screen())->availableGeometry();
    QRect frame(QPoint(), m_dialog.size());
    frame.moveCenter(m_above ? m_above->geometry().center() : ground.center());
    const QPoint last = ground.bottomRight() - QPoint(frame.width() - 1, frame.height() - 1);
    m_place.put(QPoint(std::max(ground.left(), std::min(frame.left(), last.x())),
                       std::max(ground.top(), std::min(frame.top(), last.y()))));
}

} // namespace paravue
