#pragma once

#include <QtGlobal>

#include <vector>

namespace paravue
{

/// Numbers by the hash of their keys; the keys themselves are elsewhere. A file may have hundreds of
/// thousands of keys, which is why a slot holds just enough to tell nearly all other keys apart without a
/// look at them.
class KeyIndex
{
public:
    static constexpr quint32 None = ~quint32(0);

    void clear() { *this = {}; }
    void reserve(size_t count);
    void insert(size_t hash, quint32 number);

    /// The number that was inserted with \a hash and for which \a isIt(number) is true, or None.
    template <typename IsIt>
    quint32 find(size_t hash, IsIt isIt) const
    {
        if (m_slots.empty())
            return None;
        for (size_t i = hash & mask(); m_slots[i].number != None; i = (i + 1) & mask()) {
            if (m_slots[i].hash == quint32(hash) && isIt(m_slots[i].number))
                return m_slots[i].number;
        }
        return None;
    }

private:
    struct Slot {
        quint32 hash = 0; ///< its lower half
        quint32 number = None;
    };

    size_t mask() const { return m_slots.size() - 1; }
    void put(Slot slot);

    std::vector<Slot> m_slots; ///< a power of two of them, at most half in use
    size_t m_count = 0;
};

} // namespace paravue
