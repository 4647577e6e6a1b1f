#pragma once

namespace paravue
{

/// What all programs end with, so that a script can tell what happened without reading messages.
enum class ExitCode {
    Done = 0,
    Rejected = 1,   ///< by the user (Cancel), by the recorder, or by a check
    WrongUsage = 2, ///< the command line, or what the program needs to run at all, such as a screen
    Network = 3,    ///< no connection, or no answer in time
    Login = 4,      ///< the recorder has refused the login
    Different = 5,  ///< something is not as it should be, or was not confirmed
    LocalFile = 6,  ///< a file or program on this computer could not be used
    BadData = 7,    ///< what was received or read makes no sense
    Cancelled = 8,  ///< stopped by the user or by a signal before it was done
};

} // namespace paravue
