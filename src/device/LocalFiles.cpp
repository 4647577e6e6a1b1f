#include "device/LocalFiles.h"

#include <QFile>
#include <QTemporaryFile>

namespace paravue
{

LocalFiles::~LocalFiles()
{
    for (const QString &path : std::as_const(m_paths))
        QFile::remove(path);
}

QString LocalFiles::add(const QByteArray &content)
{
    QTemporaryFile file;
    if (!file.open() || file.write(content) != content.size() || !file.flush())
        return {};
    file.setAutoRemove(false);
    m_paths << file.fileName();
    return m_paths.constLast();
}

} // namespace paravue
