#pragma once

#include "program/ExitCode.h"
#include "store/LinkStatus.h"

namespace paravue
{

struct CommandLine;

/// What the program ends with when an exchange has failed for \a cause; \a otherwise without one.
ExitCode exitCodeOf(LinkStatus::Cause cause, ExitCode otherwise);

/// Runs a setup session and stays until a save that it started is done. Needs a QApplication that does not
/// quit with its last window.
ExitCode runSession(const CommandLine &commandLine);

} // namespace paravue
