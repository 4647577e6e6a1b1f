#pragma once

#include "program/ExitCode.h"

namespace paravue
{

struct CommandLine;

/// Checks the description that the command line names and prints what is wrong with it. Needs no screen.
ExitCode runCheck(const CommandLine &commandLine);

} // namespace paravue
