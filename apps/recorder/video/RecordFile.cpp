#include "recorder/video/RecordFile.h"

#include <QFileInfo>

namespace recorder
{

std::shared_ptr<RecordFile> RecordFile::create(const QString &path, QString &fault)
{
    std::shared_ptr<RecordFile> file(new RecordFile(path));
    // Not buffered: whoever looks into the file meanwhile finds all of it.
    if (file->m_file.open(QIODevice::NewOnly | QIODevice::WriteOnly | QIODevice::Unbuffered))
        return file;
    fault = QFileInfo::exists(path) ? QStringLiteral("it exists already, and is not overwritten")
                                    : file->m_file.errorString();
    return nullptr;
}

void RecordFile::write(const QByteArray &bytes)
{
    // A full disk takes a part; only writing the rest fails.
    for (qsizetype done = 0; done < bytes.size();) {
        const qint64 taken = m_file.write(bytes.constData() + done, bytes.size() - done);
        if (taken <= 0)
            return;
        done += taken;
    }
}

} // namespace recorder
