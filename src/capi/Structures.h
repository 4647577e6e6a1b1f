#pragma once

#include <cstddef>
#include <cstring>
#include <optional>

namespace paravue::capi
{

/// A structure of the host, whose first field is its size there, with the fields of this version: those that
/// an older host does not know are zero, those that only a newer one knows are left out. Nothing when \a
/// given is smaller than the first version, \a leastSize.
template <typename Structure>
std::optional<Structure> wholeCopy(const Structure &given, std::size_t leastSize = sizeof(Structure))
{
    if (given.size < leastSize)
        return {};
    Structure whole = {};
    std::memcpy(&whole, &given, given.size < sizeof(Structure) ? given.size : sizeof(Structure));
    return whole;
}

} // namespace paravue::capi
