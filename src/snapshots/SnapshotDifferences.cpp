#include "snapshots/SnapshotDifferences.h"

#include "changes/ChangeList.h"
#include "store/ConfigAddress.h"

#include <QSet>

namespace paravue
{

namespace
{

const QString DescriptionName = QStringLiteral("interface");

} // namespace

ConfigurationValues valuesOf(const FileContents &files)
{
    ConfigurationValues values;
    for (auto file = files.cbegin(); file != files.cend(); ++file) {
        if (file.key() != DescriptionName)
            values.insert(file.key(), FileValues(*file));
    }
    return values;
}

PositionLists positionListsOf(const FileContents &files)
{
    return PositionLists(files.value(DescriptionName));
}

QList<ValueDifference> differences(const ConfigurationValues &before, const ConfigurationValues &after,
                                   const QStringList &leftOut)
{
    const QSet<QString> ignored(leftOut.begin(), leftOut.end());
    QList<ValueDifference> found;
    for (auto file = before.cbegin(); file != before.cend(); ++file) {
        const auto other = after.constFind(file.key());
        if (other != after.cend() && !ignored.contains(file.key()))
            found += differences(file.key(), *file, *other);
    }
    found.removeIf([&ignored](const ValueDifference &difference) {
        return ignored.contains(difference.path) ||
               !ChangeList::reachesTheRecorder(ConfigAddress(difference.path));
    });
    return found;
}

QList<ValueDifference> editsOf(const Snapshot &snapshot)
{
    ConfigurationValues before = valuesOf(snapshot.files);
    for (const QString &name : snapshot.info.filesLeftOut(snapshot.files))
        before.insert(name, {});
    QList<ValueDifference> edits = differences(before, valuesOf(snapshot.edited));
    edits.removeIf([&](const ValueDifference &edit) {
        const bool isOfUnknown = !snapshot.files.contains(edit.path.section(u'/', 0, 0));
        return !edit.canBeSet() || (isOfUnknown && edit.isOnlyAKey());
    });
    return edits;
}

QList<ValueDifference> differences(const Snapshot &before, const Snapshot &after)
{
    FileContents old = before.currentFiles();
    FileContents now = after.currentFiles();
    old.removeIf([&now](auto file) { return now.value(file.key()) == *file; }); // mostly all but one
    now.removeIf([&old](auto file) { return !old.contains(file.key()); });
    return differences(valuesOf(old), valuesOf(now), before.info.leftOut + after.info.leftOut);
}

} // namespace paravue
