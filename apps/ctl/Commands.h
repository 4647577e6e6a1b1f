#pragma once

#include "Outcome.h"

namespace paravue
{

class RecorderSession;
struct ControlCommandLine;

// The commands. Each prints what it has found or done to standard output.
Outcome runGet(RecorderSession &session, const ControlCommandLine &line);
Outcome runBackup(RecorderSession &session, const ControlCommandLine &line);
Outcome runSet(RecorderSession &session, const ControlCommandLine &line);

} // namespace paravue
