#pragma once

#include <cstddef>

namespace paravue::bench
{

/// Counts what the program allocates from now on in pieces of at least \a bytes, in any library.
void countAllocations(std::size_t bytes);
/// The count; counting ends.
long countedAllocations();

} // namespace paravue::bench
