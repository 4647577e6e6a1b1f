#include "snapshots/RecorderLock.h"

#include "snapshots/SnapshotFolder.h"

#include <QCoreApplication>

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

RecorderLock::RecorderLock(const SnapshotFolder &folder) : m_problem(folder.make())
{
    if (!m_problem.isEmpty())
        return;
    const QString path = folder.path() + QStringLiteral("/changing.lock");
    m_file = std::make_unique<QLockFile>(path);
    m_file->setStaleLockTime(0); // a save may take long; its process tells whether it still runs
    if (m_file->tryLock())
        return;
    m_problem = m_file->error() == QLockFile::LockFailedError
                    ? holderOf(*m_file)
                    : LockText::tr("The file %1 cannot be made.").arg(path);
}

} // namespace paravue
