#include "store/WholeFile.h"

#include <QFile>
#include <QFileInfo>
#include <QRandomGenerator>

#include <filesystem>

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

} // namespace

bool writeWholeFile(const QString &path, const QByteArray &content, QString *error)
{
    const QFileInfo old(path);
    const bool isNew = !old.exists();
    if (path.isEmpty() || (!isNew && (!old.isFile() || !old.isWritable())))
        return writeDirectly(path, content, error);

    const QString target = isNew ? path : old.canonicalFilePath(); // a link stays a link
    QFile file(target + u'.' + QString::number(QRandomGenerator::global()->generate64(), 36));
    if (!file.open(QIODevice::WriteOnly | QIODevice::NewOnly, OwnerOnly))
        return writeDirectly(path, content, error);
    const bool written = file.write(content) == content.size() && file.flush() &&
                         (isNew || file.setPermissions(old.permissions()));
    file.close();
    std::error_code renameError;
    if (written) {
        std::filesystem::rename(file.fileName().toStdU16String(), target.toStdU16String(), renameError);
        if (!renameError)
            return true;
    }
    fail(file, error);
    file.remove();
    return renameError && writeDirectly(path, content, error);
}

} // namespace paravue
