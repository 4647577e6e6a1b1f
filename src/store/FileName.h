#pragma once

#include <QString>

namespace paravue
{

/// Whether \a name, which comes from a recorder or a description, can be the name of a file in a folder. On
/// every system the rules of Windows hold, where "\", "/" and ":" lead to other folders, blanks and dots at
/// the end are dropped, and names such as "nul" and "com1.txt" are devices.
bool isPlainFileName(const QString &name);

/// Whether Windows would take \a path to another computer, which gets the user's credentials with the
/// request. It knows "\\" and "/" in any mixture.
bool isPathOfOtherComputer(const QString &path);

} // namespace paravue
