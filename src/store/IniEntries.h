#pragma once

#include "store/IniText.h"
#include "store/KeyIndex.h"

#include <QHash>
#include <QString>
#include <QStringView>

#include <cstring>
#include <memory_resource>
#include <vector>

namespace paravue
{

/// The values of one configuration file by "section/key". A value is found through a hash; the keys are
/// sorted only when their order is asked for.
class IniEntries
{
public:
    class Entry
    {
    public:
        explicit Entry(QStringView keptKey) : key(keptKey) {}

        QStringView key; ///< valid as long as the IniEntries holds it

        /// Most values of a file are never asked for, so each is taken from the \a text that it stands in
        /// when it is.
        const QString &value(const IniText &text) const
        {
            if (m_mark != InMemory)
                take(text);
            return m_value;
        }
        void setValue(const QString &value)
        {
            m_value = value;
            m_mark = InMemory;
        }
        /// The value is that of this mark of the text.
        void setMark(quint32 mark) { m_mark = mark; }

        bool inFile = false;    ///< the key was found in the file
        bool edited = false;    ///< the value is not that of the file
        bool met = false;       ///< the read in progress has found the key
        bool withdrawn = false; ///< its first value was taken back, so that the key counts as never set

        /// The part of the key before its first "/"; the default section when there is none.
        QStringView section() const;
        /// The part of the key behind its first "/".
        QStringView name() const;

    private:
        static constexpr quint32 InMemory = ~quint32(0);

        void take(const IniText &text) const;

        mutable QString m_value;
        mutable quint32 m_mark = InMemory;
    };

    bool isEmpty() const { return m_entries.empty(); }
    void clear();
    /// Makes room for \a count entries in all.
    void reserve(qsizetype count);

    const Entry *find(QStringView key) const
    {
        const quint32 number = find(key, qHash(key, m_seed));
        return number == KeyIndex::None ? nullptr : &m_entries[number];
    }
    /// The number of the entry of \a key, which is a new one when there is none.
    quint32 numberOf(QStringView key);
    Entry &operator[](quint32 number) { return m_entries[number]; }
    const Entry &operator[](quint32 number) const { return m_entries[number]; }

    /// All entries in the order of their numbers: the oldest comes first.
    std::vector<Entry> &all() { return m_entries; }
    const std::vector<Entry> &all() const { return m_entries; }
    /// All entries in the order of their keys. Valid until there is a new one.
    const std::vector<const Entry *> &sorted() const;
    static void sort(std::vector<const Entry *> &entries);

private:
    quint32 find(QStringView key, size_t hash) const
    {
        return m_index.find(hash, [&](quint32 number) {
            const QStringView found = m_entries[number].key;
            return found.size() == key.size() &&
                   std::memcmp(found.utf16(), key.utf16(), size_t(key.size()) * sizeof(char16_t)) == 0;
        });
    }

    QStringView keep(QStringView key);

    size_t m_seed = QHashSeed::globalSeed();
    std::pmr::monotonic_buffer_resource m_keys; ///< memory of the characters of all keys
    std::vector<Entry> m_entries;
    KeyIndex m_index;
    mutable std::vector<const Entry *> m_sorted;
};

} // namespace paravue
