#include "snapshots/EditMerge.h"

#include "changes/PositionLists.h"
#include "snapshots/SnapshotDifferences.h"

namespace paravue
{

namespace
{

MergedEdit::State stateOf(const MergedEdit &edit)
{
    if (edit.now == edit.edited)
        return MergedEdit::State::IsDone;
    return edit.isBeforeKnown && edit.now == edit.before ? MergedEdit::State::Fits
                                                         : MergedEdit::State::Collides;
}

/// The places of the lists whose entries were moved by \a edits, or since the snapshot was taken.
QSet<QString> movedLists(const Snapshot &snapshot, const QList<ValueDifference> &edits,
                         const RecorderValues &recorder)
{
    QSet<QString> files;
    for (const ValueDifference &edit : edits)
        files.insert(edit.path.section(u'/', 0, 0));
    QList<ValueDifference> all = edits;
    for (const QString &name : files) {
        if (!recorder.hasFile(name))
            continue;
        const FileValues before(snapshot.files.value(name));
        for (auto value = before.all().cbegin(); value != before.all().cend(); ++value) {
            const ValueDifference difference{name + u'/' + value.key(), *value, {}};
            if (difference.canBeSet() && !positionlists::placeOf(difference.path).isEmpty() &&
                recorder.value(difference.path).value_or(QString()) != *value)
                all.append(difference);
        }
    }
    return positionlists::moved(all, [&](const QString &path) {
        return recorder.hasFile(path.section(u'/', 0, 0)) && recorder.value(path).has_value();
    });
}

} // namespace

QList<MergedEdit> mergeEdits(const Snapshot &snapshot, const RecorderValues &recorder)
{
    QList<MergedEdit> merged;
    const QList<ValueDifference> edits = editsOf(snapshot);
    const QSet<QString> moved = movedLists(snapshot, edits, recorder);
    for (const ValueDifference &edit : edits) {
        MergedEdit row{edit.path,
                       edit.before,
                       edit.after,
                       {},
                       MergedEdit::State::NoFile,
                       moved.contains(positionlists::placeOf(edit.path)),
                       !snapshot.info.isLeftOut(edit.path)};
        if (recorder.hasFile(edit.path.section(u'/', 0, 0))) {
            row.now = recorder.value(edit.path);
            row.state = stateOf(row);
            if (row.hasMoved && row.state == MergedEdit::State::Fits)
                row.state = MergedEdit::State::Collides;
        }
        merged << row;
    }
    return merged;
}

} // namespace paravue
