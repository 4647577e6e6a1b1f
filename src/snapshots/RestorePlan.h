#pragma once

#include "changes/FileValues.h"
#include "changes/PositionLists.h"
#include "snapshots/Snapshot.h"
#include "snapshots/SnapshotDifferences.h"

#include <QList>
#include <QString>
#include <QStringList>

#include <functional>

namespace paravue
{

/// What of a snapshot can be restored where other values are now.
///
/// What the snapshot has left out is not restored, and neither are the time of the recorder's clock and files
/// that no save sends. A value of a list whose entries have moved since is restored with all others of the
/// list or not at all (see MovedLists).
class RestorePlan
{
public:
    /// False for what the recorder does not take.
    using IsSent = std::function<bool(const QString &path)>;

    RestorePlan() = default;
    RestorePlan(const Snapshot &snapshot, const ConfigurationValues &present, const IsSent &isSent);

    /// The values that differ, those of the snapshot first, in the order of their paths.
    const QList<ValueDifference> &differences() const { return m_differences; }
    const MovedLists &movedLists() const { return m_moved; }

    bool canRestore(const ValueDifference &difference) const;
    /// Of the values at \a paths those that can be restored, with the others of their lists.
    QList<ValueDifference> restored(const QStringList &paths) const;

private:
    QList<ValueDifference> m_differences;
    MovedLists m_moved;
};

} // namespace paravue
