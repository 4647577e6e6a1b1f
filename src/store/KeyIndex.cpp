#include "store/KeyIndex.h"

#include <algorithm>
#include <bit>
#include <utility>

namespace paravue
{

void KeyIndex::reserve(size_t count)
{
    const size_t slots = std::bit_ceil(count + count / 2);
    if (slots <= m_slots.size())
        return;
    const std::vector<Slot> old = std::exchange(m_slots, std::vector<Slot>(slots));
    for (const Slot &slot : old) {
        if (slot.number != None)
            put(slot);
    }
}

void KeyIndex::insert(size_t hash, quint32 number)
{
    constexpr size_t smallest = 16;
    if (3 * (m_count + 1) > 2 * m_slots.size())
        reserve(std::max(smallest, 2 * m_count));
    put({quint32(hash), number});
    ++m_count;
}

void KeyIndex::put(Slot slot)
{
    size_t i = slot.hash & mask();
    while (m_slots[i].number != None)
        i = (i + 1) & mask();
    m_slots[i] = slot;
}

} // namespace paravue
