#include "LargeAllocations.h"

#include <atomic>
#include <cerrno>
#include <limits>

// The C library's own allocator. The functions below replace it for all libraries of the program.
extern "C" {
void *__libc_malloc(std::size_t size);
void *__libc_calloc(std::size_t count, std::size_t size);
void *__libc_realloc(void *memory, std::size_t size);
void *__libc_memalign(std::size_t alignment, std::size_t size);
}

namespace
{

constexpr std::size_t Nothing = std::numeric_limits<std::size_t>::max();

std::atomic<std::size_t> smallest = Nothing;
std::atomic<long> found = 0;

void note(std::size_t size)
{
    if (size >= smallest)
        ++found;
}

} // namespace

extern "C" {

void *malloc(std::size_t size) noexcept
{
    note(size);
    return __libc_malloc(size);
}

void *calloc(std::size_t count, std::size_t size) noexcept
{
    note(count * size);
    return __libc_calloc(count, size);
}

void *realloc(void *memory, std::size_t size) noexcept
{
    note(size);
    return __libc_realloc(memory, size);
}

void *aligned_alloc(std::size_t alignment, std::size_t size) noexcept
{
    note(size);
    return __libc_memalign(alignment, size);
}

int posix_memalign(void **memory, std::size_t alignment, std::size_t size) noexcept
{
    note(size);
    *memory = __libc_memalign(alignment, size);
    return *memory ? 0 : ENOMEM;
}
}

namespace paravue::bench
{

void countAllocations(std::size_t bytes)
{
    found = 0;
    smallest = bytes;
}

long countedAllocations()
{
    smallest = Nothing;
    return found;
}

} // namespace paravue::bench
