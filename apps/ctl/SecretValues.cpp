#include "SecretValues.h"

#include "changes/DescribedSecrets.h"
#include "snapshots/SecretRemoval.h"

namespace paravue
{

SecretValues::SecretValues(const FileContents &files)
{
    for (const QString &path : describedSecrets(files.value(QStringLiteral("interface"))))
        m_keys.mark(path);
    FileContents emptied = files;
    m_info.leftOut = removeSecrets(emptied);
}

bool SecretValues::contains(const QString &path) const
{
    return m_keys.contains(path) || m_info.isLeftOut(path);
}

} // namespace paravue
