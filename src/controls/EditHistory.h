#pragma once

#include <QStringList>
#include <QUndoStack>

namespace paravue
{

/// What a change is: an edit of its own, or a step of a history that is taken back or made again.
enum class HistoryMove { None, Undo, Redo };

/// The last steps by which the user has changed the texts of an editor, for undo and redo. A step keeps only
/// the characters in which the texts differ.
///
/// Steps lead from one state of the texts to the next. When something else replaces the texts, clear() is
/// called for.
class EditHistory
{
public:
    static constexpr int MaxSteps = 100;

    EditHistory() { m_steps.setUndoLimit(MaxSteps); }

    /// \a before and \a after have the same number of texts. The steps that could be redone are dropped, and
    /// so is the first one beyond MaxSteps.
    void record(const QStringList &before, const QStringList &after);
    void clear() { m_steps.clear(); }

    bool canUndo() const { return m_steps.canUndo(); }
    bool canRedo() const { return m_steps.canRedo(); }
    /// \a texts as they were before the last step; the same texts when there is none.
    QStringList undo(const QStringList &texts);
    /// \a texts as they were before undo().
    QStringList redo(const QStringList &texts);

private:
    QUndoStack m_steps;
    QStringList m_texts; ///< what a step is undone or redone in
};

} // namespace paravue
