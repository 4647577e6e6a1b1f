#pragma once

#include "changes/SecretKeys.h"
#include "snapshots/Snapshot.h"

#include <QSet>
#include <QString>
#include <QStringList>

namespace paravue
{

/// Which values of recorders must not be seen.
class SecretValues
{
public:
    SecretValues() = default;
    explicit SecretValues(const FileContents &files) { add(files); }
    /// As far as values of the files \a names are asked about.
    SecretValues(const FileContents &files, const QStringList &names) { add(files, names); }
    /// Reads the interface description and the directives among \a files.
    void add(const FileContents &files);

    bool contains(const QString &path) const;

private:
    void add(const FileContents &files, const QStringList &names);

    SecretKeys m_keys;
    QSet<QString> m_directed; ///< what directives have put into state files
    QSet<QString> m_files;    ///< files of which each value may be secret
};

} // namespace paravue
