#pragma once

namespace paravue
{

/// What the setup window does for its user only when the host asks for it, as it changes how a session goes.
/// Given before the window runs, as a part of SessionOptions for example.
struct WindowOptions {
    /// "Refresh" beside the status line, and F5, fetch all files of the recorder anew. When there are edits
    /// that were not sent yet, the user is asked first.
    bool offersRefresh = false;
    /// When the user closes the window without OK, the recorder gets back the picture (brightness and so on)
    /// that it had before. The window's event loop then ends up to a few seconds after it was closed.
    bool putsAdjustmentsBack = false;
    /// Values that the recorder does not have are marked and counted; a list shows them (Ctrl+R) and takes
    /// them back; edits can be undone (Ctrl+Z, Ctrl+Shift+Z).
    bool tracksChanges = false;
    /// With tracksChanges: a window with changes that is closed without OK asks whether they are to be sent.
    bool asksBeforeClosing = false;
    /// With tracksChanges: OK shows the list of changes before the first byte is sent.
    bool reviewsBeforeSending = false;
};

} // namespace paravue
