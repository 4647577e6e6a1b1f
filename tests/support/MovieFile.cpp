#include "MovieFile.h"

#include <cstring>

extern "C" {
#include <libavcodec/avcodec.h>
#include <libavformat/avformat.h>
#include <libavutil/mem.h>
}

namespace paravue::test
{

namespace
{

constexpr AVRational PicturesPerSecond = {25, 1};

void require(bool condition, const char *what)
{
    if (!condition)
        qFatal("cannot write a movie: %s", what);
}

/// The bytes in front of the first coded picture; of H.264 more, which does no harm.
QByteArray headOf(const QByteArray &picture, AVCodecID codec)
{
    const bool isMpeg = codec == AV_CODEC_ID_MPEG4 || codec == AV_CODEC_ID_MPEG2VIDEO;
    const QByteArray pictureMark = QByteArray::fromHex(codec == AV_CODEC_ID_MPEG4 ? "000001b6" : "00000100");
    return isMpeg ? picture.left(picture.indexOf(pictureMark)) : picture;
}

void describe(AVStream &stream, const ClipFormat &format, const QByteArray &head)
{
    const AVCodec *encoder = avcodec_find_encoder_by_name(format.encoder.constData());
    AVCodecParameters &parameters = *stream.codecpar;
    parameters.codec_type = AVMEDIA_TYPE_VIDEO;
    parameters.codec_id = encoder->id;
    parameters.width = format.size.width();
    parameters.height = format.size.height();
    parameters.extradata = static_cast<uint8_t *>(av_mallocz(head.size() + AV_INPUT_BUFFER_PADDING_SIZE));
    parameters.extradata_size = int(head.size());
    std::memcpy(parameters.extradata, head.constData(), size_t(head.size()));
    stream.time_base = av_inv_q(PicturesPerSecond);
    stream.avg_frame_rate = PicturesPerSecond;
}

void writePicture(AVFormatContext &file, QByteArray picture, int number)
{
    AVPacket *packet = av_packet_alloc();
    packet->data = reinterpret_cast<uint8_t *>(picture.data());
    packet->size = int(picture.size());
    packet->pts = packet->dts = number;
    packet->duration = 1;
    packet->flags = number == 0 ? AV_PKT_FLAG_KEY : 0;
    av_packet_rescale_ts(packet, av_inv_q(PicturesPerSecond), file.streams[0]->time_base);
    require(av_write_frame(&file, packet) >= 0, "a picture was refused");
    av_packet_free(&packet);
}

} // namespace

void writeMovie(const QString &path, const ClipFormat &format)
{
    const EncodedClip clip = encodeClip(format);
    const AVCodecID codec = avcodec_find_encoder_by_name(format.encoder.constData())->id;
    AVFormatContext *file = nullptr;
    avformat_alloc_output_context2(&file, nullptr, nullptr, path.toUtf8().constData());
    require(file, "no such kind of file");
    const QByteArray head = headOf(clip.pictures.constFirst(), codec);
    describe(*avformat_new_stream(file, nullptr), format, head);
    require(avio_open(&file->pb, path.toUtf8().constData(), AVIO_FLAG_WRITE) >= 0, "the file does not open");
    require(avformat_write_header(file, nullptr) >= 0, "the head was refused");
    for (int number = 0; number < clip.pictures.size(); ++number) {
        const bool isHeadless = number == 0 && codec == AV_CODEC_ID_MPEG4;
        const QByteArray &picture = clip.pictures[number];
        writePicture(*file, isHeadless ? picture.mid(head.size()) : picture, number);
    }
    require(av_write_trailer(file) >= 0, "the end was refused");
    avio_closep(&file->pb);
    avformat_free_context(file);
}

} // namespace paravue::test
