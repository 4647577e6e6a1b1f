#include "MuxedVideo.h"

#include "hvx3-info/PictureInspector.h"

#include <algorithm>
#include <cstring>
#include <memory>
#include <stdexcept>

extern "C" {
#include <libavcodec/avcodec.h>
}

namespace paravue::bench
{

namespace
{

constexpr AVRational PictureTime = {1, 25};

void ensure(bool condition, const char *what)
{
    if (!condition)
        throw std::runtime_error(what);
}

} // namespace

QByteArray muxed(const char *format, const QList<QByteArrayView> &pictures)
{
    AVFormatContext *context = nullptr;
    ensure(avformat_alloc_output_context2(&context, nullptr, format, nullptr) >= 0, "no such container");
    const FormatHandle output(context);
    AVStream *stream = avformat_new_stream(context, nullptr);
    stream->time_base = PictureTime;
    const PictureFacts facts = PictureInspector::create("H264")->inspect(pictures.first().toByteArray());
    ensure(!facts.parameterSets.isEmpty(), "a container needs parameter sets");
    describe(*stream->codecpar, facts);
    ensure(avio_open_dyn_buf(&context->pb) == 0, "no memory");
    ensure(avformat_write_header(context, nullptr) >= 0, "the container refuses the stream");
    const PacketHandle packet(av_packet_alloc());
    for (qsizetype i = 0; i < pictures.size(); ++i) {
        ensure(av_new_packet(packet.get(), int(pictures[i].size())) == 0, "no memory");
        std::memcpy(packet->data, pictures[i].data(), size_t(pictures[i].size()));
        packet->pts = packet->dts = i;
        packet->flags = i % 25 == 0 ? AV_PKT_FLAG_KEY : 0;
        av_packet_rescale_ts(packet.get(), PictureTime, stream->time_base);
        ensure(av_write_frame(context, packet.get()) >= 0, "the container refuses a picture");
        av_packet_unref(packet.get());
    }
    ensure(av_write_trailer(context) == 0, "the container cannot be ended");
    uint8_t *bytes = nullptr;
    const int size = avio_close_dyn_buf(context->pb, &bytes);
    const std::unique_ptr<uint8_t, decltype(&av_free)> owner(bytes, av_free);
    return {reinterpret_cast<const char *>(bytes), size};
}

Demuxer::Demuxer(const char *format, const QByteArray &bytes, int flags)
    : m_bytes(bytes), m_packet(av_packet_alloc())
{
    auto *buffer = static_cast<uint8_t *>(av_malloc(PieceSize));
    m_io.reset(avio_alloc_context(buffer, PieceSize, 0, this, read, nullptr, seek));
    AVFormatContext *context = avformat_alloc_context();
    ensure(m_packet && m_io && context, "no memory");
    context->pb = m_io.get();
    context->flags |= flags;
    // On a failure the context is freed.
    ensure(avformat_open_input(&context, "", av_find_input_format(format), nullptr) == 0, "does not open");
    m_input.reset(context);
}

PictureCount Demuxer::readAll()
{
    PictureCount count;
    while (av_read_frame(m_input.get(), m_packet.get()) == 0) {
        ++count.pictures;
        count.bytes += m_packet->size;
        av_packet_unref(m_packet.get());
    }
    return count;
}

int Demuxer::read(void *demuxer, uint8_t *to, int size)
{
    auto *self = static_cast<Demuxer *>(demuxer);
    const qsizetype piece = std::min({qsizetype(size), PieceSize, self->m_bytes.size() - self->m_at});
    if (piece == 0)
        return AVERROR_EOF;
    std::memcpy(to, self->m_bytes.constData() + self->m_at, size_t(piece));
    self->m_at += piece;
    return int(piece);
}

int64_t Demuxer::seek(void *demuxer, int64_t offset, int whence)
{
    auto *self = static_cast<Demuxer *>(demuxer);
    if (whence == AVSEEK_SIZE)
        return self->m_bytes.size();
    if (whence == SEEK_CUR)
        offset += self->m_at;
    else if (whence == SEEK_END)
        offset += self->m_bytes.size();
    self->m_at = std::clamp<qsizetype>(offset, 0, self->m_bytes.size());
    return self->m_at;
}

} // namespace paravue::bench
