#include "recorder/video/StillPicture.h"

extern "C" {
#include <libavutil/opt.h>
}

#include <algorithm>
#include <cstring>
#include <utility>

namespace recorder
{

namespace
{

/// The name of a format with all values of brightness is an old one; the scaler is told the range apart.
AVPixelFormat plainFormat(AVPixelFormat format)
{
    switch (format) {
    case AV_PIX_FMT_YUVJ420P:
        return AV_PIX_FMT_YUV420P;
    case AV_PIX_FMT_YUVJ422P:
        return AV_PIX_FMT_YUV422P;
    case AV_PIX_FMT_YUVJ444P:
        return AV_PIX_FMT_YUV444P;
    default:
        return format;
    }
}

bool isFullRange(const AVFrame &picture)
{
    const auto format = AVPixelFormat(picture.format);
    return picture.color_range == AVCOL_RANGE_JPEG || plainFormat(format) != format;
}

} // namespace

QSize encodableSize(QSize size)
{
    const QSize even(size.width() & ~1, size.height() & ~1);
    return even.expandedTo(VideoSettings::MinSize).boundedTo(VideoSettings::MaxSize);
}

bool scaleInto(AVFrame &target, const AVFrame &source, Scaler &scaler)
{
    // Set before the scaler begins: later ones do not reach pictures that keep their size.
    const std::pair<const char *, int64_t> options[] = {
        {"srcw", source.width},
        {"srch", source.height},
        {"src_format", plainFormat(AVPixelFormat(source.format))},
        {"src_range", isFullRange(source)},
        {"dstw", target.width},
        {"dsth", target.height},
        {"dst_format", plainFormat(AVPixelFormat(target.format))},
        {"dst_range", isFullRange(target)},
    };
    const auto fits = [&scaler](const auto &option) {
        int64_t value = 0;
        return av_opt_get_int(scaler.get(), option.first, 0, &value) == 0 && value == option.second;
    };
    if (!scaler || !std::all_of(std::begin(options), std::end(options), fits)) {
        scaler.reset(sws_alloc_context());
        if (!scaler)
            return false;
        av_opt_set_int(scaler.get(), "sws_flags", SWS_BILINEAR, 0);
        for (const auto &[name, value] : options)
            av_opt_set_int(scaler.get(), name, value, 0);
        if (sws_init_context(scaler.get(), nullptr, nullptr) < 0) {
            scaler.reset();
            return false;
        }
    }
    sws_scale(scaler.get(), source.data, source.linesize, 0, source.height, target.data, target.linesize);
    return true;
}

Frame decodedPicture(const AVCodecParameters &parameters, const QByteArray &bytes)
{
    const AVCodec *codec = avcodec_find_decoder(parameters.codec_id);
    const CodecContext decoder(codec ? avcodec_alloc_context3(codec) : nullptr);
    const Packet packet(av_packet_alloc());
    Frame picture(av_frame_alloc());
    if (!decoder || !packet || !picture || av_new_packet(packet.get(), int(bytes.size())) != 0)
        return nullptr;
    std::memcpy(packet->data, bytes.constData(), size_t(bytes.size()));
    decoder->thread_count = 1;
    const bool isDecoded = avcodec_parameters_to_context(decoder.get(), &parameters) >= 0 &&
                           avcodec_open2(decoder.get(), codec, nullptr) >= 0 &&
                           avcodec_send_packet(decoder.get(), packet.get()) == 0 &&
                           avcodec_send_packet(decoder.get(), nullptr) == 0 &&
                           avcodec_receive_frame(decoder.get(), picture.get()) == 0;
    return isDecoded ? std::move(picture) : nullptr;
}

QByteArray jpegOf(const AVFrame &picture)
{
    VideoSettings settings;
    settings.codec = VideoCodec::MotionJpeg;
    settings.size = encodableSize({picture.width, picture.height});
    QString fault;
    Scaler scaler;
    const std::unique_ptr<PictureEncoder> encoder = PictureEncoder::open(settings, fault);
    AVFrame *const target = encoder ? encoder->frame() : nullptr;
    return target && scaleInto(*target, picture, scaler) ? encoder->encodeFrame(true).bytes : QByteArray();
}

} // namespace recorder
