#include "OpenFiles.h"

#ifndef _WIN32
#include <sys/resource.h>

#include <algorithm>
#endif

namespace paravue
{

#ifdef _WIN32

int raiseOpenFiles(int jobs)
{
    return jobs; // sockets are no files there
}

#else

namespace
{

/// A connection, the folder of a session and that of its second look, the lock, and files being read.
constexpr rlim_t FilesOfSession = 8;
/// Streams of the program, event loops, an inventory.
constexpr rlim_t FilesOfProgram = 32;

} // namespace

int raiseOpenFiles(int jobs)
{
    rlimit files{};
    if (::getrlimit(RLIMIT_NOFILE, &files) != 0)
        return jobs;
    const rlim_t needed = FilesOfProgram + rlim_t(jobs) * FilesOfSession;
    if (files.rlim_cur < needed) {
        rlimit raised = files;
        raised.rlim_cur = std::min(needed, files.rlim_max);
        if (::setrlimit(RLIMIT_NOFILE, &raised) == 0)
            files = raised;
    }
    if (files.rlim_cur >= needed)
        return jobs;
    const rlim_t left = files.rlim_cur > FilesOfProgram ? files.rlim_cur - FilesOfProgram : 0;
    return std::max(1, int(left / FilesOfSession));
}

#endif

} // namespace paravue
