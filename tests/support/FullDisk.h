#pragma once

#include <csignal>

#include <sys/resource.h>

namespace paravue::test
{

/// While it lives no file of this process can grow beyond \a bytes, as on a disk without room: files can
/// still be created, and writes fail.
class FullDisk
{
public:
    explicit FullDisk(rlim_t bytes = 0)
    {
        m_handler = std::signal(SIGXFSZ, SIG_IGN); // the write then fails
        getrlimit(RLIMIT_FSIZE, &m_usual);
        const rlimit full{bytes, m_usual.rlim_max};
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

} // namespace paravue::test
