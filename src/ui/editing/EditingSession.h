#pragma once

#include "ui/WindowOptions.h"
#include "ui/binding/ControlAdapter.h"
#include "ui/description/StoreReference.h"

#include <QList>
#include <QObject>
#include <QString>

#include <functional>
#include <memory>

class QDialog;
class QToolButton;
class QWidget;

namespace paravue
{

class Bindings;
class ChangeTracking;
class CheckedSave;
class ControlContext;
class SnapshotHistory;

/// The edits of a window from the first one until the recorder has them: the changes that are tracked, the
/// saves that are reviewed and checked, the snapshots that are kept, and the question before the window is
/// closed. Which of these there are is said by the options of the window, which track changes at least.
class EditingSession : public QObject
{
    Q_OBJECT

public:
    /// What the session needs of its window.
    struct Services {
        /// Runs \a work, which the user has started.
        std::function<void(const std::function<void()> &work)> operate;
        /// Runs \a wait, an event loop in which the user acts.
        std::function<void(const std::function<void()> &wait)> letUserAct;
        /// Lets the user act in a dialog that is none of the description.
        std::function<void(QDialog &dialog)> runDialog;
        /// The pages of the description are there.
        std::function<bool()> isBuilt;
        /// Opens the described dialog with this tag and waits for it.
        std::function<void(const QString &tag)> showDialog;
        /// Shows \a store in a window of its own, and waits for it.
        std::function<void(OrbSetup &store)> showStore;
        /// Does what OK does.
        std::function<void()> save;
        /// Receives translated messages for the user.
        std::function<void(const QString &message)> report;
    };

    /// All must outlive the object, except that \a store may go.
    EditingSession(QWidget &window, OrbSetup &store, ControlContext &context, Bindings &bindings,
                   AdapterLookup adapterOf, const WindowOptions &options, Services services);
    ~EditingSession() override;

    /// For the header of the window.
    QList<QToolButton *> tools() const;

    /// To be called when the window was built from another description.
    void startDescription();
    /// To be called before a modal \a dialog of the description is shown.
    void startDialog(QDialog &dialog);
    /// To be called when captions have changed that are no controls.
    void updateTexts();
    /// See EditSteps::suspend().
    void suspendGesture(const std::function<void()> &wait);

    /// Once, when the recorder's values are there: lets the user take over edits that the host offers.
    void offerEdits();

    /// Runs the save that \a send starts. False when the user goes on editing, so that nothing that was to
    /// follow the save is done.
    bool runSave(const std::function<void()> &send);
    /// What the store reports meanwhile is shown by the dialog of the save.
    bool isSaveShown() const;
    void noteMessage(const QString &message);

    /// The last save was given something that the user has edited, or taken back, since it ended.
    bool isSaveOutdated() const;
    /// Fetching everything anew drops changes.
    bool isLostByFetching() const;
    /// There are changes that were not sent, and the host wants them to be asked about.
    bool hasChangesToAskAbout() const;
    /// Asks about them, if there are any; the answer may save. True when the window may be closed.
    bool mayClose();
    /// The same for a window that its description accepts, which may have saved before.
    bool mayAccept();

private:
    void trackChanges(ControlContext &context, Bindings &bindings, AdapterLookup adapterOf);
    void checkSaves(Bindings &bindings);
    void keepHistory();
    /// Keeps the recorder's files before something is sent; false when the user does not want to send.
    bool keepSnapshot();
    /// Shows the list of changes; true when they are to be sent now.
    bool review(bool offersSending);
    bool reviewBeforeSending();
    bool mayLeaveOut();
    bool maySendProblems();
    bool isSaveUnderWay() const;

    QWidget &m_window;
    StoreReference m_store;
    const WindowOptions &m_options;
    const Services m_services;
    bool m_isReviewing = false;
    bool m_isClosing = false;      ///< the user was asked about changes and has not answered, or sends them
    bool m_isSnapshotKept = false; ///< for what is about to be sent
    bool m_areEditsOffered = false;
    std::unique_ptr<ChangeTracking> m_changes;
    std::unique_ptr<CheckedSave> m_save;
    std::unique_ptr<SnapshotHistory> m_history; ///< null when none is kept
};

} // namespace paravue
