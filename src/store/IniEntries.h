#pragma once

#include "store/KeyIndex.h"

#include <QString>
#include <QStringView>

#include <vector>

namespace paravue
{

/// The values of one configuration file by "section/key". A value is found through a hash; the order of keys
/// is worked out when somebody asks for it.
class IniEntries
{
public:
    struct Entry {
        QString key;
        QString value;
        bool inFile = false; ///< the key was found in the file
        bool edited = false; ///< the value is not that of the file
        bool met = false;    ///< by the reading that is under way

        /// The part of the key before its first "/".
        QStringView section() const;
        /// The part of the key behind its first "/".
        QStringView name() const;
    };

    bool isEmpty() const { return m_entries.empty(); }
    void clear();
    /// Makes room for \a count entries in all.
    void reserve(qsizetype count);

    const Entry *find(QStringView key) const;
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
    quint32 find(QStringView key, size_t hash) const;

    std::vector<Entry> m_entries;
    KeyIndex m_index;
    mutable std::vector<const Entry *> m_sorted;
};

} // namespace paravue
