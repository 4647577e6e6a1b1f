#pragma once

#include "controls/EditHistory.h"
#include "store/StoreObserver.h"
#include "ui/description/StoreReference.h"

#include <QList>
#include <QObject>
#include <QPointer>
#include <QSet>
#include <QString>
#include <QUndoStack>

#include <functional>
#include <optional>

namespace paravue
{

/// A value of the store before and after an edit; nothing when there was no such key.
struct ValueEdit {
    QString path; ///< file/section/key
    std::optional<QString> before;
    std::optional<QString> after;
};

/// The edits of a window as steps that can be undone. A step is what one gesture has done: a click with all
/// values that the description's actions write because of it, the drag of a slider, or what was typed into a
/// field while it had the focus.
///
/// A field that has the focus and something to undo itself gets the keys first; the window gets them when the
/// field has nothing left.
class EditSteps : public QObject, private StoreObserver
{
    Q_OBJECT

public:
    /// \a putBack sets values and shows them.
    EditSteps(OrbSetup &store, std::function<void(const QList<ValueEdit> &)> putBack);
    ~EditSteps() override;
    Q_DISABLE_COPY_MOVE(EditSteps)

    /// Steps that no longer fit the values of the store are gone from it.
    QUndoStack &stack();

    /// What is written until the end of the outermost gesture is one step.
    class Gesture
    {
    public:
        /// Without \a steps nothing is kept. A \a move in the history of a control moves the steps instead
        /// of adding one, when it does what their next move does: both have recorded the same gesture.
        explicit Gesture(EditSteps *steps, HistoryMove move = HistoryMove::None);
        ~Gesture();
        Q_DISABLE_COPY_MOVE(Gesture)

    private:
        EditSteps *m_steps;
    };

    /// Runs \a wait, an event loop in which the user acts, within a gesture or not: gestures there are steps
    /// of their own, behind what the suspended one has written before.
    void suspend(const std::function<void()> &wait);

    /// To be called within a gesture before the value at \a path is set.
    void note(const QString &path);

    bool eventFilter(QObject *watched, QEvent *event) override;

Q_SIGNALS:
    /// A step was undone or done again, which concerns these values.
    void moved(const QList<paravue::ValueEdit> &edits);

private:
    class Command;

    void valueSet(const QString &path, const std::optional<QString> &value) override;
    void fileReplaced(const QString &) override
    {
        m_isReplaced = true;
        m_knownFile.clear();
    }

    const Command *lastStep() const;
    std::optional<QString> storedValue(const QString &path) const;
    void dropUnfitting();
    bool isNoted(const QString &path);
    void finish();
    bool isNextMove(const QList<ValueEdit> &edits, HistoryMove move) const;
    void apply(const QList<ValueEdit> &edits);

    StoreReference m_store;
    QPointer<OrbSetup> m_observed;
    std::function<void(const QList<ValueEdit> &)> m_putBack;
    QUndoStack m_stack;
    QString m_knownFile;       ///< the last one that was found to exist
    bool m_isReplaced = false; ///< a file of the store, since the steps were found to fit
    int m_depth = 0;
    HistoryMove m_move = HistoryMove::None; ///< of the gesture
    int m_input = 0;                        ///< counts the presses that begin another step
    bool m_isApplying = false;
    QList<ValueEdit> m_edits; ///< of the gesture
    QSet<QString> m_paths;    ///< of the edits, when there are many
};

} // namespace paravue
