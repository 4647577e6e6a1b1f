#include "store/WholeFile.h"

#include "store/SystemPath.h"

#include <QFile>
#include <QFileInfo>
#include <QRandomGenerator>

namespace paravue
{

namespace
{

constexpr QFile::Permissions OwnerOnly = QFile::ReadOwner | QFile::WriteOwner;

bool fail(const QFile &file, QString *error)
{
    if (error)
        *error = file.errorString();
    return false;
}

bool writeDirectly(const QString &path, const QByteArray &content, QString *error)
{
    QFile file(path);
    const bool written = file.open(QIODevice::WriteOnly | QIODevice::Truncate, OwnerOnly) &&
                         file.write(content) == content.size() && file.flush();
    return written || fail(file, error);
}

/// A full disk must not cost the old file. Where new files are not allowed, or no file may be put in its
/// place, there is no other way than to write into the old one.
bool allowsNewFiles(const QString &folder)
{
#ifdef Q_OS_WIN
    Q_UNUSED(folder); // its access rights are not known
    return false;
#else
    return QFileInfo(folder).isWritable();
#endif
}

bool isForbidden(const std::error_code &error)
{
    return error == std::errc::permission_denied || error == std::errc::operation_not_permitted ||
           error == std::errc::device_or_resource_busy || error == std::errc::cross_device_link;
}

} // namespace

bool writeWholeFile(const QString &path, const QByteArray &content, QString *error)
{
    const QFileInfo old(path);
    const bool isNew = !old.exists();
    if (path.isEmpty() || (!isNew && (!old.isFile() || !old.isWritable())))
        return writeDirectly(path, content, error);

    const QString target = isNew ? path : old.canonicalFilePath(); // a link stays a link
    const QString folder = QFileInfo(target).path();
    // Not named after the target, whose name may be as long as names can be.
    QFile file(folder + QStringLiteral("/.paravue-") +
               QString::number(QRandomGenerator::global()->generate64(), 36));
    if (!file.open(QIODevice::WriteOnly | QIODevice::NewOnly, OwnerOnly))
        return isNew || !allowsNewFiles(folder) ? writeDirectly(path, content, error) : fail(file, error);
    const bool written = file.write(content) == content.size() && file.flush() &&
                         (isNew || file.setPermissions(old.permissions()));
    file.close();
    std::error_code renameError;
    if (written) {
        renameError = replaceFile(file.fileName(), target);
        if (!renameError)
            return true;
    }
    fail(file, error);
    file.remove();
    return isForbidden(renameError) && writeDirectly(path, content, error);
}

} // namespace paravue
