#include "store/SystemPath.h"

#include <QDeadlineTimer>
#include <QDir>
#include <QThread>

namespace paravue
{

namespace
{

#ifdef Q_OS_WIN
constexpr int SharingLimitMs = 200;
#else
constexpr int SharingLimitMs = 0;
#endif

} // namespace

std::filesystem::path systemPath(const QString &path)
{
#ifdef Q_OS_WIN
    const QString absolute =
        QDir::toNativeSeparators(QDir::cleanPath(QDir::current().absoluteFilePath(path)));
    if (absolute.startsWith(QLatin1StringView("\\\\?\\")) ||
        absolute.startsWith(QLatin1StringView("\\\\.\\")))
        return absolute.toStdWString();
    if (absolute.startsWith(QLatin1StringView("\\\\")))
        return (QStringLiteral("\\\\?\\UNC") + absolute.sliced(1)).toStdWString();
    return (QStringLiteral("\\\\?\\") + absolute).toStdWString();
#else
    return path.toStdU16String();
#endif
}

std::error_code replaceFile(const QString &from, const QString &to)
{
    constexpr int PauseMs = 5;
    const QDeadlineTimer limit(SharingLimitMs);
    std::error_code error;
    std::filesystem::rename(systemPath(from), systemPath(to), error);
    while (error == std::errc::permission_denied && !limit.hasExpired()) {
        QThread::msleep(PauseMs);
        std::filesystem::rename(systemPath(from), systemPath(to), error);
    }
    return error;
}

} // namespace paravue
