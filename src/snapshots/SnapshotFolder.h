#pragma once

#include "snapshots/Snapshot.h"

#include <QList>
#include <QString>

namespace paravue
{

/// A snapshot on the disk.
struct KeptSnapshot {
    QString path;
    SnapshotInfo info;
    QString problem; ///< why it cannot be used, in words for the user; mostly empty
};

/// The snapshots of one recorder: archives named after their time in a folder of their own, which only its
/// owner may read.
class SnapshotFolder
{
public:
    static constexpr int UsualCount = 30;

    /// The folder within \a root of \a recorder, as recorderOfAddress() gives it. Its name is a safe one on
    /// every system, and not that of another recorder. Nothing is made on the disk yet.
    SnapshotFolder(const QString &root, const QString &recorder);
    /// Where a user's snapshots usually are.
    static QString usualRoot();

    QString path() const { return m_path; }
    /// Makes the folder, for its owner only. What is wrong, in words for the user; empty when it is there.
    QString make() const;
    /// The newest first. What has the name of a snapshot but cannot be read is listed with its problem.
    QList<KeptSnapshot> list() const;

    /// Notes that the recorder has taken settings from this computer now, and when it has last done so: in
    /// the time of the file "last-save". Invalid when nothing was noted.
    void noteSave() const;
    QDateTime lastSave() const;

    /// What keep() has done; \a problem is in words for the user, and empty when the snapshot at \a path is
    /// on the disk.
    struct Result {
        QString path;
        QString problem;
    };
    enum class Secrets { LeftOut, Kept };
    /// Keeps \a files as a snapshot of now, and removes the oldest ones beyond \a count.
    Result keep(const FileContents &files, Secrets secrets = Secrets::LeftOut, int count = UsualCount);
    /// Keeps a snapshot that is whole already, under a new name after its time.
    Result keep(const Snapshot &snapshot, int count = UsualCount);

private:
    QString newPath(const QDateTime &time) const;
    void prune(int count, const QString &newest) const;

    QString m_root;
    QString m_recorder;
    QString m_path;
};

} // namespace paravue
