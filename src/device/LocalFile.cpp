#include "device/LocalFile.h"

#include <QFile>
#include <QTemporaryFile>

namespace paravue
{

std::unique_ptr<LocalFile> LocalFile::create(const QByteArray &content)
{
    QTemporaryFile file;
    if (!file.open())
        return {};
    // From here on the object below removes it.
    file.setAutoRemove(false);
    std::unique_ptr<LocalFile> result(new LocalFile(file.fileName()));
    if (file.write(content) != content.size() || !file.flush())
        return {};
    return result;
}

LocalFile::~LocalFile()
{
    QFile::remove(m_path);
}

} // namespace paravue
