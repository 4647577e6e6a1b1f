#pragma once

#include <QString>

/// The tags of the dialogs that the window opens by itself; the description holds the dialogs.
namespace paravue::dialogtags
{

inline const QString Progress = QStringLiteral("progress_dialog");

/// Where a user of the "accesslist" is typed.
inline const QString User = QStringLiteral("accessdlg");
/// Why a change of the users is refused.
inline const QString UserNameTaken = QStringLiteral("accessdlgerr_namedouble");
inline const QString UserNotAllowed = QStringLiteral("accessdlgerr_editrights");
inline const QString UserNameEmpty = QStringLiteral("accessdlgerr_name");
inline const QString PasswordsDiffer = QStringLiteral("accessdlgerr_pass");
inline const QString LastUser = QStringLiteral("accessdlgerr_lastuser");

/// The recorder needs the package.
inline const QString PackageNeeded = QStringLiteral("softcantdelete");
/// Asks whether to remove it.
inline const QString RemovePackage = QStringLiteral("softdodelete");

inline const QString ExportFailed = QStringLiteral("filewriteerror");

} // namespace paravue::dialogtags
