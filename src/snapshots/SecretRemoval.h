#pragma once

#include "changes/SecretKeys.h"
#include "snapshots/Snapshot.h"

namespace paravue
{

/// Empties every secret value in \a files, which is the value of a key that \a secrets knows, in lines that
/// are commented out too, and what the directives of a state file have put of such values into it. A state
/// file whose directives take too long is removed. Returns what was left out, as SnapshotInfo::leftOut.
QStringList removeSecrets(FileContents &files, const SecretKeys &secrets);

} // namespace paravue
