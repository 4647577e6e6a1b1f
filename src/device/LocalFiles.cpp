#include "device/LocalFiles.h"

#include "device/SessionFolder.h"

#include <QDir>
#include <QFile>

namespace paravue
{

namespace
{

/// A host may still be reading a superseded copy.
constexpr qsizetype KeptCopies = 8;

/// Of this process. A session cleans the temporary folder of what others have left behind, but beside many it
/// would look at the folders of all of them, and they have cleaned it.
int aliveSessions = 0;
constexpr int ManySessions = 8;

} // namespace

LocalFiles::LocalFiles()
{
    if (++aliveSessions <= ManySessions)
        SessionFolder::removeAbandoned(QDir::tempPath());
}

LocalFiles::~LocalFiles()
{
    --aliveSessions;
}

QString LocalFiles::add(const QString &name, const QByteArray &content)
{
    QFile file;
    if (!open(file)) {
        // The temporary folder may have been cleaned up meanwhile.
        if (m_folder && QFile::exists(m_folder->path()))
            return {};
        m_folder = SessionFolder::make(QDir::tempPath());
        if (!open(file))
            return {};
    }
    if (file.write(content) != content.size()) {
        file.remove();
        return {};
    }
    QStringList &paths = m_paths[name];
    paths << file.fileName();
    if (paths.size() > KeptCopies)
        QFile::remove(paths.takeFirst());
    return paths.constLast();
}

/// Nobody else may put a file into the folder, so a number is a new name.
bool LocalFiles::open(QFile &file)
{
    if (!m_folder)
        return false;
    file.setFileName(m_folder->path() + u'/' + QString::number(++m_count));
    // With a buffer a full disk would show only when the file is closed.
    return file.open(QIODevice::WriteOnly | QIODevice::NewOnly | QIODevice::Unbuffered,
                     QFile::ReadOwner | QFile::WriteOwner);
}

bool LocalFiles::holds(const QString &path) const
{
    return m_folder && path.startsWith(m_folder->path() + u'/');
}

void LocalFiles::takeBack(const QString &name)
{
    QStringList &paths = m_paths[name];
    if (!paths.isEmpty())
        QFile::remove(paths.takeLast());
}

} // namespace paravue
