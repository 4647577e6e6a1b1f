#include "recorder/files/DataFolder.h"

#include "recorder/files/RecorderText.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QRandomGenerator>

#include <filesystem>
#include <system_error>

// Outside of every namespace: the macro declares a function of the resource's own.
static void initShippedModel()
{
    Q_INIT_RESOURCE(recorder_model);
}

namespace recorder
{

namespace
{

const QString UsualModel = QStringLiteral("standard");
const QString ShippedModels = QStringLiteral(":/recorder/model");

QString fileName(const QString &name)
{
    return name == QLatin1String("interface") ? QStringLiteral("interface.xml") : name;
}

std::optional<QByteArray> readFile(const QString &path)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        return std::nullopt;
    return file.readAll();
}

/// Windows takes paths beyond 260 characters only in this form, which Qt's own functions use themselves.
std::filesystem::path systemPath(const QString &path)
{
#ifdef Q_OS_WIN
    const QString absolute = QDir::toNativeSeparators(QFileInfo(path).absoluteFilePath());
    if (!absolute.startsWith(QLatin1StringView("\\\\")))
        return (QStringLiteral("\\\\?\\") + absolute).toStdWString();
#endif
    return QFileInfo(path).filesystemFilePath();
}

/// Writes a new file and renames it to the old one, so that a reader never sees a part of it. QSaveFile would
/// also flush it to the disk, which takes longer than all other work for a request, and QTemporaryFile keeps
/// the file open, which Windows then does not rename. The files hold passwords, so only their owner may read
/// them.
bool writeFile(const QString &path, const QByteArray &content)
{
    QFile file(path + u'.' + QString::number(QRandomGenerator::global()->generate64(), 36));
    if (!file.open(QIODevice::WriteOnly | QIODevice::NewOnly, QFile::ReadOwner | QFile::WriteOwner))
        return false;
    const bool isWritten = file.write(content) == content.size() && file.flush();
    file.close();
    std::error_code failure;
    if (isWritten)
        std::filesystem::rename(systemPath(file.fileName()), systemPath(path), failure);
    if (isWritten && !failure)
        return true;
    file.remove();
    return false;
}

} // namespace

DataFolder::DataFolder(const QString &path, const QString &model) : m_path(path), m_model(model) {}

QStringList DataFolder::models()
{
    initShippedModel();
    return QStringList{UsualModel} + QDir(ShippedModels).entryList(QDir::Dirs);
}

bool DataFolder::prepare(QString &error) const
{
    const QDir folder(m_path);
    if (!folder.mkpath(QStringLiteral("."))) {
        error = RecorderText::tr("cannot create the folder %1").arg(m_path);
        return false;
    }
    if (!folder.isEmpty())
        return true;
    initShippedModel();
    const QStringList names = QDir(ShippedModels).entryList(QDir::Files);
    for (const QString &name : names) {
        const std::optional<QByteArray> content = readFile(shippedPath(name));
        if (!content || !writeFile(folder.filePath(name), *content)) {
            error = RecorderText::tr("cannot write %1").arg(folder.filePath(name));
            return false;
        }
    }
    return true;
}

QString DataFolder::filePath(const QString &name) const
{
    return QDir(m_path).filePath(fileName(name));
}

std::optional<QByteArray> DataFolder::read(const QString &name) const
{
    return readFile(filePath(name));
}

std::optional<QByteArray> DataFolder::shipped(const QString &name) const
{
    initShippedModel();
    return readFile(shippedPath(fileName(name)));
}

QString DataFolder::shippedPath(const QString &fileName) const
{
    const QString own = ShippedModels + '/' + m_model + '/' + fileName;
    return QFile::exists(own) ? own : ShippedModels + '/' + fileName;
}

bool DataFolder::replace(const QString &name, const QByteArray &content) const
{
    return writeFile(filePath(name), content);
}

} // namespace recorder
