#pragma once

#include "changes/FileValues.h"

#include <QList>
#include <QSet>
#include <QString>

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

/// The places of the lists in which \a differences add, remove, move or rename entries. \a hasKey tells
/// whether there is a key at a path.
QSet<QString> moved(const QList<ValueDifference> &differences,
                    const std::function<bool(const QString &path)> &hasKey);

} // namespace positionlists

} // namespace paravue
