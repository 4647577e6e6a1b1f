#include "PortableSettings.h"

#include <QDir>
#include <QFile>

namespace paravue
{

namespace
{

const char DataHome[] = "PARAVUE_DATA_HOME";

void setDataHome(const QString &folder)
{
#ifdef Q_OS_WIN
    // qputenv() takes the letters of the code page only.
    _wputenv_s(QString::fromLatin1(DataHome).toStdWString().c_str(), folder.toStdWString().c_str());
#else
    qputenv(DataHome, QFile::encodeName(folder));
#endif
}

} // namespace

bool keepSettingsBesideProgram(const QString &programFolder)
{
    const QDir folder(programFolder);
    if (!qEnvironmentVariableIsEmpty(DataHome) || !folder.exists(QStringLiteral("portable.txt")))
        return false;
    setDataHome(folder.absoluteFilePath(QStringLiteral("settings")));
    return true;
}

} // namespace paravue
