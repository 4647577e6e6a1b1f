#pragma once

#include <QTest>

#ifndef Q_OS_WIN
#include <csignal>

#include <sys/resource.h>
#endif

namespace paravue::test
{

#ifndef Q_OS_WIN

#define SKIP_WITHOUT_FULL_DISK()

/// While it lives no file of this process can grow beyond \a bytes, as on a disk without room: files can
/// still be created, and writes fail.
class FullDisk
{
public:
    explicit FullDisk(qint64 bytes = 0)
    {
        m_handler = std::signal(SIGXFSZ, SIG_IGN); // the write then fails
        getrlimit(RLIMIT_FSIZE, &m_usual);
        const rlimit full{rlim_t(bytes), m_usual.rlim_max};
        setrlimit(RLIMIT_FSIZE, &full);
    }
    ~FullDisk()
    {
        setrlimit(RLIMIT_FSIZE, &m_usual);
        std::signal(SIGXFSZ, m_handler);
    }
    FullDisk(const FullDisk &) = delete;
    FullDisk &operator=(const FullDisk &) = delete;

private:
    rlimit m_usual{};
    void (*m_handler)(int) = nullptr;
};

#else

/// Ends a test that needs a FullDisk.
#define SKIP_WITHOUT_FULL_DISK() QSKIP("Windows sets no limit to the files of one process")

class FullDisk
{
public:
    explicit FullDisk(qint64 = 0) {}
    ~FullDisk() {}
};

#endif

} // namespace paravue::test
