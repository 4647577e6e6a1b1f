#include "recorder/video/SnapshotEncoder.h"

#include "recorder/video/PictureScaler.h"

#include <cstring>

namespace recorder
{

namespace
{

std::unique_ptr<PictureEncoder> openJpegEncoder(QSize size)
{
    VideoSettings settings;
    settings.codec = VideoCodec::MotionJpeg;
    settings.size = size;
    QString fault;
    return PictureEncoder::open(settings, fault);
}

/// Nothing when the bytes cannot be decoded without other pictures.
Frame decodePicture(const AVCodecParameters &parameters, const QByteArray &bytes)
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

} // namespace

QByteArray encodeSnapshot(QSize size, const std::function<void(PicturePainter &)> &paint)
{
    const std::unique_ptr<PictureEncoder> encoder = openJpegEncoder(size);
    return encoder ? encoder->encode(paint, true).bytes : QByteArray();
}

QByteArray encodeSnapshot(const AVFrame &picture)
{
    const std::unique_ptr<PictureEncoder> encoder =
        openJpegEncoder(encodableSize({picture.width, picture.height}));
    AVFrame *const target = encoder ? encoder->frame() : nullptr;
    return target && PictureScaler().scale(picture, *target) ? encoder->encodeFrame(true).bytes
                                                             : QByteArray();
}

QByteArray encodeSnapshot(const AVCodecParameters &parameters, const QByteArray &keyPicture)
{
    const Frame picture = decodePicture(parameters, keyPicture);
    return picture ? encodeSnapshot(*picture) : QByteArray();
}

} // namespace recorder
