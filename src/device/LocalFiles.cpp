#include "device/LocalFiles.h"

#include "device/SessionFolder.h"

#include <QDir>
#include <QFile>
#include <QTemporaryFile>

namespace paravue
{

namespace
{

/// A host may still be reading a superseded copy.
constexpr qsizetype KeptCopies = 8;

} // namespace

LocalFiles::LocalFiles()
{
    SessionFolder::removeAbandoned(QDir::tempPath());
}

LocalFiles::~LocalFiles() = default;

QString LocalFiles::add(const QString &name, const QByteArray &content)
{
    // The temporary folder may have been cleaned up meanwhile.
    if (!m_folder || !QFile::exists(m_folder->path()))
        m_folder = SessionFolder::make(QDir::tempPath());
    if (!m_folder)
        return {};
    QTemporaryFile file(m_folder->path() + QStringLiteral("/XXXXXX"));
    if (!file.open() || file.write(content) != content.size() || !file.flush())
        return {};
    file.setAutoRemove(false);
    QStringList &paths = m_paths[name];
    paths << file.fileName();
    if (paths.size() > KeptCopies)
        QFile::remove(paths.takeFirst());
    return paths.constLast();
}

void LocalFiles::takeBack(const QString &name)
{
    QStringList &paths = m_paths[name];
    if (!paths.isEmpty())
        QFile::remove(paths.takeLast());
}

} // namespace paravue
