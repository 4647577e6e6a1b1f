#pragma once

#include <QtGlobal>

#include <vector>

namespace paravue
{

/// A hash table from keys to numbers. The keys are kept by its user, who computes their hashes (with a seed,
/// as keys come from files that may be hostile) and compares them: a slot holds eight bytes only, half a hash
/// and the number, and the keys of slots with another half are never read.
///
/// A configuration file may have hundreds of thousands of keys. Adding them takes 0.47, 0.46 and 0.31 of the
/// time that a QHash of their texts takes, for files of 4 KiB, 64 KiB and 8 MiB (addKeys in bench_ini).
class KeyIndex
{
public:
    static constexpr quint32 None = ~quint32(0);

    void clear() { *this = {}; }
    /// Makes room for \a count numbers in all.
    void reserve(size_t count);
    /// The key must not be in the table yet.
    void insert(size_t hash, quint32 number);

    /// The number that was inserted with \a hash and for which \a hasKey(number) is true, or None.
    template <typename HasKey>
    quint32 find(size_t hash, HasKey hasKey) const
    {
        if (m_slots.empty())
            return None;
        for (size_t i = hash & mask(); m_slots[i].number != None; i = (i + 1) & mask()) {
            if (m_slots[i].hash == quint32(hash) && hasKey(m_slots[i].number))
                return m_slots[i].number;
        }
        return None;
    }

private:
    struct Slot {
        quint32 hash = 0; ///< lower half of the key's hash
        quint32 number = None;
    };

    size_t mask() const { return m_slots.size() - 1; }
    void put(Slot slot);

    std::vector<Slot> m_slots; ///< their number is a power of two, at most two thirds are in use
    size_t m_count = 0;
};

} // namespace paravue
