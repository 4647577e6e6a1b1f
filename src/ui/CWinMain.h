#pragma once

#include "ui/WindowOptions.h"
#include "ui/binding/FileAccessGuard.h"
#include "ui/description/StoreReference.h"

#include <QDateTime>
#include <QDialog>
#include <QHash>
#include <QPointer>
#include <QString>

#include <functional>
#include <memory>

class OrbSetup;
class QSessionManager;
class QTimer;

namespace paravue
{
class EditingSession;
class ErrorDisplay;
class FrameBinding;
class LiveAdjustments;
class StatusLine;
struct WindowParts;
class WindowFrame;
} // namespace paravue

/// The setup window of one recorder: a header, one page per tab of the recorder's interface description, OK
/// and Cancel. It connects store, description and widgets; they do the work.
///
/// The constructor shows the window and starts the first load, so exec() should follow at once. The window is
/// application modal. A description reaches its public slots by name; those with a QString argument take
/// several fields separated by ",".
class CWinMain : public QDialog
{
    Q_OBJECT

public:
    /// A window of its own, or a widget within the parent's window: not modal, and shown with its parent.
    enum class Placement { Window, Page };

    /// \a setup stays the caller's. The window closes when it is deleted.
    CWinMain(OrbSetup *setup, QWidget *parent);
    CWinMain(OrbSetup *setup, QWidget *parent, Placement placement,
             const paravue::WindowOptions &options = {});
    ~CWinMain() override;

    /// Runs the window in an event loop of its own until it is closed; returns its result. Exceptions of type
    /// QString pass through. Does nothing when the window runs already.
    int exec() override;
    /// The description was read and its pages are there.
    bool isBuilt() const { return !m_builtFrom.isEmpty(); }
    bool shows(const OrbSetup &setup) const { return &*m_setup == &setup; }
    /// Hides the window, closes the dialogs that it has opened and disconnects from the store. May throw,
    /// unlike the destructor.
    void endSession();
    /// Deletes the window, whose session must have ended, as soon as none of its code runs any more. Until
    /// then it stands without its parent, which may be deleted right away.
    void deleteWhenIdle();

    /// Replaces the clock of the time tasks: milliseconds from any start, wrapping around. The default is a
    /// monotonic clock.
    void setTaskClock(const std::function<quint32()> &clock);
    /// Replaces the message box that asks the user when the description wants a file of this computer.
    void setPathQuestion(const paravue::PathQuestion &ask);

    bool eventFilter(QObject *watched, QEvent *event) override;
    /// Both close the window, after a question when changes would be lost and the host has asked for it: OK
    /// need not save, and a description may call accept() anywhere.
    void accept() override;
    void reject() override;
    /// There are changes that were not sent, and the host wants them to be asked about.
    bool hasChangesToAskAbout() const;
    /// Asks about them, if there are any; the answer may close the window. True when it may be closed.
    bool mayClose();

Q_SIGNALS:
    /// \a s is a translated error message, of the window or of its store.
    void pseudothrow(const QString &s);

public Q_SLOTS:
    void onSetupProgress(int percent);
    void onSetupProgress();
    void onCtrlChanged(int);
    void onCtrlChanged();
    void onCtrlChanged(const QDateTime &);
    void onCtrlChanged(const QString &);
    void timeout();
    void onLoadDone();
    void showDialog(const QString &tag);
    void accessListSlot(const QString &tag);
    void softListSlot(const QString &tag);
    void fileDialog(const QString &param);
    void settingsSlot(const QString &param);
    void setValue(const QString &assignment);
    void saveSettings();
    void saveFileAs(const QString &param);
    void slot_onpseudothrow(const QString &s);

protected:
    void changeEvent(QEvent *event) override;
    void keyPressEvent(QKeyEvent *event) override;
    void paintEvent(QPaintEvent *event) override;
    void resizeEvent(QResizeEvent *event) override;
    void hideEvent(QHideEvent *event) override;

private:
    /// Code of the window runs, and the window must not be deleted under it.
    class Busy;

    void wire();
    void noteChanged(QWidget *control);
    /// Runs what the user, the store or a time task has started.
    void operate(const std::function<void()> &work);
    void closeDialogs();

    /// Runs \a wait, an event loop in which the user acts.
    void letUserAct(const std::function<void()> &wait);
    /// Lets the user act in \a dialog, which is none of the description.
    void runDialog(QDialog &dialog);

    void startEditing();
    /// Shows \a store in a window of its own.
    void showStore(OrbSetup &store);
    void callGuarded(const QString &name, const std::function<void()> &call);
    bool mayCall(const QString &name);
    /// Makes a \a call of the function \a name that the user has started.
    void callFunction(const QString &name, const std::function<void()> &call);
    /// The desktop session is about to end.
    void commitData(QSessionManager &session);

    /// Repeats the exchange that has failed.
    void tryAgain();
    /// Fetches all files anew, after a question when there are edits.
    void refresh();
    void noteLoaded();
    void readDescription();
    void build(const QByteArray &description, const QString &path);

    paravue::StoreReference m_setup;
    QHash<QString, OrbSetup::FunctionDanger> m_dangers; ///< of the functions called so far
    QTimer *m_taskTimer = nullptr;
    paravue::StatusLine *m_status = nullptr;
    paravue::LiveAdjustments *m_adjustments = nullptr; ///< null when they are not put back
    const paravue::WindowOptions m_options;
    QString m_builtFrom;    ///< path of the description that the pages were built from
    QByteArray m_builtText; ///< and its bytes
    int m_progress = 0;
    bool m_progressShown = false; ///< of the exchange that runs; the user may have closed it meanwhile
    bool m_isRunning = false;
    int m_busy = 0; ///< calls that run, one inside the other
    bool m_isDeletedWhenIdle = false;
    bool m_isRefreshing = false;
    QPointer<QWidget> m_changedControl; ///< whose change is being handled
    std::unique_ptr<paravue::ErrorDisplay> m_errors;
    std::unique_ptr<paravue::WindowParts> m_parts;
    std::unique_ptr<paravue::WindowFrame> m_frame;
    std::unique_ptr<paravue::FrameBinding> m_described;
    std::unique_ptr<paravue::EditingSession> m_editing; ///< null when changes are not tracked
};
