#pragma once

#include "SetupProgram.h"

namespace paravue
{

/// Checks the description that the command line names and prints what is wrong with it. Needs no screen.
ExitCode runCheck(const CommandLine &commandLine);

} // namespace paravue
