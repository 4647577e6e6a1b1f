#pragma once

#include <QProcessEnvironment>
#include <QString>

namespace paravue::test
{

#ifdef Q_OS_WIN
constexpr const char *TemporaryFolderVariable = "TMP";
#else
constexpr const char *TemporaryFolderVariable = "TMPDIR";
#endif

/// Lets programs that are started with \a environment put their temporary files into \a folder.
inline void setTemporaryPlace(QProcessEnvironment &environment, const QString &folder)
{
    environment.insert(QString::fromLatin1(TemporaryFolderVariable), folder);
}

} // namespace paravue::test
