#pragma once

#include "PairedRatio.h"

#include <ctime>

namespace paravue::bench
{

/// The processor time that \a work takes, by default in this thread alone. With CLOCK_PROCESS_CPUTIME_ID in
/// all threads of the process.
template <typename Work>
Seconds processorTime(Work work, clockid_t clock = CLOCK_THREAD_CPUTIME_ID)
{
    const auto now = [clock] {
        timespec time{};
        clock_gettime(clock, &time);
        return Seconds(double(time.tv_sec) + double(time.tv_nsec) * 1e-9);
    };
    const Seconds start = now();
    work();
    return now() - start;
}

} // namespace paravue::bench
