#include "snapshots/RecorderLock.h"

#include "snapshots/SnapshotFolder.h"

#include <QCoreApplication>
#include <QDateTime>
#include <QFile>
#include <QFileInfo>

namespace paravue
{

namespace
{

class LockText
{
    Q_DECLARE_TR_FUNCTIONS(RecorderLock)
};

QString holderOf(const QLockFile &file)
{
    qint64 process = 0;
    QString host;
    QString program;
    if (!file.getLockInfo(&process, &host, &program))
        return LockText::tr("Another program is changing the settings of this recorder.");
    return LockText::tr("%1 on %2 (process %3) is changing the settings of this recorder.")
        .arg(program, host, QString::number(process));
}

} // namespace

void removeUnnamedLock(const QString &path)
{
    constexpr qint64 LongestMoment = 60; // seconds
    const QFileInfo file(path);
    if (file.exists() && file.size() == 0 &&
        file.lastModified().secsTo(QDateTime::currentDateTime()) > LongestMoment)
        QFile::remove(path);
}

RecorderLock::RecorderLock(const SnapshotFolder &folder) : m_problem(folder.make())
{
    if (!m_problem.isEmpty())
        return;
    const QString path = folder.path() + QStringLiteral("/changing.lock");
    removeUnnamedLock(path);
    m_file = std::make_unique<QLockFile>(path);
    m_file->setStaleLockTime(0); // a save may take long; its process tells whether it still runs
    if (m_file->tryLock())
        return;
    m_problem = m_file->error() == QLockFile::LockFailedError
                    ? holderOf(*m_file)
                    : LockText::tr("The file %1 cannot be made.").arg(path);
}

} // namespace paravue
