#include "SecretValues.h"

#include "changes/DescribedSecrets.h"
#include "snapshots/SecretRemoval.h"

namespace paravue
{

void SecretValues::add(const FileContents &files)
{
    for (const QString &path : describedSecrets(files.value(QStringLiteral("interface"))))
        m_keys.mark(path);
    FileContents emptied = files;
    for (const QString &path : removeSecrets(emptied))
        m_directed.insert(path);
}

bool SecretValues::contains(const QString &path) const
{
    return m_keys.contains(path) || m_directed.contains(path) ||
           m_directed.contains(path.section(u'/', 0, 0));
}

} // namespace paravue
