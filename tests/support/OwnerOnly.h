#pragma once

#include <QFile>
#include <QString>

namespace paravue::test
{

/// Whether nobody but its owner may use the file. On Windows files have the access rights of the folder that
/// they are made in, and Qt knows no others.
inline bool isForOwnerOnly([[maybe_unused]] const QString &path)
{
#ifdef Q_OS_WIN
    return QFile::exists(path);
#else
    constexpr QFile::Permissions others = QFile::ReadGroup | QFile::WriteGroup | QFile::ExeGroup |
                                          QFile::ReadOther | QFile::WriteOther | QFile::ExeOther;
    return QFile::exists(path) && !(QFile::permissions(path) & others);
#endif
}

} // namespace paravue::test
