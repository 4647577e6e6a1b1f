#pragma once

#include "Require.h"

#include <ctime>

namespace paravue::fuzz
{

/// Requires that one input takes no more than two seconds, or six in a build without optimisation. It is the
/// time of the processor that counts, so that a busy machine makes no findings; the fuzzer itself reports an
/// input that hangs.
class InputTime
{
public:
    InputTime() : m_began(std::clock()) {}
    ~InputTime()
    {
        require(std::clock() - m_began <= MostSeconds * CLOCKS_PER_SEC, "an input takes two seconds at most");
    }
    InputTime(const InputTime &) = delete;
    InputTime &operator=(const InputTime &) = delete;

private:
#ifdef __OPTIMIZE__
    static constexpr int MostSeconds = 2;
#else
    static constexpr int MostSeconds = 6;
#endif
    const std::clock_t m_began;
};

} // namespace paravue::fuzz
