#include "EncodedClip.h"

#include "video/FfmpegHandles.h"

#include <QPainter>
#include <QRandomGenerator>

#include <array>
#include <cstdlib>

extern "C" {
#include <libavcodec/avcodec.h>
#include <libavutil/log.h>
#include <libavutil/opt.h>
#include <libswscale/swscale.h>
}

namespace
{

using namespace paravue;
using namespace paravue::test;

/// None is at the end of its range, where an error of brightness would be cut off.
constexpr std::array<QColor, 4> Corners = {QColor(190, 60, 60), QColor(60, 190, 60), QColor(60, 60, 190),
                                           QColor(190, 190, 60)};
/// The number stands in the middle as stripes, one for each bit, white or black.
constexpr int Bits = 6;

QRect cornerOf(QSize size, int corner)
{
    const QSize half((size.width() + 1) / 2, (size.height() + 1) / 2);
    return QRect(QPoint(corner % 2 * half.width(), corner / 2 * half.height()), half);
}

QRect stripeOf(QSize size, int bit)
{
    const int width = size.width() / 2 / Bits;
    return {size.width() / 4 + bit * width, size.height() / 4, width, size.height() / 2};
}

QImage testPicture(const ClipFormat &format, int number)
{
    QImage image(format.size, QImage::Format_RGB32);
    QPainter painter(&image);
    for (int corner = 0; corner < 4; ++corner)
        painter.fillRect(cornerOf(format.size, corner), Corners[corner]);
    QRandomGenerator random(number);
    for (int dot = 0; format.noise && dot < format.size.width() * format.size.height() / 200; ++dot)
        painter.fillRect(random.bounded(format.size.width()), random.bounded(format.size.height()), 5, 5,
                         QColor::fromRgb(random.generate()));
    for (int corner = 0; format.noise && corner < 4; ++corner) {
        QRect kept(0, 0, 16, 16);
        const QRect area = cornerOf(format.size, corner);
        kept.moveTo(corner % 2 ? format.size.width() - 16 : 0, corner / 2 ? format.size.height() - 16 : 0);
        painter.fillRect(kept & area, Corners[corner]);
    }
    for (int bit = 0; bit < Bits; ++bit)
        painter.fillRect(stripeOf(format.size, bit), number >> bit & 1 ? Qt::white : Qt::black);
    return image;
}

bool alike(QRgb seen, QColor wanted, int tolerance = 8)
{
    return std::abs(qRed(seen) - wanted.red()) <= tolerance &&
           std::abs(qGreen(seen) - wanted.green()) <= tolerance &&
           std::abs(qBlue(seen) - wanted.blue()) <= tolerance;
}

/// The outermost pixels of odd sizes have less of a colour of their own.
bool hasCorner(const QImage &image, int corner)
{
    const QRect all = image.rect();
    const QRect inner = all.adjusted(2, 2, -2, -2);
    const auto pixel = [&](const QRect &area) {
        return image.pixel(corner % 2 ? area.right() : area.left(), corner / 2 ? area.bottom() : area.top());
    };
    return alike(pixel(inner), Corners[corner]) && alike(pixel(all), Corners[corner], 30);
}

void require(bool condition, const char *what)
{
    if (!condition)
        qFatal("cannot encode a clip: %s", what);
}

AVPixelFormat pixelFormatOf(const ClipFormat &format)
{
    if (format.encoder == "mjpeg")
        return format.fineColours ? AV_PIX_FMT_YUVJ444P : AV_PIX_FMT_YUVJ420P;
    return format.tenBits ? AV_PIX_FMT_YUV420P10 : AV_PIX_FMT_YUV420P;
}

/// The name in the stream and the matrix of the scaler.
std::pair<AVColorSpace, int> coloursOf(const ClipFormat &format)
{
    switch (format.colours) {
    case ClipColours::Unsaid:
        break;
    case ClipColours::Bt601:
        return {AVCOL_SPC_SMPTE170M, SWS_CS_ITU601};
    case ClipColours::Bt709:
        return {AVCOL_SPC_BT709, SWS_CS_ITU709};
    case ClipColours::Bt2020:
        return {AVCOL_SPC_BT2020_NCL, SWS_CS_BT2020};
    }
    return {AVCOL_SPC_UNSPECIFIED, SWS_CS_DEFAULT};
}

/// From our images to the pixels of the encoder.
ScalerHandle openScaler(const ClipFormat &format, const AVCodecContext &encoder)
{
    // The scaler complains about the pixel format that the encoder of motion JPEG insists on.
    const int logLevel = av_log_get_level();
    av_log_set_level(AV_LOG_ERROR);
    ScalerHandle scaler(sws_getContext(encoder.width, encoder.height, AV_PIX_FMT_RGB32, encoder.width,
                                       encoder.height, encoder.pix_fmt, SWS_BICUBIC, nullptr, nullptr,
                                       nullptr));
    av_log_set_level(logLevel);
    if (format.colours != ClipColours::Unsaid || format.fullRange) {
        const int *matrix = sws_getCoefficients(coloursOf(format).second);
        constexpr int Unchanged = 1 << 16;
        sws_setColorspaceDetails(scaler.get(), matrix, 1, matrix, format.fullRange, 0, Unchanged, Unchanged);
    }
    return scaler;
}

CodecContextHandle openEncoder(const ClipFormat &format)
{
    const AVCodec *codec = avcodec_find_encoder_by_name(format.encoder.constData());
    require(codec, "no such encoder");
    CodecContextHandle context(avcodec_alloc_context3(codec));
    context->width = format.size.width();
    context->height = format.size.height();
    context->time_base = {1, 25};
    context->sample_aspect_ratio = {format.pixelWidth, format.pixelHeight};
    context->pix_fmt = pixelFormatOf(format);
    context->colorspace = coloursOf(format).first;
    if (format.fullRange)
        context->color_range = AVCOL_RANGE_JPEG;
    context->thread_count = 1;
    context->gop_size = format.keyInterval;
    context->slices = format.slices;
    if (format.packet > 0)
        av_opt_set_int(context->priv_data, "ps", format.packet, 0);
    context->max_b_frames = format.reordered;
    context->flags |= AV_CODEC_FLAG_QSCALE;
    context->global_quality = format.quality * FF_QP2LAMBDA;
    context->log_level_offset = 100; // below the levels that are shown
    if (codec->id == AV_CODEC_ID_H264) {
        av_opt_set(context->priv_data, "preset", format.reordered > 0 ? "veryfast" : "ultrafast", 0);
        av_opt_set_int(context->priv_data, "b_strategy", 0, 0); // as many of them as allowed
        av_opt_set(context->priv_data, "qp", QByteArray::number(10 + format.quality * 4), 0);
    }
    require(avcodec_open2(context.get(), codec, nullptr) == 0, "the encoder does not open");
    return context;
}

FrameHandle frameFor(const AVCodecContext &context)
{
    FrameHandle frame(av_frame_alloc());
    frame->width = context.width;
    frame->height = context.height;
    frame->format = context.pix_fmt;
    frame->quality = context.global_quality;
    require(av_frame_get_buffer(frame.get(), 0) == 0, "no memory");
    return frame;
}

void collect(AVCodecContext &context, EncodedClip &clip)
{
    const PacketHandle packet(av_packet_alloc());
    while (avcodec_receive_packet(&context, packet.get()) == 0) {
        clip.pictures << QByteArray(reinterpret_cast<const char *>(packet->data), packet->size);
        clip.shown << int(packet->pts);
        av_packet_unref(packet.get());
    }
}

} // namespace

