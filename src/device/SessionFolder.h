#pragma once

#include <QString>

#include <memory>

namespace paravue
{

/// A folder in the temporary folder that belongs to one session and that only its owner can read. It is
/// removed with this object.
///
/// The session holds a lock on its folder, which the system lets go when the process ends in whatever way. So
/// a later session can tell a folder that was left behind from one that is in use. Process numbers could not
/// tell: they are given again to other processes.
class SessionFolder
{
public:
    /// Null when \a parent allows no new folder. Where the file system has no locks, the folder gets a name
    /// that removeAbandoned() passes over.
    static std::unique_ptr<SessionFolder> make(const QString &parent);

    /// Removes the folders in \a parent that ended sessions of this user on this computer have left behind.
    /// What cannot be removed, or might be in use, stays. Links are not followed: others may have put them
    /// into a temporary folder that is shared. Takes a quarter of a second at most; the next call goes on.
    static void removeAbandoned(const QString &parent);

    ~SessionFolder();
    Q_DISABLE_COPY_MOVE(SessionFolder)

    QString path() const { return m_path; }

private:
    struct System;

    SessionFolder(const QString &path, std::unique_ptr<System> system);

    QString m_path;
    std::unique_ptr<System> m_system; ///< what holds the lock
};

} // namespace paravue
