#include "VideoExport.h"

#include "InfoText.h"
#include "MediaFile.h"
#include "Recording.h"

#include <QFileInfo>

namespace paravue
{

namespace
{

/// "out.mkv", "out-2.mkv", "out-3.mkv"
QString numbered(const QString &name, size_t index)
{
    const qsizetype dot = name.lastIndexOf(u'.');
    return index == 0 ? name : name.first(dot) + u'-' + QString::number(index + 1) + name.sliced(dot);
}

void requireFree(const QString &name, const QString &recording, bool overwrite)
{
    if (QFileInfo(name) == QFileInfo(recording))
        throw MediaError(InfoText::tr("%1 is the recording itself").arg(name));
    if (!overwrite && QFileInfo::exists(name))
        throw MediaError(InfoText::tr("%1 exists; --force overwrites it").arg(name));
}

MediaError changed()
{
    return MediaError(InfoText::tr("the recording was changed while it was read"));
}

/// The files of an export. Each is open while it is incomplete.
class FileSet
{
public:
    FileSet(const QString &name, const std::vector<ExportFile> &contents)
        : m_name(name), m_contents(contents), m_files(contents.size()), m_written(contents.size())
    {
    }

    void write(size_t index, const RecordedFrame &frame)
    {
        // A recording that is still being written may have grown since the route has seen it.
        if (index >= m_contents.size() || m_written[index] == m_contents[index].pictures)
            return;
        if (m_contents[index].tracks.count(frame.record.streamId) == 0)
            throw changed();
        if (!m_files[index])
            m_files[index] = std::make_unique<MediaFile>(numbered(m_name, index), m_contents[index]);
        m_files[index]->write(frame);
        if (++m_written[index] == m_contents[index].pictures)
            m_files[index]->finish();
    }

    QList<ExportedFile> commit()
    {
        QList<ExportedFile> exported;
        for (size_t index = 0; index < m_files.size(); ++index) {
            if (m_written[index] != m_contents[index].pictures)
                throw changed();
        }
        for (size_t index = 0; index < m_files.size(); ++index) {
            const MediaFile &file = *m_files[index];
            m_files[index]->commit();
            exported.append({file.name(), m_contents[index], file.movedTimes(), file.timesSetBack()});
        }
        return exported;
    }

private:
    QString m_name;
    const std::vector<ExportFile> &m_contents;
    std::vector<std::unique_ptr<MediaFile>> m_files;
    std::vector<qint64> m_written;
};

} // namespace

QList<ExportedFile> exportVideo(const QString &recording, const QByteArray &header, const ExportRoute &route,
                                const QString &name, bool overwrite)
{
    const std::vector<ExportFile> &contents = route.files();
    if (contents.empty())
        throw MediaError(InfoText::tr("there is no video stream with a key picture in %1").arg(recording),
                         ExitCode::BadData);
    for (size_t index = 0; index < contents.size(); ++index)
        requireFree(numbered(name, index), recording, overwrite);

    FileSet files(name, contents);
    ExportRoute again;
    FrameReader reader(header);
    reader.onFrame = [&](const RecordedFrame &frame) {
        if (const std::optional<size_t> place = again.place(frame))
            files.write(*place, frame);
    };
    reader.read(recording);
    return files.commit();
}

} // namespace paravue
