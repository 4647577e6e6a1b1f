#include "program/TemporaryFolder.h"

#include <QCoreApplication>
#include <QDateTime>
#include <QDir>
#include <QFile>
#include <QFileInfo>

#ifdef Q_OS_UNIX
#include <unistd.h>
#endif

namespace paravue
{

namespace
{

class FolderText
{
    Q_DECLARE_TR_FUNCTIONS(TemporaryFolder)
};

const QString Prefix = QStringLiteral("paravue-program-");
const QString LockName = QStringLiteral("lock");
const QString FilesName = QStringLiteral("files");

/// Others can put folders and links into a temporary folder that is shared.
bool isOwn(const QFileInfo &folder)
{
    if (folder.isSymLink() || !folder.isDir())
        return false;
#ifdef Q_OS_UNIX
    return folder.ownerId() == ::geteuid();
#else
    return true;
#endif
}

std::unique_ptr<QLockFile> lockOf(const QString &folder)
{
    auto lock = std::make_unique<QLockFile>(folder + u'/' + LockName);
    // Only the end of its program makes a lock stale, however long that has run.
    lock->setStaleLockTime(0);
    return lock;
}

/// The lock gets its contents a moment after it was made, and the folder its lock. A program that is killed
/// meanwhile leaves a lock without its name, which never becomes stale.
bool hasLock(const QString &folder)
{
    return QFileInfo(folder + u'/' + LockName).size() > 0;
}

bool isBeingMade(const QFileInfo &folder)
{
    constexpr qint64 LongestStart = 60; // seconds
    const QFileInfo lock(folder.filePath() + u'/' + LockName);
    const QDateTime since = lock.exists() ? lock.lastModified() : folder.lastModified();
    return !hasLock(folder.filePath()) && since.secsTo(QDateTime::currentDateTime()) < LongestStart;
}

void removeAbandoned()
{
    const QFileInfoList folders =
        QDir(QDir::tempPath()).entryInfoList({Prefix + u'*'}, QDir::Dirs | QDir::NoDotAndDotDot);
    for (const QFileInfo &folder : folders) {
        if (!isOwn(folder) || isBeingMade(folder))
            continue;
        if (!hasLock(folder.filePath()))
            QFile::remove(folder.filePath() + u'/' + LockName);
        const auto lock = lockOf(folder.filePath());
        if (!lock->tryLock())
            continue;
        QDir(folder.filePath() + u'/' + FilesName).removeRecursively();
        // Its file goes with it, which Windows would not remove while it is open.
        lock->unlock();
        QDir().rmdir(folder.filePath());
    }
}

} // namespace

TemporaryFolder::TemporaryFolder() : m_folder(QDir::tempPath() + u'/' + Prefix + QStringLiteral("XXXXXX"))
{
    removeAbandoned();
    if (!m_folder.isValid())
        return;
    m_files = m_folder.filePath(FilesName);
    auto lock = lockOf(m_folder.path());
    if (lock->tryLock() && QDir().mkpath(m_files))
        m_lock = std::move(lock);
}

TemporaryFolder::~TemporaryFolder()
{
    m_lock.reset();
}

QString TemporaryFolder::errorString() const
{
    return m_folder.isValid() ? FolderText::tr("%1 cannot be written").arg(m_folder.path())
                              : m_folder.errorString();
}

} // namespace paravue
