#pragma once

#include <QHash>
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
    /// The entry of \a key, which is a new one when there is none. Valid until the next call.
    Entry &at(QStringView key);

    /// All entries in the order of their keys. Valid until the next change.
    const std::vector<const Entry *> &sorted() const;

private:
    std::vector<Entry> m_entries;
    QHash<QStringView, quint32> m_index; ///< its keys are views of those in m_entries
    mutable std::vector<const Entry *> m_sorted;
};

} // namespace paravue
