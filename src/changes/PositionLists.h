#pragma once

#include "changes/FileValues.h"
#include "changes/SecretKeys.h"

#include <QByteArray>
#include <QHash>
#include <QList>
#include <QMultiHash>
#include <QSet>
#include <QString>
#include <QStringList>

#include <functional>

namespace paravue
{

/// Lists whose entries are known by their position only: one key tells how many there are, and the keys of an
/// entry end in its number, as "CNT", "NAME0", "PASSWD0", "LEVEL0" of users. When an entry is removed the
/// later ones move, so the values of a position may then be those of somebody else.
class PositionLists
{
public:
    /// Those that are known by their keys: users ("CNT") and packages ("PACKAGES").
    PositionLists() = default;
    /// Also those of which \a description shows rows, which tell their "row_count" and "column_source".
    explicit PositionLists(const QByteArray &description);

    /// "file/section" of the list that the value at \a path may belong to; empty for other values.
    QString placeOf(const QString &path) const;
    /// The list and the number of the entry that the value at \a path may belong to.
    QString entryOf(const QString &path) const;
    /// Where the entries of the described list are counted of which \a path is the count or a cell; empty for
    /// other values.
    QString describedList(const QString &path) const;
    /// Whether a described list shares a file without sections with the value at \a path. Of such a file only
    /// what the list shows belongs to it, and secrets with a number, which no table shows.
    bool isBesideList(const QString &path) const;
    /// Whether the value at \a path tells how many entries there are.
    bool isCount(const QString &path) const;
    /// Whether it tells which entry stands at a position, if there is a list.
    bool tellsEntry(const QString &path) const;
    /// Where the number of entries of the list \a place may stand, of those known by their keys and of the
    /// described ones.
    static QStringList knownCountsOf(const QString &place);
    QStringList describedCountsOf(const QString &place) const { return m_counts.values(place); }

private:
    struct DescribedList;
    void add(const DescribedList &list);

    QMultiHash<QString, QString> m_counts; ///< paths by place, beside those known by their keys
    /// The same, by their own paths, those of columns without the number, and "file/section" of columns.
    QHash<QString, QString> m_described;
    QHash<QString, QString> m_places; ///< by "file/section" of entries that are counted elsewhere
    QSet<QString> m_names;            ///< paths without the number, of what tells entries apart
    SecretKeys m_secrets;
};

/// The lists in which entries were added, removed, moved or renamed between two states of a configuration.
/// A value of such a list is set only together with all others of the list: alone it would be given to
/// whoever has its position in the other state. A list of which values are missing is not set at all.
class MovedLists
{
public:
    using HasKey = std::function<bool(const QString &path)>;

    MovedLists() = default;
    /// \a differences are those of the two states. \a hasKey tells whether one of them has a key at a path.
    /// \a leftOut are secrets that the state to be set does not hold, as SnapshotInfo::leftOut.
    MovedLists(const PositionLists &grammar, const QList<ValueDifference> &differences, const HasKey &hasKey,
               const QStringList &leftOut = {});

    bool isEmpty() const { return m_lists.isEmpty(); }
    /// "file/section" of the list that the value at \a path is set with; empty when it can be set alone.
    QString listOf(const QString &path) const;
    /// The places of the lists of which values were left out.
    const QSet<QString> &incomplete() const { return m_incomplete; }
    /// False for values of those.
    bool canBeSet(const QString &path) const;
    /// \a chosen without what cannot be set, and with the other values of the lists that it names, which are
    /// among \a all.
    QSet<QString> completed(const QStringList &chosen, const QStringList &all) const;

private:
    PositionLists m_grammar;
    QSet<QString> m_lists;
    QSet<QString> m_sections;   ///< of the lists, those known by their keys: all numbered keys belong to them
    QSet<QString> m_incomplete; ///< of the lists
};

/// The paths of \a values, which have a member "path".
template <typename Values>
QStringList pathsOf(const Values &values)
{
    QStringList paths;
    paths.reserve(values.size());
    for (const auto &value : values)
        paths << value.path;
    return paths;
}

} // namespace paravue
