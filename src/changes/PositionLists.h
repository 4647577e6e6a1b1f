#pragma once

#include "changes/FileValues.h"

#include <QList>
#include <QSet>
#include <QString>
#include <QStringList>

#include <functional>

namespace paravue
{

/// Lists whose entries are known by their position only: one key of a section tells how many there are, and
/// the keys of an entry end in its number, as "CNT", "NAME0", "PASSWD0", "LEVEL0" of users. When an entry is
/// removed the later ones move, so the values of a position may then be those of somebody else.
namespace positionlists
{

/// "file/section" of a path whose key may be one of such a list; empty for other paths.
QString placeOf(const QString &path);

} // namespace positionlists

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
    MovedLists(const QList<ValueDifference> &differences, const HasKey &hasKey,
               const QStringList &leftOut = {});

    bool isEmpty() const { return m_lists.isEmpty(); }
    /// Values of some of the lists were left out.
    bool hasIncomplete() const { return !m_incomplete.isEmpty(); }
    /// "file/section" of each of them.
    const QSet<QString> &incomplete() const { return m_incomplete; }
    /// "file/section" of the list that the value at \a path is set with; empty when it can be set alone.
    QString listOf(const QString &path) const;
    /// False for values of lists of which some were left out.
    bool canBeSet(const QString &path) const;
    /// \a chosen without what cannot be set, and with the other values of the lists that it names, which are
    /// among \a all.
    QSet<QString> completed(const QStringList &chosen, const QStringList &all) const;

private:
    QSet<QString> m_lists;
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
