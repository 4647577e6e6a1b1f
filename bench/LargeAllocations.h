#pragma once

#include <cstddef>

namespace paravue::bench
{

/// Starts counting the allocations of at least \a bytes, in any library of the program.
void countAllocations(std::size_t bytes);
/// Stops counting and returns the count.
long countedAllocations();

} // namespace paravue::bench
