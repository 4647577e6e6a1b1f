#pragma once

#include <QStringList>

namespace paravue
{

/// Whether Qt will find a plug-in for the screen, on Windows, where it would show a message box otherwise and
/// wait until somebody closes it. It looks for those that QApplication looks for with the \a words of the
/// command line and the environment. True on other systems, where Qt ends the program. Needs a
/// QCoreApplication.
bool hasScreenPlugin(const QStringList &words);

/// Why there is no screen, for the user.
QString missingScreenText();

} // namespace paravue
