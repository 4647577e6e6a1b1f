#pragma once

#include "program/ExitCode.h"

namespace paravue
{

struct CommandLine;

/// Runs a setup session and stays until a save that it started is done. Needs a QApplication that does not
/// quit with its last window.
ExitCode runSession(const CommandLine &commandLine);

} // namespace paravue
