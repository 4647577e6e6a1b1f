#pragma once

namespace paravue
{

struct CommandLine;

/// What the program ends with; the help of the command line explains them to users.
enum ExitCode { Accepted = 0, Rejected = 1, WrongUsage = 2, Failed = 3 };

/// Runs a setup session and stays until a save that it started is done. Needs a QApplication that does not
/// quit with its last window.
ExitCode runSession(const CommandLine &commandLine);

} // namespace paravue