namespace paravue::test
{

bool canEncode(const QByteArray &encoder)
{
    return avcodec_find_encoder_by_name(encoder.constData()) != nullptr;
}

EncodedClip encodeClip(const ClipFormat &format)
{
    const CodecContextHandle context = openEncoder(format);
    const ScalerHandle scaler = openScaler(format, *context);
    EncodedClip clip;
    clip.decoder = avcodec_get_name(context->codec_id);
    const FrameHandle frame = frameFor(*context);
    for (int number = 0; number < format.pictures; ++number) {
        const QImage image = testPicture(format, format.still ? 0 : number);
        const uint8_t *const planes[] = {image.constBits()};
        const int strides[] = {static_cast<int>(image.bytesPerLine())};
        require(av_frame_make_writable(frame.get()) == 0, "no memory");
        sws_scale(scaler.get(), planes, strides, 0, context->height, frame->data, frame->linesize);
        frame->pts = number;
        require(avcodec_send_frame(context.get(), frame.get()) == 0, "a picture was refused");
        collect(*context, clip);
    }
    avcodec_send_frame(context.get(), nullptr);
    collect(*context, clip);
    require(clip.pictures.size() == format.pictures, "pictures are missing");
    return clip;
}

int shownNumber(const QImage &image)
{
    for (int corner = 0; corner < 4; ++corner) {
        if (!hasCorner(image, corner))
            return -1;
    }
    int number = 0;
    for (int bit = 0; bit < Bits; ++bit) {
        const QRgb seen = image.pixel(stripeOf(image.size(), bit).center());
        if (!alike(seen, Qt::white) && !alike(seen, Qt::black))
            return -1;
        number |= (qGreen(seen) > 127 ? 1 : 0) << bit;
    }
    return number;
}

} // namespace paravue::test
