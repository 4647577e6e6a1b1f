#pragma once

#include "changes/SecretKeys.h"
#include "snapshots/Snapshot.h"

#include <QSet>
#include <QString>

namespace paravue
{

/// Which values of recorders must not be seen.
class SecretValues
{
public:
    SecretValues() = default;
    explicit SecretValues(const FileContents &files) { add(files); }
    /// Reads the interface description and the directives among \a files.
    void add(const FileContents &files);

    bool contains(const QString &path) const;

private:
    SecretKeys m_keys;
    QSet<QString> m_directed; ///< what directives have put into state files; paths, and names of whole files
};

} // namespace paravue
