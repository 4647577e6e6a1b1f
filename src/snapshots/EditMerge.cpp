#include "snapshots/EditMerge.h"

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

} // namespace

QList<MergedEdit> mergeEdits(const Snapshot &snapshot, const RecorderValues &recorder)
{
    QList<MergedEdit> merged;
    for (const ValueDifference &edit : editsOf(snapshot)) {
        MergedEdit row{edit.path,
                       edit.before,
                       edit.after,
                       {},
                       MergedEdit::State::NoFile,
                       !snapshot.info.isLeftOut(edit.path)};
        if (recorder.hasFile(edit.path.section(u'/', 0, 0))) {
            row.now = recorder.value(edit.path);
            row.state = stateOf(row);
        }
        merged << row;
    }
    return merged;
}

} // namespace paravue
