#pragma once

#include "store/IniText.h"
#include "store/KeyIndex.h"

#include <QByteArrayView>
#include <QHash>
#include <QString>
#include <QStringView>

#include <memory_resource>
#include <span>
#include <vector>

namespace paravue
{

/// The values of one configuration file by "section/key". A value is found through a hash; the keys are
/// sorted only when their order is asked for. They are kept as the file has them, in UTF-8.
class IniEntries
{
public:
    class Entry
    {
    public:
        /// The bytes of the key stay where they are.
        explicit Entry(QByteArrayView keptKey) : m_key(keptKey.data()), m_keySize(quint32(keptKey.size())) {}

        /// "section/key", valid as long as the IniEntries holds it.
        QByteArrayView key() const { return {m_key, qsizetype(m_keySize)}; }

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
        QByteArrayView section() const;
        /// The part of the key behind its first "/".
        QByteArrayView name() const;

    private:
        static constexpr quint32 InMemory = ~quint32(0);

        void take(const IniText &text) const;

        const char *m_key;
        quint32 m_keySize;
        mutable quint32 m_mark = InMemory;
        mutable QString m_value;
    };

    bool isEmpty() const { return m_entries.empty(); }
    void clear();
    /// Makes room for \a count entries in all, with keys of so many bytes together.
    void reserve(qsizetype count, qsizetype keyBytes = 0);

    const Entry *find(QStringView key) const;
    /// The number of the entry of \a key, which is a new one when there is none.
    quint32 numberOf(QStringView key);
    quint32 numberOf(QByteArrayView key);
    Entry &operator[](quint32 number) { return m_entries[number]; }
    const Entry &operator[](quint32 number) const { return m_entries[number]; }

    /// All entries in the order of their numbers: the oldest comes first.
    std::vector<Entry> &all() { return m_entries; }
    const std::vector<Entry> &all() const { return m_entries; }
    /// All entries in the order of their keys as UTF-16. Valid until there is a new one.
    const std::vector<const Entry *> &sorted() const;
    static void sort(std::vector<const Entry *> &entries);

private:
    size_t hashOf(QByteArrayView key) const;
    quint32 find(QByteArrayView key, size_t hash) const
    {
        return m_index.find(hash, [&](quint32 number) { return m_entries[number].key() == key; });
    }

    QByteArrayView keep(QByteArrayView key);

    size_t m_seed = QHashSeed::globalSeed();
    std::pmr::monotonic_buffer_resource m_keys; ///< memory of the characters of all keys
    std::span<char> m_freeKeys;                 ///< what is free of what was reserved of it
    std::vector<Entry> m_entries;
    KeyIndex m_index;
    mutable std::vector<const Entry *> m_sorted;
};

} // namespace paravue
