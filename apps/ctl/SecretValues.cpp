#include "SecretValues.h"

#include "changes/DescribedSecrets.h"
#include "snapshots/SecretRemoval.h"

namespace paravue
{

namespace
{

/// Many recorders of one model send the same description, and reading it takes longer than fetching it.
const QStringList &secretsOfDescription(const QByteArray &description)
{
    static QByteArray last;
    static QStringList secrets;
    if (description != last) {
        secrets = describedSecrets(description);
        last = description;
    }
    return secrets;
}

} // namespace

void SecretValues::add(const FileContents &files)
{
    add(files, files.keys());
}

void SecretValues::add(const FileContents &files, const QStringList &names)
{
    for (const QString &path : secretsOfDescription(files.value(QStringLiteral("interface"))))
        m_keys.mark(path);
    for (const QString &path : secretsOfFiles(names, files, m_keys))
        (path.contains(u'/') ? m_directed : m_files).insert(path);
}

bool SecretValues::contains(const QString &path) const
{
    return m_keys.contains(path) || m_directed.contains(path) ||
           (!m_files.isEmpty() && m_files.contains(path.section(u'/', 0, 0)));
}

} // namespace paravue
