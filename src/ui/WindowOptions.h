#pragma once

namespace paravue
{

/// What the setup window does for its user only when the host asks for it, as it changes how a session goes.
/// Given before the window runs, as a part of SessionOptions for example.
struct WindowOptions {
    /// "Refresh" beside the status line, and F5, fetch all files of the recorder anew. When there are edits
    /// that were not sent yet, the user is asked first.
    bool offersRefresh = false;
};

} // namespace paravue
