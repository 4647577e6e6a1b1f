#pragma once

#include <cstdio>
#include <cstdlib>

/// Aborts when a condition that has to hold for every input does not. The fuzzer then keeps the input.
inline void require(bool holds, const char *what)
{
    if (!holds) {
        std::fprintf(stderr, "does not hold: %s\n", what);
        std::abort();
    }
}
