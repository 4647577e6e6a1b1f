#pragma once

#include <QString>

namespace paravue
{

/// A lock that programs of one user share by the path of a file. The system lets go of it when the program
/// ends in whatever way; the file stays. Only its owner can open it, as whoever can read a file can lock it.
class FileLock
{
public:
    enum class State {
        Taken,
        HeldElsewhere,
        Unavailable ///< the file cannot be made, or its file system has no locks
    };

    /// Tries for \a milliseconds to take the lock.
    FileLock(const QString &path, int milliseconds);
    ~FileLock();
    Q_DISABLE_COPY_MOVE(FileLock)

    State state() const { return m_state; }

private:
    State tryOnce(const QString &path);

    qintptr m_file = -1; ///< a descriptor; on Windows a handle
    State m_state = State::Unavailable;
};

} // namespace paravue
