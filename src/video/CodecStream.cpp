#include "video/CodecStream.h"

#include "video/DecodingTime.h"

#include <QLoggingCategory>

#include <cstring>
#include <utility>

extern "C" {
#include <libavcodec/avcodec.h>
#include <libavutil/pixdesc.h>
}

namespace paravue
{
namespace
{

/// Above every level of FFmpeg's log: damaged input is usual, and its messages would flood the host's output.
constexpr int Silent = 100;

Q_LOGGING_CATEGORY(videoLog, "paravue.video")

/// The height of a row of blocks in MPEG-4.
constexpr double RowHeight = 16;

/// What FFmpeg does with damaged parts by default.
constexpr int UsualConcealment = FF_EC_GUESS_MVS | FF_EC_DEBLOCK;

VideoCodec codecOf(AVCodecID codec)
{
    switch (codec) {
    case AV_CODEC_ID_H264:
        return VideoCodec::H264;
    case AV_CODEC_ID_MPEG4:
        return VideoCodec::Mpeg4;
    case AV_CODEC_ID_MJPEG:
        return VideoCodec::MotionJpeg;
    default:
        return VideoCodec::Other;
    }
}

/// The pixels of \a frame. Usually four of them share a colour, and each counts 1; when fewer share one, each
/// counts more.
double weightedPixels(const AVFrame &frame)
{
    const double pixels = double(frame.width) * frame.height;
    const AVPixFmtDescriptor *format = av_pix_fmt_desc_get(static_cast<AVPixelFormat>(frame.format));
    if (!format)
        return pixels;
    constexpr double UsualValues = 1.5;
    const int sharing = 1 << format->log2_chroma_w << format->log2_chroma_h;
    return pixels * (1 + (format->nb_components - 1.0) / sharing) / UsualValues;
}

const AVCodec *findDecoder(const QByteArray &name)
{
    const AVCodec *codec = avcodec_find_decoder_by_name(name.constData());
    return codec && codec->type == AVMEDIA_TYPE_VIDEO ? codec : nullptr;
}

std::string_view viewOf(const QByteArray &bytes)
{
    return {bytes.constData(), static_cast<std::size_t>(bytes.size())};
}

} // namespace

bool CodecStream::isDecoder(const QByteArray &name)
{
    return findDecoder(name) != nullptr;
}

std::unique_ptr<CodecStream> CodecStream::open(const QByteArray &name, const DecodingLimits &limits)
{
    const AVCodec *codec = findDecoder(name);
    if (!codec)
        return {};
    auto stream = std::make_unique<CodecStream>();
    stream->m_context.reset(avcodec_alloc_context3(codec));
    stream->m_packet.reset(av_packet_alloc());
    stream->m_frame.reset(av_frame_alloc());
    if (!stream->m_context || !stream->m_packet || !stream->m_frame)
        return {};
    AVCodecContext &context = *stream->m_context;
    // Several threads, or pictures held back to bring them into order, would show each picture later.
    context.thread_count = 1;
    context.flags |= AV_CODEC_FLAG_LOW_DELAY;
    stream->m_limits = limits;
    context.max_pixels = limits.pixels;
    context.log_level_offset = Silent;
    stream->m_codec = codecOf(codec->id);
    context.opaque = stream.get();
    context.get_buffer2 = getBuffer;
    context.slice_flags = SLICE_FLAG_CODED_ORDER | SLICE_FLAG_ALLOW_FIELD; // for endRow()
    if (avcodec_open2(&context, codec, nullptr) != 0)
        return {};
    return stream;
}

bool CodecStream::isKey(const QByteArray &bytes) const
{
    return CodedPictures(m_codec, viewOf(bytes), m_limits.bytes).next().isKey;
}

QByteArray CodecStream::parametersIn(const QByteArray &bytes) const
{
    const std::string_view found = paravue::parametersIn(m_codec, viewOf(bytes));
    return {found.data(), static_cast<qsizetype>(found.size())};
}

void CodecStream::begin(const QByteArray &bytes)
{
    m_sent = false;
    m_parts = {};
    m_input = bytes;
    m_pictures = CodedPictures(m_codec, viewOf(m_input), m_limits.bytes);
}

CodecStream::Progress CodecStream::next()
{
    if (m_sent && avcodec_receive_frame(m_context.get(), m_frame.get()) == 0) {
        // B pictures come behind a picture that is shown later. A delay brings them into order.
        if (m_frame->pict_type == AV_PICTURE_TYPE_B)
            m_context->flags &= ~AV_CODEC_FLAG_LOW_DELAY;
        return m_isCut ? Progress::Nothing : Progress::Picture;
    }
    m_sent = false;
    av_frame_unref(m_frame.get());
    if (!m_parts.empty()) {
        if (!send({.bytes = takeH264Unit(m_parts), .headers = 1, .isKey = false}, true))
            warnOfLeftOutPicture();
    } else if (!m_pictures.atEnd()) {
        const CodedPicture coded = m_pictures.next();
        if (coded.bytes.size() > std::size_t(m_limits.bytes)) {
            warnOfLeftOutPicture();
        } else if (!send(coded, false)) {
            // Some of its units may be decoded within the time.
            if (m_codec == VideoCodec::H264) {
                m_parts = coded.bytes;
                m_partPixels = 0;
            } else {
                warnOfLeftOutPicture();
            }
        }
    } else {
        m_input.clear();
        return Progress::AtEnd;
    }
    return Progress::Nothing;
}

void CodecStream::takePicture(AVFrame &frame)
{
    av_frame_unref(&frame);
    av_frame_move_ref(&frame, m_frame.get());
}

/// Once for each stream, as a stream with one such picture usually has many.
void CodecStream::warnOfLeftOutPicture()
{
    if (!std::exchange(m_hasWarned, true))
        qCWarning(videoLog) << "Pictures of a live stream are left out: decoding them would take too long";
}

/// Decodes a picture, or a unit of one. False when that would take too long: by the estimate from its bytes,
/// or once the codec knows the size of the picture.
bool CodecStream::send(const CodedPicture &coded, bool isPart)
{
    m_coded = coded;
    m_hasBuffer = false;
    m_timeLeft = m_limits.pictureTime - timeWithoutPixels(m_codec, coded);
    if (m_timeLeft < timeOfPixels(m_codec, coded, expectedPixels(isPart)))
        return false;
    m_context->flags2 = isPart ? AV_CODEC_FLAG2_CHUNKS : 0;
    setConcealment();
    m_context->draw_horiz_band = coded.restarts > 0 ? endRow : nullptr;
    if (!fill(coded.bytes))
        return true;
    // The codec refuses damaged packets, but may have decoded pictures nevertheless.
    avcodec_send_packet(m_context.get(), m_packet.get());
    m_sent = true;
    return m_timeLeft >= 0;
}

/// Copies \a bytes into the packet. The codec reads them there, so that endRow() can overwrite them.
bool CodecStream::fill(std::string_view bytes)
{
    m_isCut = false;
    m_rowPixels = 0;
    av_packet_unref(m_packet.get());
    if (av_new_packet(m_packet.get(), static_cast<int>(bytes.size())) != 0)
        return false;
    std::memcpy(m_packet->data, bytes.data(), bytes.size());
    return true;
}

/// Pixels of a packet that needs no new memory, so that getBuffer() is not called for it: further slices of a
/// picture, and its second field.
double CodecStream::expectedPixels(bool isPart) const
{
    if (isPart)
        return m_partPixels;
    return m_coded.passes > 1 && m_codec == VideoCodec::H264 ? m_pixels : 0;
}

/// Called by the codec for the memory of a picture, before it decodes any of it.
int CodecStream::getBuffer(AVCodecContext *context, AVFrame *frame, int flags)
{
    auto &stream = *static_cast<CodecStream *>(context->opaque);
    const double pixels = double(frame->width) * frame->height;
    stream.m_pixels = weightedPixels(*frame);
    stream.m_partPixels = stream.m_pixels;
    const bool isFurther = std::exchange(stream.m_hasBuffer, true);
    stream.m_timeLeft -= isFurther ? timeOfFurtherBuffer(stream.m_pixels)
                                   : timeOfPixels(stream.m_codec, stream.m_coded, stream.m_pixels);
    // endRow() is not called for a part that ends in the row in which it begins.
    stream.m_timeLeft -=
        timeOfFurtherPass(stream.m_codec, double(stream.m_coded.restarts) * frame->width * RowHeight);
    if (stream.m_timeLeft < 0 || pixels > stream.m_limits.pixels)
        return AVERROR(EINVAL);
    stream.setConcealment();
    return avcodec_default_get_buffer2(context, frame, flags);
}

/// Behind each packet the codec conceals what is missing of the picture. Behind a unit that would be all the
/// units to come.
void CodecStream::setConcealment()
{
    const bool isPart = m_context->flags2 & AV_CODEC_FLAG2_CHUNKS;
    const bool isWanted = !isPart && m_pixels <= double(m_limits.concealedPixels);
    m_context->error_concealment = isWanted ? UsualConcealment : 0;
}

/// Called by the codec behind each row. Cuts an MPEG-4 picture whose packets decode the same rows again and
/// again: overwrites its data with ones, at which the codec ends the picture. How often packets do so is not
/// known before, as one may go on beyond the place where the next one begins, and blocks may take no bits.
void CodecStream::endRow(AVCodecContext *context, const AVFrame *frame, int *, int, int, int height)
{
    auto &stream = *static_cast<CodecStream *>(context->opaque);
    const double pixels = double(frame->width) * height;
    stream.m_rowPixels += pixels;
    if (stream.m_rowPixels <= double(frame->width) * frame->height || stream.m_isCut)
        return;
    stream.m_timeLeft -= timeOfFurtherPass(stream.m_codec, pixels);
    stream.m_isCut = stream.m_timeLeft < 0;
    if (stream.m_isCut)
        std::memset(stream.m_packet->data, 0xff, stream.m_packet->size);
}

} // namespace paravue
