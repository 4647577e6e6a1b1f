#include "controls/EditGesture.h"

#include <QKeyEvent>
#include <QMouseEvent>
#include <QScopedValueRollback>

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
    m_editor.dragTo(event.position());
}

void EditGesture::move(const QMouseEvent &event)
{
    if (m_drag && !(event.buttons() & m_drag->button))
        interrupt();
    if (m_drag)
        m_editor.dragTo(event.position());
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
    record(before);
}

bool EditGesture::canUndo() const
{
    return m_history && !m_drag && m_history->canUndo();
}

bool EditGesture::canRedo() const
{
    return m_history && !m_drag && m_history->canRedo();
}

void EditGesture::undo()
{
    if (canUndo())
        travel(HistoryMove::Undo);
}

void EditGesture::redo()
{
    if (canRedo())
        travel(HistoryMove::Redo);
}

void EditGesture::travel(HistoryMove move)
{
    const QScopedValueRollback moving(m_historyMove, move);
    const QStringList before = m_editor.texts();
    m_editor.restore(move == HistoryMove::Undo ? m_history->undo(before) : m_history->redo(before));
    report(before);
}

void EditGesture::textsReplaced()
{
    if (m_history)
        m_history->clear();
    if (m_drag)
        m_drag->before = m_editor.texts();
}

void EditGesture::end()
{
    const QStringList before = std::exchange(m_drag, std::nullopt)->before;
    m_editor.drop();
    record(before);
}

void EditGesture::record(const QStringList &before)
{
    const QStringList after = m_editor.texts();
    if (m_history && after != before)
        m_history->record(before, after);
    report(before);
}

void EditGesture::report(const QStringList &before)
{
    const QStringList after = m_editor.texts();
    if (after != before)
        m_editor.textsEdited(before, after);
}

} // namespace paravue
