#pragma once

#include "controls/EditHistory.h"

#include <QPointF>
#include <QStringList>

#include <functional>
#include <optional>

class QKeyEvent;
class QMouseEvent;

namespace paravue
{

/// The gestures by which the user changes the texts of an editor: drags from the press of a mouse button to
/// its release, and changes that are made at once, such as by a key. Every change by the user goes through
/// here, and the end of a gesture knows the texts before and after it: a history has one step for each.
///
/// The widget forwards its mouse events, its keys and the loss of its focus.
class EditGesture
{
public:
    /// What the gestures ask of the widget that they belong to.
    class Editor
    {
    public:
        virtual ~Editor() = default;

        /// What gestures change.
        virtual QStringList texts() const = 0;
        /// A left or right button was pressed. Returns whether a drag begins; dragTo() follows at once then.
        virtual bool beginDrag(const QMouseEvent &press) = 0;
        virtual void dragTo(const QPointF &position) = 0;
        /// The drag is over, and this is the last change that belongs to it.
        virtual void drop() {}
        /// The drag is over and shall leave the texts \a before.
        virtual void cancelDrag(const QStringList &before) { restore(before); }
        /// Shows \a texts again, which are of a drag that is cancelled or of a step that is undone or redone.
        virtual void restore(const QStringList &) {}
        /// The user has changed the texts.
        virtual void textsEdited(const QStringList &before, const QStringList &after) = 0;
    };

    /// What becomes of a drag when its release is missed or the focus is lost.
    enum class Interruption { Drops, Cancels };

    /// \a history may be null.
    EditGesture(Editor &editor, Interruption interruption, EditHistory *history = nullptr)
        : m_editor(editor), m_interruption(interruption), m_history(history)
    {
    }

    bool isDragging() const { return m_drag.has_value(); }
    /// The texts from before the drag.
    QStringList before() const { return m_drag ? m_drag->before : QStringList(); }

    void press(const QMouseEvent &event);
    void move(const QMouseEvent &event);
    void release(const QMouseEvent &event);
    /// True when the key is used up. Escape and Enter always are, as they would close the window or press its
    /// OK: Escape cancels a drag, and outside of a drag both do nothing. During a drag other keys do nothing
    /// either.
    bool takeKey(const QKeyEvent &event);
    void interrupt();
    void cancel();

    /// Makes a change at once.
    void perform(const std::function<void()> &change);

    /// Never during a drag.
    bool canUndo() const;
    bool canRedo() const;
    void undo();
    void redo();
    /// While the editor is told of a change.
    HistoryMove historyMove() const { return m_historyMove; }

    /// The texts have been replaced from outside. Cancelling the drag restores these and not the former ones,
    /// and the steps that led to the former ones are forgotten.
    void textsReplaced();

private:
    struct Drag {
        Qt::MouseButton button;
        QStringList before;
    };

    void end();
    void record(const QStringList &before);
    void travel(HistoryMove move);
    void report(const QStringList &before);

    Editor &m_editor;
    Interruption m_interruption;
    EditHistory *m_history;
    HistoryMove m_historyMove = HistoryMove::None;
    std::optional<Drag> m_drag;
};

} // namespace paravue
