#pragma once

#include <QString>

namespace paravue
{

/// \a text, which may come from a recorder, as it may be written to a terminal: on one line, and without
/// control characters, which could do anything there.
QString terminalText(QString text);

} // namespace paravue
