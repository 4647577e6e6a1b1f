#include "recorder/video/PictureEncoder.h"

#include "recorder/files/RecorderText.h"

extern "C" {
#include <libavutil/opt.h>
}

#include <vector>

namespace recorder
{

namespace
{

/// Best first. Hardware encoders are left out: their delays differ.
std::vector<const AVCodec *> encodersFor(VideoCodec codec)
{
    const char *const names[][2] = {{"libx264", "libopenh264"}, {"mpeg4", nullptr}, {"mjpeg", nullptr}};
    std::vector<const AVCodec *> encoders;
    for (const char *name : names[static_cast<int>(codec)]) {
        if (const AVCodec *encoder = name ? avcodec_find_encoder_by_name(name) : nullptr)
            encoders.push_back(encoder);
    }
    return encoders;
}

void configure(AVCodecContext &context, const VideoSettings &settings)
{
    constexpr int Quality = 4; // of 1 (best) to 31
    const bool isJpeg = settings.codec == VideoCodec::MotionJpeg;
    context.width = settings.size.width();
    context.height = settings.size.height();
    context.time_base = {1, settings.rate};
    context.framerate = {settings.rate, 1};
    context.pix_fmt = isJpeg ? AV_PIX_FMT_YUVJ420P : AV_PIX_FMT_YUV420P;
    context.color_range = isJpeg ? AVCOL_RANGE_JPEG : AVCOL_RANGE_MPEG;
    context.thread_count = 1;
    context.max_b_frames = 0;
    context.gop_size = 600;                                // key pictures come on request
    context.log_level_offset = AV_LOG_INFO - AV_LOG_ERROR; // errors only
    if (settings.codec != VideoCodec::H264) {
        context.flags |= AV_CODEC_FLAG_QSCALE;
        context.global_quality = Quality * FF_QP2LAMBDA;
    }
}

CodecContext openContext(const AVCodec *encoder, const VideoSettings &settings, QString &fault)
{
    CodecContext context(avcodec_alloc_context3(encoder));
    if (!context) {
        fault = RecorderText::tr("out of memory");
        return nullptr;
    }
    configure(*context, settings);
    // Each encoder ignores the options that it does not know.
    AVDictionary *options = nullptr;
    av_dict_set(&options, "preset", "ultrafast", 0);
    av_dict_set(&options, "tune", "zerolatency", 0);
    av_dict_set(&options, "crf", "23", 0);
    av_dict_set(&options, "forced-idr", "1", 0);
    const int result = avcodec_open2(context.get(), encoder, &options);
    av_dict_free(&options);
    if (result == 0)
        return context;
    fault = RecorderText::tr("the encoder %1 does not open: %2")
                .arg(QString::fromLatin1(encoder->name), ffmpegError(result));
    return nullptr;
}

Frame frameFor(const AVCodecContext &context)
{
    Frame frame(av_frame_alloc());
    if (!frame)
        return nullptr;
    frame->width = context.width;
    frame->height = context.height;
    frame->format = context.pix_fmt;
    frame->color_range = context.color_range;
    frame->quality = context.global_quality;
    return av_frame_get_buffer(frame.get(), 0) == 0 ? std::move(frame) : nullptr;
}

} // namespace

PictureEncoder::PictureEncoder(CodecContext context, Frame frame, Packet packet)
    : m_context(std::move(context)), m_frame(std::move(frame)), m_packet(std::move(packet))
{
}

bool PictureEncoder::isAvailable(VideoCodec codec)
{
    return !encodersFor(codec).empty();
}

std::unique_ptr<PictureEncoder> PictureEncoder::open(const VideoSettings &settings, QString &fault)
{
    fault = settingsFault(settings);
    if (!fault.isEmpty())
        return nullptr;
    fault = RecorderText::tr("FFmpeg on this computer cannot encode %1").arg(nameOf(settings.codec));
    for (const AVCodec *encoder : encodersFor(settings.codec)) {
        CodecContext context = openContext(encoder, settings, fault);
        if (!context)
            continue;
        Frame frame = frameFor(*context);
        Packet packet(av_packet_alloc());
        if (!frame || !packet) {
            fault = RecorderText::tr("out of memory");
            return nullptr;
        }
        fault.clear();
        return std::unique_ptr<PictureEncoder>(
            new PictureEncoder(std::move(context), std::move(frame), std::move(packet)));
    }
    return nullptr;
}

CodedPicture PictureEncoder::encode(const std::function<void(PicturePainter &)> &paint, bool wantKey)
{
    AVFrame *const target = frame();
    if (!target)
        return {};
    PicturePlanes planes;
    for (int plane = 0; plane < 3; ++plane) {
        planes.data[plane] = target->data[plane];
        planes.strides[plane] = target->linesize[plane];
    }
    planes.size = QSize(target->width, target->height);
    planes.fullRange = target->color_range == AVCOL_RANGE_JPEG;
    PicturePainter painter(planes);
    paint(painter);
    return encodeFrame(wantKey);
}

AVFrame *PictureEncoder::frame()
{
    // The encoder may still refer to the picture before.
    return av_frame_make_writable(m_frame.get()) == 0 ? m_frame.get() : nullptr;
}

CodedPicture PictureEncoder::encodeFrame(bool wantKey)
{
    m_frame->pts = m_number++;
    m_frame->pict_type = wantKey ? AV_PICTURE_TYPE_I : AV_PICTURE_TYPE_NONE;
    CodedPicture picture;
    if (avcodec_send_frame(m_context.get(), m_frame.get()) != 0)
        return picture;
    while (avcodec_receive_packet(m_context.get(), m_packet.get()) == 0) {
        picture.bytes.append(reinterpret_cast<const char *>(m_packet->data), m_packet->size);
        picture.isKey = picture.isKey || (m_packet->flags & AV_PKT_FLAG_KEY) != 0;
        av_packet_unref(m_packet.get());
    }
    return picture;
}

} // namespace recorder
