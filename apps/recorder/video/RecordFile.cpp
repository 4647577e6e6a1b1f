#include "recorder/video/RecordFile.h"

#include "recorder/files/RecorderText.h"

#include <QFileInfo>

namespace recorder
{

std::shared_ptr<RecordFile> RecordFile::create(const QString &path, QString &fault)
{
    std::shared_ptr<RecordFile> file(new RecordFile(path));
    // Unbuffered, so that programs that read the file meanwhile see everything.
    if (file->m_file.open(QIODevice::NewOnly | QIODevice::WriteOnly | QIODevice::Unbuffered))
        return file;
    fault = QFileInfo::exists(path) ? RecorderText::tr("it exists already, and is not overwritten")
                                    : file->m_file.errorString();
    return nullptr;
}

void RecordFile::write(const QByteArray &bytes)
{
    // On a full disk the first write may store a part and only the next one fails.
    for (qsizetype done = 0; done < bytes.size();) {
        const qint64 taken = m_file.write(bytes.constData() + done, bytes.size() - done);
        if (taken <= 0)
            return;
        done += taken;
    }
}

} // namespace recorder
