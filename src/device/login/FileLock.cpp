#include "device/login/FileLock.h"

#include "store/SystemPath.h"

#include <QDeadlineTimer>
#include <QFile>
#include <QThread>

#ifdef Q_OS_WIN
#include <windows.h>
#else
#include <cerrno>

#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>
#endif

namespace paravue
{

namespace
{

constexpr int PauseMs = 5;

} // namespace

FileLock::FileLock(const QString &path, int milliseconds)
{
    const QDeadlineTimer limit(milliseconds);
    m_state = tryOnce(path);
    while (m_state == State::HeldElsewhere && !limit.hasExpired()) {
        QThread::msleep(PauseMs);
        m_state = tryOnce(path);
    }
}

#ifndef Q_OS_WIN

FileLock::~FileLock()
{
    if (m_file >= 0)
        ::close(int(m_file));
}

FileLock::State FileLock::tryOnce(const QString &path)
{
    if (m_file < 0)
        m_file = ::open(QFile::encodeName(path).constData(), O_RDWR | O_CREAT | O_NOFOLLOW | O_CLOEXEC,
                        S_IRUSR | S_IWUSR);
    if (m_file < 0)
        return State::Unavailable;
    // One that an earlier version has left is open to others.
    ::fchmod(int(m_file), S_IRUSR | S_IWUSR);
    if (::flock(int(m_file), LOCK_EX | LOCK_NB) == 0)
        return State::Taken;
    return errno == EWOULDBLOCK ? State::HeldElsewhere : State::Unavailable;
}

#else

FileLock::~FileLock()
{
    if (m_file != -1)
        CloseHandle(HANDLE(m_file));
}

/// The file is shared with nobody while it is open. Its folder, the user's local application data, keeps
/// other users out.
FileLock::State FileLock::tryOnce(const QString &path)
{
    const HANDLE file =
        CreateFileW(systemPath(path).c_str(), GENERIC_READ | GENERIC_WRITE, 0, nullptr, OPEN_ALWAYS,
                    FILE_ATTRIBUTE_NORMAL | FILE_FLAG_OPEN_REPARSE_POINT, nullptr);
    if (file != INVALID_HANDLE_VALUE) {
        m_file = qintptr(file);
        return State::Taken;
    }
    return GetLastError() == ERROR_SHARING_VIOLATION ? State::HeldElsewhere : State::Unavailable;
}

#endif

} // namespace paravue
