#pragma once

#include "Outcome.h"

namespace paravue
{

struct ControlCommandLine;

/// Runs the command of \a line with the recorders of its inventory, several at once. Each is reported when
/// its run has ended, and all of them in a table at the end. A failed run does not stop the others.
///
/// The outcome is that of all: Different when some recorders differ and no run has failed, otherwise that of
/// the first failure. Its problem is empty when the table has told it.
void runInventory(const ControlCommandLine &line, const OutcomeHandler &end);

} // namespace paravue
