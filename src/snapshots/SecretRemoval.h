#pragma once

#include "snapshots/Snapshot.h"

#include <QSet>

namespace paravue
{

/// Empties every secret value in \a files: those of keys whose names tell it, in lines that are commented out
/// too, what the description among the files hides, and what the directives of a state file have put of such
/// values into it. A state file whose directives take too long or feed themselves is removed. Returns what
/// was left out, as SnapshotInfo::leftOut.
QStringList removeSecrets(FileContents &files);

/// What is secret in \a snapshot by the description and the directives that it holds, which may not be those
/// that the recorder has now: paths, and the names of files of which each value may be secret.
QSet<QString> secretsOf(const Snapshot &snapshot);

} // namespace paravue
