#include "device/LocalFiles.h"

#include <QFile>
#include <QTemporaryFile>

namespace paravue
{

namespace
{

/// Somebody may still read the copy of a moment ago.
constexpr qsizetype KeptCopies = 8;

} // namespace

LocalFiles::~LocalFiles()
{
    for (const QStringList &paths : std::as_const(m_paths)) {
        for (const QString &path : paths)
            QFile::remove(path);
    }
}

QString LocalFiles::add(const QString &name, const QByteArray &content)
{
    QTemporaryFile file;
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
