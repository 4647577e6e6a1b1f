#include "controls/EditGesture.h"

#include <QKeyEvent>
#include <QMouseEvent>

#include <utility>

namespace paravue
{

void EditGesture::press(const QMouseEvent &event)
{
    const Qt::MouseButton button = event.button();
    if (button != Qt::LeftButton && button != Qt::RightButton)
        return;
    if (m_drag && m_drag->button == button) // its release went to another window
        interrupt();
    if (m_drag || !m_editor.beginDrag(event))
        return;
    m_drag = Drag{button, m_editor.texts()};
    step(event.position());
}

void EditGesture::move(const QMouseEvent &event)
{
    if (m_drag && !(event.buttons() & m_drag->button))
        interrupt();
    if (m_drag)
        step(event.position());
}

void EditGesture::release(const QMouseEvent &event)
{
    if (m_drag && event.button() == m_drag->button)
        end();
}

bool EditGesture::takeKey(const QKeyEvent &event)
{
    const bool isEscape = event.key() == Qt::Key_Escape;
    if (!m_drag)
        return isEscape || event.key() == Qt::Key_Return || event.key() == Qt::Key_Enter;
    if (isEscape)
        cancel();
    return true;
}

void EditGesture::interrupt()
{
    if (m_interruption == Interruption::Cancels)
        cancel();
    else if (m_drag)
        end();
}

void EditGesture::cancel()
{
    if (m_drag)
        m_editor.cancelDrag(std::exchange(m_drag, std::nullopt)->before);
}

void EditGesture::perform(const std::function<void()> &change)
{
    const QStringList before = m_editor.texts();
    change();
    report(before);
}

void EditGesture::textsReplaced()
{
    if (m_drag)
        m_drag->before = m_editor.texts();
}

void EditGesture::step(const QPointF &position)
{
    const QStringList before = m_editor.texts();
    m_editor.dragTo(position);
    if (m_report == Report::EachStep)
        report(before);
}

void EditGesture::end()
{
    QStringList before = std::exchange(m_drag, std::nullopt)->before;
    if (m_report == Report::EachStep)
        before = m_editor.texts();
    m_editor.drop();
    report(before);
}

void EditGesture::report(const QStringList &before)
{
    const QStringList after = m_editor.texts();
    if (after != before)
        m_editor.textsEdited(before, after);
}

} // namespace paravue
