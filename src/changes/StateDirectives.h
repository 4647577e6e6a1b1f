#pragma once

#include "store/StateTemplate.h"

#include <QList>
#include <QSet>
#include <QString>
#include <QStringList>

#include <functional>
#include <optional>

class OrbSetup;

namespace paravue
{

struct Change;

/// What the directives of state files do with the values of a session. A file without directives costs one
/// look through its text.
namespace statedirectives
{

/// Shorter secrets stand in a text by chance.
inline constexpr qsizetype ShortestSecret = 4;

/// How often the directives of a text may run while it is only looked at: for each of them, and beside that.
inline constexpr qsizetype RunsOfEach = 8;
inline constexpr qsizetype MoreRuns = 64;

/// What sending would make of \a text. A directive that puts something in front of itself runs again, mostly
/// once. One that does so without end is stopped early (TooSlow): each run may lengthen the text and also the
/// pattern, so that the limits of sending, which are for large files, would take seconds.
CompiledState preview(const QString &text, const ValueLookup &valueOf,
                      qsizetype maximumGrowth = MaxStateGrowth);

/// The values that a secret path has and has had; nothing for a path that is not secret.
using SecretValues = std::function<std::optional<QStringList>(const QString &path)>;

/// The paths in the file \a name that its directives fill with values of secret addresses, or that hold such
/// a value already. Nothing when this cannot be told, as the directives take too long or feed themselves, or
/// as the file cannot be read: each of its values may be secret then.
std::optional<QSet<QString>> secretPaths(OrbSetup &store, const QString &name, const SecretValues &secrets);

/// What sending the file \a name changes in it beside its edits. Secrets are not marked. Directives that take
/// too long count as none.
QList<Change> pendingChanges(OrbSetup &store, const QString &name);

/// Of these the new values that are owed to directives asking for one of \a paths: without these directives
/// they would be others.
QList<Change> pendingChanges(OrbSetup &store, const QString &name, const QSet<QString> &paths);

/// The paths of the values among these that sending destroys: what a directive puts into the line of a key
/// may make it no key line.
QStringList lostKeys(OrbSetup &store, const QString &name);

} // namespace statedirectives

} // namespace paravue
