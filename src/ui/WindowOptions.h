#pragma once

#include <QByteArray>
#include <QString>

#include <functional>

namespace paravue
{

/// Keeps what a user has made of a window, from one session to the next. A key is what a recorder calls its
/// model; values are for the window only.
struct WindowMemory {
    std::function<QByteArray(const QString &key)> read;
    std::function<void(const QString &key, const QByteArray &value)> write;
};

/// Where the configurations of recorders are kept before they are overwritten.
struct SnapshotOptions {
    QString folder = {};       ///< snapshotsFolder() (snapshots/SnapshotStore.h) for example; empty: nowhere
    QString recorder = {};     ///< whose they are; empty: that of the store's address
    int count = 30;            ///< of each recorder
    bool keepsSecrets = false; ///< passwords and the like as well, which are left out otherwise
};

/// What the setup window does for its user only when the host asks for it, as it changes how a session goes.
/// Given before the window runs, as a part of SessionOptions for example.
struct WindowOptions {
    /// "Refresh" beside the status line, and F5, fetch all files of the recorder anew. When there are edits
    /// that were not sent yet, the user is asked first.
    bool offersRefresh = false;
    /// When the user closes the window without OK, the recorder gets back the picture (brightness and so on)
    /// that it had before. The window's event loop then ends up to a few seconds after it was closed.
    bool putsAdjustmentsBack = false;
    /// The window opens with the size, at the place and with the tab that it was left with in the last
    /// session with a recorder of the same model. rememberedWindow() and rememberWindow()
    /// (device/RememberedWindows.h) keep that in the library's settings file.
    WindowMemory memory = {};
    /// The line at the foot of the window: what the link does, what the recorder has answered, and what is
    /// wrong, with "Try again" and "Give up". Without it only messages tell of failures.
    bool hasStatusLine = true;
    /// Values that the recorder does not have are marked and counted; a list shows them (Ctrl+R) and takes
    /// them back; edits can be undone (Ctrl+Z, Ctrl+Shift+Z); Ctrl+F finds controls. Fields whose values the
    /// description does not allow are marked and counted too; F8 goes to the next one, and a save asks first.
    bool tracksChanges = false;
    /// With tracksChanges: a window with changes that is closed without OK asks whether they are to be sent.
    bool asksBeforeClosing = false;
    /// With tracksChanges: a save shows the list of changes before the first byte is sent.
    bool reviewBeforeSending = false;
    /// With tracksChanges: before a save, the files are fetched again; what somebody else has changed
    /// meanwhile is shown, and kept unless the user decides otherwise.
    bool comparesBeforeSending = false;
    /// With tracksChanges: a dialog shows the state of each file while a save runs; afterwards the files are
    /// fetched again, and what the recorder keeps otherwise is shown.
    bool confirmsSaves = false;
    /// A function that loses data or restarts the recorder is called after a question only, except from a
    /// dialog of the description, which has asked already.
    bool confirmsDangerousFunctions = false;
    /// With tracksChanges: before each save the fetched files are kept as a snapshot. "History" (Ctrl+H)
    /// lists the snapshots, compares them, and restores values as edits.
    SnapshotOptions snapshots = {};
    /// With tracksChanges: the path of a snapshot that was edited without the recorder. Its edits are offered
    /// once the recorder's files are there.
    QString offeredEdits = {};
};

} // namespace paravue
