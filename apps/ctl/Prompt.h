#pragma once

#include "Outcome.h"

#include <QString>

namespace paravue
{

/// The line that is typed next on the terminal. Null at the end of the input, and when a signal has asked the
/// program to end, which hasStopSignal() tells.
QString typedLine();

/// Whether the line that is typed next is a yes.
bool isYesTyped();

/// That nobody has said yes, for the \a reason that a command has for asking.
Outcome notConfirmed(const QString &reason);

} // namespace paravue
