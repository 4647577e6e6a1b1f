#pragma once

#include <QString>

namespace paravue
{

/// Lets a copy of a program that needs no installation keep what it remembers in its own folder: when the
/// file "portable.txt" is in \a programFolder, settings, remembered logins and snapshots go to the folder
/// "settings" there from now on, and not to the profile of the user. A place that the user has chosen, with
/// PARAVUE_DATA_HOME, stays. True when the folder is used.
bool keepSettingsBesideProgram(const QString &programFolder);

} // namespace paravue
