#include "snapshots/EditMerge.h"

#include "changes/PositionLists.h"

namespace paravue
{

namespace
{

std::optional<QString> valueAt(const ConfigurationValues &values, const QString &path)
{
    return values.value(path.section(u'/', 0, 0)).value(path.section(u'/', 1));
}

MergedEdit::State stateOf(const MergedEdit &edit)
{
    if (edit.now == edit.edited)
        return MergedEdit::State::IsDone;
    const bool fits = edit.isBeforeKnown && edit.now == edit.before && edit.movedList.isEmpty();
    return fits ? MergedEdit::State::Fits : MergedEdit::State::Collides;
}

/// What \a before and \a after have otherwise in lists, of the files that are edited.
QList<ValueDifference> listDifferences(const PositionLists &lists, const QList<ValueDifference> &edits,
                                       const ConfigurationValues &before, const ConfigurationValues &after)
{
    QSet<QString> files;
    for (const ValueDifference &edit : edits)
        files.insert(edit.path.section(u'/', 0, 0));
    QList<ValueDifference> found = differences(before, after);
    found.removeIf([&](const ValueDifference &difference) {
        return difference.isOnlyAKey() || !difference.canBeSet() ||
               lists.placeOf(difference.path).isEmpty() ||
               !files.contains(difference.path.section(u'/', 0, 0));
    });
    return found;
}

} // namespace

QList<MergedEdit> mergeEdits(const Snapshot &snapshot, const ConfigurationValues &recorder)
{
    const QList<ValueDifference> edits = editsOf(snapshot);
    const ConfigurationValues before = valuesOf(snapshot.files);
    const ConfigurationValues edited = valuesOf(snapshot.currentFiles());
    const PositionLists lists = positionListsOf(snapshot.files);
    const MovedLists moved(
        lists, edits + listDifferences(lists, edits, before, recorder),
        [&recorder](const QString &path) { return valueAt(recorder, path).has_value(); },
        snapshot.info.leftOut);
    QList<MergedEdit> merged;
    const auto add = [&](const QString &path, const std::optional<QString> &old,
                         const std::optional<QString> &now) {
        MergedEdit row{path, old, now, valueAt(recorder, path)};
        row.movedList = moved.listOf(path);
        row.canBeTaken = moved.canBeSet(path);
        row.isBeforeKnown = !snapshot.info.isLeftOut(path);
        row.state = recorder.contains(path.section(u'/', 0, 0)) ? stateOf(row) : MergedEdit::State::NoFile;
        merged << row;
    };
    for (const ValueDifference &edit : edits)
        add(edit.path, edit.before, edit.after);
    QSet<QString> known;
    QSet<QString> editedLists;
    for (const ValueDifference &edit : edits) {
        known.insert(edit.path);
        editedLists.insert(moved.listOf(edit.path));
    }
    editedLists.remove(QString());
    for (const ValueDifference &other : listDifferences(lists, edits, edited, recorder)) {
        // Without the secrets that were left out there is nothing to take over.
        if (!known.contains(other.path) && editedLists.contains(moved.listOf(other.path)) &&
            moved.canBeSet(other.path))
            add(other.path, other.before, other.before);
    }
    return merged;
}

} // namespace paravue
