#include "video/CodecStream.h"

#include "video/VideoLimits.h"

#include <limits>
#include <string_view>

extern "C" {
#include <libavcodec/avcodec.h>
}

using namespace std::string_view_literals;

namespace
{

/// Above every level of FFmpeg's log: damaged input is usual, and its messages would flood the host's output.
constexpr int Silent = 100;

/// No picture comes in more bytes; FFmpeg counts in int and pads.
constexpr qsizetype MaxInput = std::numeric_limits<int>::max() / 2;

/// What a picture of a codec begins with, and what stands behind its end if anything does.
struct PictureBorders {
    std::string_view begin;
    std::string_view next;
};

PictureBorders bordersOf(AVCodecID codec)
{
    switch (codec) {
    case AV_CODEC_ID_MJPEG:
        return {"\xff\xd8"sv, "\xff\xd8"sv};
    case AV_CODEC_ID_MPEG4:
        return {"\0\0\1\xb6"sv, "\0\0\1"sv};
    default:
        return {};
    }
}

/// Whether \a bytes are one picture, so that no parser has to look for its end. That one looks at each byte
/// for itself, which is a twentieth of the whole work.
bool isOnePicture(AVCodecID codec, std::string_view bytes)
{
    const auto [begin, next] = bordersOf(codec);
    const std::size_t first = begin.empty() ? bytes.npos : bytes.find(begin);
    return first != bytes.npos && bytes.find(next, first + begin.size()) == bytes.npos;
}

} // namespace

namespace paravue
{

std::shared_ptr<CodecStream> CodecStream::open(const QByteArray &name)
{
    const AVCodec *codec = avcodec_find_decoder_by_name(name.constData());
    if (!codec || codec->type != AVMEDIA_TYPE_VIDEO)
        return {};
    auto stream = std::make_shared<CodecStream>();
    stream->m_context.reset(avcodec_alloc_context3(codec));
    stream->m_packet.reset(av_packet_alloc());
    stream->m_frame.reset(av_frame_alloc());
    if (!stream->m_context || !stream->m_packet || !stream->m_frame)
        return {};
    AVCodecContext &context = *stream->m_context;
    // Several threads, or pictures held back to bring them into order, would show each picture later.
    context.thread_count = 1;
    context.flags |= AV_CODEC_FLAG_LOW_DELAY;
    context.max_pixels = MaxPicturePixels;
    context.log_level_offset = Silent;
    if (avcodec_open2(&context, codec, nullptr) != 0)
        return {};
    return stream;
}

void CodecStream::decode(const QByteArray &bytes, const PictureSink &sink)
{
    if (bytes.size() > MaxInput)
        return;
    // Codecs read a little beyond the end of their input.
    m_input.resize(0);
    m_input.append(bytes).append(AV_INPUT_BUFFER_PADDING_SIZE, '\0');
    const auto *data = reinterpret_cast<const uint8_t *>(m_input.constData());
    int left = static_cast<int>(bytes.size());

    if (isOnePicture(m_context->codec_id, {bytes.constData(), static_cast<std::size_t>(left)})) {
        decodePacket(data, left, sink);
        return;
    }
    // A parser finds where each picture ends, the last one only when told that nothing follows. After that it
    // is of no more use: fed again it would miss every second picture.
    const ParserHandle parser(av_parser_init(m_context->codec_id));
    if (!parser) {
        decodePacket(data, left, sink);
        return;
    }
    bool atEnd = false;
    while (!atEnd) {
        atEnd = left == 0;
        uint8_t *packet = nullptr;
        int packetSize = 0;
        const int used = av_parser_parse2(parser.get(), m_context.get(), &packet, &packetSize, data, left,
                                          AV_NOPTS_VALUE, AV_NOPTS_VALUE, 0);
        if (packetSize > 0 && !decodePacket(packet, packetSize, sink))
            return;
        if (used <= 0 && packetSize <= 0 && !atEnd)
            return;
        data += used;
        left -= used;
    }
}

bool CodecStream::decodePacket(const uint8_t *data, int size, const PictureSink &sink)
{
    m_packet->data = const_cast<uint8_t *>(data); // only read
    m_packet->size = size;
    // A refused packet is a damaged one. What it yielded nevertheless, and what the next ones yield, is
    // shown.
    avcodec_send_packet(m_context.get(), m_packet.get());
    bool wanted = true;
    while (wanted && avcodec_receive_frame(m_context.get(), m_frame.get()) == 0) {
        // Such a picture was coded behind one that is shown later: a delay is better than pictures that jump
        // back.
        if (m_frame->pict_type == AV_PICTURE_TYPE_B)
            m_context->flags &= ~AV_CODEC_FLAG_LOW_DELAY;
        wanted = sink(*m_frame);
    }
    av_frame_unref(m_frame.get());
    return wanted;
}

} // namespace paravue
