#pragma once

#include <QString>

#include <filesystem>
#include <system_error>

namespace paravue
{

/// \a path for functions of the system. On Windows they take paths beyond 260 characters only in a form of
/// their own, which this is; Qt's functions take care of that themselves.
std::filesystem::path systemPath(const QString &path);

/// Gives the file \a from the name \a to, in the place of what has it. Windows refuses that as long as
/// another program has one of them open, which virus scanners and indexers do for a moment after each change:
/// then this waits for up to a fifth of a second.
std::error_code replaceFile(const QString &from, const QString &to);

} // namespace paravue
