#include "store/IniEntries.h"

#include "store/IniGrammar.h"

#include <algorithm>

namespace paravue
{

QStringView IniEntries::Entry::section() const
{
    const qsizetype slash = key.indexOf(u'/');
    return slash < 0 ? DefaultSection : key.first(slash);
}

QStringView IniEntries::Entry::name() const
{
    return key.sliced(key.indexOf(u'/') + 1);
}

void IniEntries::Entry::take(const IniText &text) const
{
    m_value = QString::fromUtf8(text.value(text.marks()[m_mark]));
    m_mark = InMemory;
}

void IniEntries::clear()
{
    m_sorted.clear();
    m_index.clear();
    m_entries.clear();
    m_keys.release();
}

void IniEntries::reserve(qsizetype count)
{
    m_entries.reserve(size_t(count));
    m_index.reserve(size_t(count));
}

quint32 IniEntries::numberOf(QStringView key)
{
    const size_t hash = qHash(key, m_seed);
    const quint32 found = find(key, hash);
    if (found != KeyIndex::None)
        return found;
    m_sorted.clear();
    const quint32 number = quint32(m_entries.size());
    m_entries.emplace_back(keep(key));
    m_index.insert(hash, number);
    return number;
}

QStringView IniEntries::keep(QStringView key)
{
    const size_t size = size_t(key.size());
    auto *const copy = static_cast<char16_t *>(m_keys.allocate(size * sizeof(char16_t), alignof(char16_t)));
    std::copy_n(key.utf16(), size, copy);
    return {copy, key.size()};
}

void IniEntries::sort(std::vector<const Entry *> &entries)
{
    std::sort(entries.begin(), entries.end(), [](const Entry *a, const Entry *b) { return a->key < b->key; });
}

const std::vector<const IniEntries::Entry *> &IniEntries::sorted() const
{
    if (m_sorted.size() != m_entries.size()) {
        m_sorted.clear();
        m_sorted.reserve(m_entries.size());
        for (const Entry &entry : m_entries)
            m_sorted.push_back(&entry);
        sort(m_sorted);
    }
    return m_sorted;
}

} // namespace paravue
