#pragma once

#include "changes/SecretKeys.h"
#include "snapshots/Snapshot.h"

#include <QSet>

namespace paravue
{

/// Empties every secret value in \a files: those of keys whose names tell it, in lines that are commented out
/// too, what the description among the files hides, and what the directives of a state file have put of such
/// values into it. A file is removed when its names are too long for a store, or when its directives take
/// too long or feed themselves. Returns what was left out, as SnapshotInfo::leftOut.
QStringList removeSecrets(FileContents &files);
/// What that would leave out of those of \a files that are called \a names, where \a secrets has what the
/// description hides.
QStringList secretsOfFiles(const QStringList &names, const FileContents &files, const SecretKeys &secrets);

/// What is secret in \a snapshot by the description and the directives that it holds, which may not be those
/// that the recorder has now: paths, and the names of files of which each value may be secret.
QSet<QString> secretsOf(const Snapshot &snapshot);

} // namespace paravue
