#include "store/IniEntries.h"

#include <QHash>

#include <algorithm>

namespace paravue
{

QStringView IniEntries::Entry::section() const
{
    const qsizetype slash = key.indexOf(u'/');
    return slash < 0 ? QStringView(key) : QStringView(key).first(slash);
}

QStringView IniEntries::Entry::name() const
{
    const qsizetype slash = key.indexOf(u'/');
    return slash < 0 ? QStringView() : QStringView(key).sliced(slash + 1);
}

void IniEntries::clear()
{
    m_sorted.clear();
    m_index.clear();
    m_entries.clear();
}

void IniEntries::reserve(qsizetype count)
{
    m_entries.reserve(size_t(count));
    m_index.reserve(size_t(count));
}

quint32 IniEntries::find(QStringView key, size_t hash) const
{
    return m_index.find(hash, [&](quint32 number) { return m_entries[number].key == key; });
}

const IniEntries::Entry *IniEntries::find(QStringView key) const
{
    const quint32 number = find(key, qHash(key, QHashSeed::globalSeed()));
    return number == KeyIndex::None ? nullptr : &m_entries[number];
}

quint32 IniEntries::numberOf(QStringView key)
{
    const size_t hash = qHash(key, QHashSeed::globalSeed());
    const quint32 found = find(key, hash);
    if (found != KeyIndex::None)
        return found;
    m_sorted.clear();
    const quint32 number = quint32(m_entries.size());
    m_entries.push_back({key.toString(), QString()});
    m_index.insert(hash, number);
    return number;
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
