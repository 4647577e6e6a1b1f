#pragma once

#include <QString>

/// One line of a terminal that tells how far the program is. It is on standard error, and only when that is a
/// terminal.
namespace paravue::progressline
{

void show(const QString &text);
/// To be called before anything else is written to the terminal.
void clear();

} // namespace paravue::progressline
