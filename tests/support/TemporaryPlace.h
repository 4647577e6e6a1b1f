#pragma once

#include <QProcessEnvironment>
#include <QString>

namespace paravue::test
{

/// Lets programs that are started with \a environment put their temporary files into \a folder.
inline void setTemporaryPlace(QProcessEnvironment &environment, const QString &folder)
{
    for (const char *variable : {"TMPDIR", "TMP", "TEMP"}) // Windows reads the second
        environment.insert(QString::fromLatin1(variable), folder);
}

} // namespace paravue::test
