#pragma once

#include "Require.h"

#include <ctime>

namespace paravue::fuzz
{

/// Requires that one input takes no more than two seconds, or as many as are given. It is the time of the
/// processor that counts, so that a busy machine makes no findings; the fuzzer itself reports an input that
/// hangs.
class InputTime
{
public:
    explicit InputTime(int seconds = 2) : m_end(std::clock() + seconds * CLOCKS_PER_SEC) {}
    ~InputTime() { require(std::clock() <= m_end, "an input does not take too long"); }
    InputTime(const InputTime &) = delete;
    InputTime &operator=(const InputTime &) = delete;

private:
    const std::clock_t m_end;
};

} // namespace paravue::fuzz
