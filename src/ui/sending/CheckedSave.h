#pragma once

#include "changes/SaveCheck.h"
#include "ui/WindowOptions.h"
#include "ui/sending/SendingDialog.h"

#include <QObject>
#include <QTimer>

#include <functional>

class OrbSetup;

namespace paravue
{

class ChangeList;

/// A save as its user sees it: what somebody else has changed at the recorder meanwhile, the review, the
/// state of each file while it is sent, and whether the recorder has kept what was sent. Which of these
/// there are is said by the options of the window.
class CheckedSave : public QObject
{
    Q_OBJECT

public:
    struct Services {
        /// Runs \a wait, an event loop in which the user acts.
        std::function<void(const std::function<void()> &wait)> letUserAct;
        /// Asks about fields with wrong values; false when the user goes on editing.
        std::function<bool()> begin;
        /// Shows the list of changes; false when the user goes on editing.
        std::function<bool()> review;
        /// Keeps what the recorder has, before more is sent; false when the user does not want to send.
        std::function<bool()> keep;
        /// Shows values that were changed behind the window's back.
        std::function<void()> reload;
        ValueTexts texts;
        SaveCheck::IsEditable isEditable;
        /// The recorder has taken the files \a arrived.
        std::function<void(const QStringList &arrived)> noteSaved;
        /// The recorder may have the file \a name of the save, and has not answered.
        std::function<void(const QString &name)> noteUnanswered;
    };

    /// All must outlive the object, except that \a store may go.
    CheckedSave(OrbSetup &store, ChangeList &changes, const WindowOptions &options, Services services,
                QWidget &window);

    /// Runs the save that \a send starts. False when the user goes on editing, so that nothing that was to
    /// follow the save is done.
    bool run(const std::function<void()> &send);
    /// What the store reports meanwhile is shown by the dialog of the save.
    bool isShown() const { return m_dialog; }
    void noteMessage(const QString &message) { m_message = message; }
    /// See SaveCheck::newerFile().
    std::optional<QByteArray> newerFile(const QString &name) const { return m_check.newerFile(name); }

    /// To be called when a save begins, also for those that do not run here.
    void noteSaveBegins();
    /// To be called when an exchange has ended: notes which files the recorder has taken, also when the save
    /// has failed or was given up.
    void noteArrivals();

private:
    enum class Stage { Comparing, Sending, Confirming, Over };

    enum class Comparison {
        Same,    ///< the recorder has nothing new, or the user sends without knowing
        Merged,  ///< what somebody else has changed is in the window now
        Stopped, ///< the user goes on editing
    };

    bool canAsk() const;
    bool prepare();
    Comparison compareAndMerge();
    bool compare();
    void callSave();
    bool follow();
    void update();
    void endSending();
    bool hasSaveBegun() const;
    QString reasonOfFailure() const;
    void startConfirming();
    void noteFetched(const QString &problem);
    void choose(SendingDialog::Choice choice);
    void startSending();
    void sendAgain();
    void takeKeptOtherwise(SendingDialog::Choice choice);
    void askToStop();
    void runDialog(SendingDialog &dialog);
    void close(bool goesOn);
    bool isSaving() const;
    qint64 silence() const;
    bool isWaiting() const;

    QPointer<OrbSetup> m_store;
    ChangeList &m_changes;
    const WindowOptions &m_options;
    const Services m_services;
    QWidget &m_window;
    SaveCheck m_check;
    SendingDialog *m_dialog = nullptr; ///< while a save is followed
    QTimer m_poll;
    Stage m_stage = Stage::Over;
    std::function<void()> m_send;
    QString m_fetchProblem;
    QString m_message;             ///< of the store, the last one of the save
    int m_notedSave = 0;           ///< the save whose arrivals are noted, counted by the queue
    qsizetype m_notedArrivals = 0; ///< how many are
    int m_savesBefore = 0;         ///< that had begun when this one was asked for
    QString m_notedUnanswered;     ///< of that save too
    bool m_hadChanges = false;     ///< at that time
    bool m_isRunning = false;
    bool m_isStopped = false;       ///< by the user
    bool m_isKeptOtherwise = false; ///< values, as the dialog shows
    bool m_goesOn = false;          ///< with what follows the save
};

} // namespace paravue
