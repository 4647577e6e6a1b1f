#include "MediaFile.h"

#include "InfoText.h"
#include "Recording.h"

#include <QFileInfo>

#include <cstring>
#include <new>

extern "C" {
#include <libavcodec/avcodec.h>
}

namespace paravue
{

namespace
{

constexpr int BufferSize = 64 * 1024;
constexpr AVRational Milliseconds = {1, 1000};

const char *formatFor(const QString &name)
{
    const QString ending = QFileInfo(name).suffix().toLower();
    if (ending == QStringLiteral("mkv"))
        return "matroska";
    return ending == QStringLiteral("mp4") ? "mp4" : nullptr;
}

QString reasonFor(int error)
{
    char text[AV_ERROR_MAX_STRING_SIZE] = {};
    av_strerror(error, text, sizeof text);
    return QString::fromUtf8(text);
}

} // namespace

bool MediaFile::isKnownName(const QString &name)
{
    return formatFor(name) != nullptr;
}

MediaFile::MediaFile(const QString &name, const ExportFile &content)
    : m_name(name), m_file(name), m_packet(av_packet_alloc())
{
    if (!m_file.open(QIODevice::WriteOnly))
        throw MediaError(InfoText::tr("cannot write %1: %2").arg(name, m_file.errorString()));
    AVFormatContext *format = nullptr;
    require(avformat_alloc_output_context2(&format, nullptr, formatFor(name), nullptr));
    m_format.reset(format);
    auto *buffer = static_cast<uint8_t *>(av_malloc(BufferSize));
    m_io.reset(avio_alloc_context(buffer, BufferSize, 1, &m_file, nullptr, writeBytes, seek));
    if (!m_packet || !buffer || !m_io)
        throw std::bad_alloc();
    m_format->pb = m_io.get();
    for (const auto &[streamId, facts] : content.tracks)
        addTrack(streamId, facts, content);
    require(avformat_write_header(m_format.get(), nullptr));
}

void MediaFile::addTrack(quint8 streamId, const PictureFacts &facts, const ExportFile &content)
{
    AVStream *stream = avformat_new_stream(m_format.get(), nullptr);
    if (!stream)
        throw std::bad_alloc();
    stream->time_base = Milliseconds;
    describe(*stream->codecpar, facts);
    const PictureOrder order = content.orders.at(streamId).order();
    stream->codecpar->video_delay = order.delay;
    m_tracks.emplace(streamId, Track{stream->index, StreamClock(content.begin), PictureTimes(order)});
}

/// Writes in the order of the recording. Sorting the streams by time would keep pictures in memory, and all
/// of them when times are wrong.
void MediaFile::write(const RecordedFrame &frame)
{
    const QByteArray payload = frame.record.payload;
    require(av_new_packet(m_packet.get(), static_cast<int>(payload.size())));
    std::memcpy(m_packet->data, payload.constData(), static_cast<size_t>(payload.size()));

    Track &track = m_tracks.at(frame.record.streamId);
    const bool isFirst = track.times.count() == 0;
    const PictureTimes::Times times = track.times.advance(track.clock.advance(frame.time));
    if (!isFirst)
        track.step = times.decoded - track.lastDecoded;
    track.lastDecoded = times.decoded;

    m_packet->stream_index = track.index;
    m_packet->pts = times.shown;
    m_packet->dts = times.decoded;
    // Players use the duration of the last picture only.
    m_packet->duration = track.step;
    m_packet->flags = frame.picture.isKey ? AV_PKT_FLAG_KEY : 0;
    av_packet_rescale_ts(m_packet.get(), Milliseconds, m_format->streams[track.index]->time_base);
    const int result = av_write_frame(m_format.get(), m_packet.get());
    av_packet_unref(m_packet.get());
    require(result);
}

void MediaFile::finish()
{
    require(av_write_trailer(m_format.get()));
    avio_flush(m_io.get());
    require(m_io->error);
}

void MediaFile::commit()
{
    if (!m_file.commit())
        throw MediaError(InfoText::tr("cannot write %1: %2").arg(m_name, m_file.errorString()));
}

qint64 MediaFile::movedTimes() const
{
    qint64 moved = 0;
    for (const auto &[streamId, track] : m_tracks)
        moved += track.times.moved();
    return moved;
}

int MediaFile::timesSetBack() const
{
    int most = 0;
    for (const auto &[streamId, track] : m_tracks)
        most = qMax(most, track.clock.timesSetBack());
    return most;
}

void MediaFile::require(int result) const
{
    if (result >= 0)
        return;
    const bool isFileError = m_file.error() != QFileDevice::NoError;
    throw MediaError(InfoText::tr("cannot write %1: %2")
                         .arg(m_name, isFileError ? m_file.errorString() : reasonFor(result)));
}

int MediaFile::writeBytes(void *file, WrittenByte *bytes, int size)
{
    const qint64 written = static_cast<QSaveFile *>(file)->write(reinterpret_cast<const char *>(bytes), size);
    return written == size ? size : AVERROR(EIO);
}

int64_t MediaFile::seek(void *file, int64_t offset, int whence)
{
    auto *device = static_cast<QSaveFile *>(file);
    if (whence == AVSEEK_SIZE)
        return device->size();
    if (whence == SEEK_CUR)
        offset += device->pos();
    else if (whence == SEEK_END)
        offset += device->size();
    return device->seek(offset) ? offset : AVERROR(EIO);
}

} // namespace paravue
