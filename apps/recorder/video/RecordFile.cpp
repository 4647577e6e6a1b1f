#include "RecordFile.h"

namespace recorder
{

std::shared_ptr<RecordFile> RecordFile::create(const QString &path, QString &fault)
{
    std::shared_ptr<RecordFile> file(new RecordFile(path));
    // Not buffered: whoever looks into the file meanwhile finds all of it.
    if (file->m_file.open(QIODevice::WriteOnly | QIODevice::Unbuffered))
        return file;
    fault = file->m_file.errorString();
    return nullptr;
}

void RecordFile::write(const QByteArray &bytes)
{
    m_file.write(bytes);
}

} // namespace recorder
