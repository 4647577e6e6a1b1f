#include "snapshots/RestorePlan.h"

namespace paravue
{

RestorePlan::RestorePlan(const Snapshot &snapshot, const ConfigurationValues &present, const IsSent &isSent)
    : m_differences(paravue::differences(valuesOf(snapshot.currentFiles()), present, snapshot.info.leftOut))
{
    m_differences.removeIf([&isSent](const ValueDifference &difference) { return !isSent(difference.path); });
    const auto isPresent = [&present](const QString &path) {
        return present.value(path.section(u'/', 0, 0)).value(path.section(u'/', 1)).has_value();
    };
    m_moved = MovedLists(positionListsOf(snapshot.files), m_differences, isPresent, snapshot.info.leftOut);
}

bool RestorePlan::canRestore(const ValueDifference &difference) const
{
    return difference.canBeSet() && m_moved.canBeSet(difference.path);
}

QList<ValueDifference> RestorePlan::restored(const QStringList &paths) const
{
    const QSet<QString> wanted = m_moved.completed(paths, pathsOf(m_differences));
    QList<ValueDifference> found;
    for (const ValueDifference &difference : m_differences) {
        if (wanted.contains(difference.path) && canRestore(difference))
            found << difference;
    }
    return found;
}

} // namespace paravue
