#pragma once

#if defined(__x86_64__) && defined(__GNUC__)
#include <immintrin.h>
#endif

namespace paravue
{

/// To be called before work on many bytes. On processors with AVX-512 the hash of a string or of bytes in Qt
/// 6.4 leaves the upper halves of the vector registers in use. From then on, code for the lower halves waits
/// each time that it follows code for the whole ones, such as memcpy(): reading a file of 64 KiB takes 2.2
/// times as long.
#if defined(__x86_64__) && defined(__GNUC__)
__attribute__((target("avx"), noinline)) inline void clearUpperRegisters()
{
    _mm256_zeroupper();
}
inline void releaseWideRegisters()
{
    if (__builtin_cpu_supports("avx"))
        clearUpperRegisters();
}
#else
inline void releaseWideRegisters() {}
#endif

} // namespace paravue
