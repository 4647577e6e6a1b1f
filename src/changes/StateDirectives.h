#pragma once

#include <QList>
#include <QSet>
#include <QString>

#include <functional>

class OrbSetup;

namespace paravue
{

struct Change;

/// What the directives of state files (store/StateTemplate.h) do with the values of a session. A file without
/// directives costs one look through its text; directives that take too long count as none.
namespace statedirectives
{

/// The paths in the file \a name that its directives fill with values of secret addresses.
QSet<QString> secretPaths(OrbSetup &store, const QString &name,
                          const std::function<bool(const QString &path)> &isSecret);

/// What sending the file \a name changes in it beside its edits. Secrets are not marked.
QList<Change> pendingChanges(OrbSetup &store, const QString &name);

} // namespace statedirectives

} // namespace paravue
