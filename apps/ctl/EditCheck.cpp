#include "EditCheck.h"

#include "ControlText.h"
#include "changes/ChangeList.h"
#include "changes/FileValues.h"
#include "changes/PositionLists.h"
#include "changes/StateDirectives.h"
#include "device/EditedFiles.h"
#include "store/ConfigAddress.h"
#include "store/OrbSetup.h"

#include <QMap>

#include <algorithm>

namespace paravue
{

namespace
{

bool isWritable(const QString &path, OrbSetup &store)
{
    const QString entry = ConfigAddress(path).entry().toString();
    return isReadBack(entry, store.storedValue(path).value_or(QString()));
}

/// A file that was edited gets all its lines in their usual form, also those that the recorder has written
/// in other quotes.
QStringList lostInFile(const QString &name, const QSet<QString> &edited, const QByteArray &content)
{
    QStringList lost;
    const FileValues values(content);
    for (auto value = values.all().cbegin(); value != values.all().cend(); ++value) {
        const QString path = name + u'/' + value.key();
        if (value->contains(u'\'') && !edited.contains(path) && !isReadBack(value.key(), *value))
            lost << path;
    }
    return lost;
}

Outcome refusal(const QString &problem, QStringList paths)
{
    paths.sort();
    paths.removeDuplicates();
    return {ExitCode::BadData, problem.arg(paths.join(QStringLiteral(", ")))};
}

} // namespace

void addStaleStates(QList<Change> &changes, OrbSetup &store, const QSet<QString> &present)
{
    QMap<QString, Change> byPath;
    for (const Change &change : std::as_const(changes))
        byPath.insert(change.path, change);
    for (const QString &state : stateFiles(store)) {
        if (!ChangeList::isSent(store, state))
            continue;
        for (const Change &change : statedirectives::pendingChanges(store, state, present)) {
            if (!byPath.contains(change.path))
                byPath.insert(change.path, change);
        }
    }
    changes = byPath.values();
}

Outcome checkWriting(const QStringList &edited, const QStringList &sent, OrbSetup &store,
                     const FileContents &files)
{
    QStringList wanted = edited;
    wanted.removeIf([&store](const QString &path) { return isWritable(path, store); });
    if (!wanted.isEmpty())
        return refusal(ControlText::tr("as lines of a file these would not be read back as they are, so "
                                       "nothing was sent: %1"),
                       wanted);
    QStringList lost;
    const QSet<QString> states = stateFiles(store);
    for (const QString &name : sent) {
        const bool isEdited = std::any_of(edited.begin(), edited.end(), [&name](const QString &path) {
            return ConfigAddress(path).file() == name;
        });
        if (isEdited)
            lost += lostInFile(name, {edited.begin(), edited.end()}, files.value(name));
        if (states.contains(name))
            lost += statedirectives::lostKeys(store, name);
    }
    return lost.isEmpty() ? Outcome()
                          : refusal(ControlText::tr("values of the recorder would be lost with their file "
                                                    "written again, so nothing was sent: %1"),
                                    lost);
}

} // namespace paravue
