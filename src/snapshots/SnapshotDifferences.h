#pragma once

#include "changes/FileValues.h"
#include "changes/PositionLists.h"
#include "snapshots/Snapshot.h"

#include <QList>
#include <QMap>
#include <QString>
#include <QStringList>

namespace paravue
{

/// The values of several files by their names.
using ConfigurationValues = QMap<QString, FileValues>;
/// Those of \a files that hold settings: the interface description does not.
ConfigurationValues valuesOf(const FileContents &files);
/// The lists that the interface description among \a files shows.
PositionLists positionListsOf(const FileContents &files);

/// The differing values of all files that both have, in the order of their paths. The time of the recorder's
/// clock does not count, and neither does what \a leftOut names, as SnapshotInfo::leftOut.
QList<ValueDifference> differences(const ConfigurationValues &before, const ConfigurationValues &after,
                                   const QStringList &leftOut = {});
/// What was edited in \a snapshot without the recorder. A file that was left out whole counts as empty. No
/// address can name a key with a "/", so none is edited.
QList<ValueDifference> editsOf(const Snapshot &snapshot);
/// Those of two snapshots, without what either has left out.
QList<ValueDifference> differences(const Snapshot &before, const Snapshot &after);

} // namespace paravue
