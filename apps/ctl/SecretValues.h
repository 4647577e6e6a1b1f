#pragma once

#include "changes/SecretKeys.h"
#include "snapshots/Snapshot.h"

#include <QString>

namespace paravue
{

/// Which values of a recorder must not be seen.
class SecretValues
{
public:
    /// Reads the interface description and the directives among \a files.
    explicit SecretValues(const FileContents &files);

    bool contains(const QString &path) const;

private:
    SecretKeys m_keys;
    SnapshotInfo m_info; ///< with what directives have put into state files
};

} // namespace paravue
