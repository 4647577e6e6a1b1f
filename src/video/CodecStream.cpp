#include "video/CodecStream.h"

#include "video/VideoLimits.h"

#include <algorithm>
#include <limits>
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

/// What decoding takes at most, in nanoseconds; measured with noise, with empty pictures and with damage.
struct Prices {
    double byte;
    double pixel;
    double keyPixel;                                                  ///< in a picture that needs no other
    double furtherPass;                                               ///< over a pixel
    double furtherPassByte = std::numeric_limits<double>::infinity(); ///< passes need this many bytes, too
};
constexpr double FurtherBufferPrice = 1; // a pixel
constexpr double TableBytePrice = 100;
constexpr double HeaderPrice = 5'000;
/// What FFmpeg does with damage unless told otherwise.
constexpr int UsualConcealment = FF_EC_GUESS_MVS | FF_EC_DEBLOCK;

Prices pricesOf(AVCodecID codec)
{
    switch (codec) {
    case AV_CODEC_ID_MJPEG:
        return {.byte = 14, .pixel = 1, .keyPixel = 1, .furtherPass = 1};
    case AV_CODEC_ID_MPEG4:
        // The shortest code for a block of 256 pixels is one bit.
        return {.byte = 10, .pixel = 3, .keyPixel = 3, .furtherPass = 2, .furtherPassByte = 1600};
    default:
        return {.byte = 90, .pixel = 5, .keyPixel = 2.5, .furtherPass = 3};
    }
}

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

double priceWithoutPixels(AVCodecID codec, const CodedPicture &picture)
{
    return static_cast<double>(picture.bytes.size()) * pricesOf(codec).byte +
           static_cast<double>(picture.tableBytes) * TableBytePrice +
           static_cast<double>(picture.headers) * HeaderPrice;
}

double priceOfPixels(AVCodecID codec, const CodedPicture &picture, double pixels)
{
    const Prices prices = pricesOf(codec);
    const double further = pixels * prices.furtherPass * static_cast<double>(picture.passes - 1);
    const double possible = static_cast<double>(picture.bytes.size()) * prices.furtherPassByte;
    return pixels * (picture.isKey ? prices.keyPixel : prices.pixel) + std::min(further, possible);
}

/// The values that make up a pixel of a JPEG picture, 1 to 4; other pictures have a price for a pixel.
double pricedSamples(const AVCodecContext &context, const AVFrame &frame)
{
    const AVPixFmtDescriptor *format = av_pix_fmt_desc_get(static_cast<AVPixelFormat>(frame.format));
    if (context.codec_id != AV_CODEC_ID_MJPEG || !format)
        return 1;
    const int shared = 1 << format->log2_chroma_w << format->log2_chroma_h;
    return 1 + (format->nb_components - 1.0) / shared;
}

const AVCodec *findDecoder(const QByteArray &name)
{
    const AVCodec *codec = avcodec_find_decoder_by_name(name.constData());
    return codec && codec->type == AVMEDIA_TYPE_VIDEO ? codec : nullptr;
}

} // namespace

bool CodecStream::isDecoder(const QByteArray &name)
{
    return findDecoder(name) != nullptr;
}

std::unique_ptr<CodecStream> CodecStream::open(const QByteArray &name)
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
    context.max_pixels = MaxPicturePixels;
    context.log_level_offset = Silent;
    context.opaque = stream.get();
    context.get_buffer2 = getBuffer;
    if (avcodec_open2(&context, codec, nullptr) != 0)
        return {};
    return stream;
}

void CodecStream::begin(const QByteArray &bytes)
{
    m_sent = false;
    m_parts = {};
    m_input = bytes.size() > MaxCodedBytes ? QByteArray() : bytes;
    m_pictures = CodedPictures(codecOf(m_context->codec_id),
                               {m_input.constData(), static_cast<std::size_t>(m_input.size())});
}

CodecStream::Progress CodecStream::next()
{
    if (m_sent && avcodec_receive_frame(m_context.get(), m_frame.get()) == 0) {
        // Such a picture was coded behind one that is shown later: a delay is better than pictures that jump
        // back.
        if (m_frame->pict_type == AV_PICTURE_TYPE_B)
            m_context->flags &= ~AV_CODEC_FLAG_LOW_DELAY;
        return Progress::Picture;
    }
    m_sent = false;
    av_frame_unref(m_frame.get());
    if (!m_parts.empty()) {
        send({.bytes = takeH264Unit(m_parts), .headers = 1}, true);
    } else if (!m_pictures.atEnd()) {
        const CodedPicture coded = m_pictures.next();
        // What would take too long as a whole may be possible in parts.
        if (!send(coded, false) && m_context->codec_id == AV_CODEC_ID_H264) {
            m_parts = coded.bytes;
            m_partPixels = 0;
        }
    } else {
        m_input.clear();
        return Progress::AtEnd;
    }
    return Progress::Nothing;
}

/// False when that would take too long, by what is known before or by what the codec finds out.
bool CodecStream::send(const CodedPicture &coded, bool isPart)
{
    m_coded = coded;
    m_isPaid = false;
    m_timeLeft = MaxPictureTime - priceWithoutPixels(m_context->codec_id, coded);
    if (m_timeLeft < priceOfPixels(m_context->codec_id, coded, expectedPixels(isPart)))
        return false;
    m_context->flags2 = isPart ? AV_CODEC_FLAG2_CHUNKS : 0;
    m_packet->data = reinterpret_cast<uint8_t *>(const_cast<char *>(coded.bytes.data())); // only read
    m_packet->size = static_cast<int>(coded.bytes.size());
    // A refused packet is a damaged one. What it yielded nevertheless, and what the next ones yield, is
    // shown.
    avcodec_send_packet(m_context.get(), m_packet.get());
    m_sent = true;
    return m_timeLeft >= 0;
}

/// Pixels for which the codec may need no new memory, and which getBuffer() therefore does not see: the
/// further slices of a picture and its second field.
double CodecStream::expectedPixels(bool isPart) const
{
    if (isPart)
        return m_partPixels;
    return m_coded.passes > 1 && m_context->codec_id == AV_CODEC_ID_H264 ? m_pixels : 0;
}

/// The codec asks for the memory of a picture before it decodes any of it.
int CodecStream::getBuffer(AVCodecContext *context, AVFrame *frame, int flags)
{
    auto &stream = *static_cast<CodecStream *>(context->opaque);
    const double pixels = double(frame->width) * frame->height;
    stream.m_pixels = pixels;
    stream.m_partPixels = pixels;
    const bool isFurther = std::exchange(stream.m_isPaid, true);
    stream.m_timeLeft -= isFurther ? pixels * FurtherBufferPrice
                                   : priceOfPixels(context->codec_id, stream.m_coded,
                                                   pixels * pricedSamples(*context, *frame));
    if (stream.m_timeLeft < 0 || pixels > MaxPicturePixels)
        return AVERROR(EINVAL);
    context->error_concealment = pixels > MaxConcealedPixels ? 0 : UsualConcealment;
    return avcodec_default_get_buffer2(context, frame, flags);
}

} // namespace paravue
