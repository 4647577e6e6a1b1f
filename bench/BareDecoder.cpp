#include "BareDecoder.h"

#include "video/FfmpegHandles.h"

#include <algorithm>
#include <map>
#include <utility>
#include <vector>

extern "C" {
#include <libavcodec/avcodec.h>
#include <libswscale/swscale.h>
}

namespace paravue::bench
{

const test::EncodedClip &detailedClip(const QByteArray &encoder, ClipQuality quality)
{
    static std::map<std::pair<QByteArray, ClipQuality>, test::EncodedClip> clips;
    const std::pair key(encoder, quality);
    auto found = clips.find(key);
    if (found == clips.end())
        found = clips
                    .emplace(key, test::encodeClip({.encoder = encoder,
                                                    .size = DetailedSize,
                                                    .pictures = DetailedPictures,
                                                    .quality = int(quality),
                                                    .noise = true}))
                    .first;
    return found->second;
}

namespace
{

bool isConverted(Converted converted, int number)
{
    constexpr int ShownBit = 4;
    return converted == Converted::All || (converted == Converted::Shown && (number & ShownBit));
}

} // namespace

int decodeBare(const test::EncodedClip &clip, Converted converted)
{
    av_log_set_level(AV_LOG_ERROR); // it warns of pixel formats that a bare loop uses
    const AVCodec *codec = avcodec_find_decoder_by_name(clip.decoder.constData());
    const CodecContextHandle context(avcodec_alloc_context3(codec));
    context->thread_count = 1;
    context->flags |= AV_CODEC_FLAG_LOW_DELAY;
    if (avcodec_open2(context.get(), codec, nullptr) != 0)
        qFatal("no decoder");
    const PacketHandle packet(av_packet_alloc());
    const FrameHandle frame(av_frame_alloc());
    BufferHandle pixels;
    ScalerHandle scaler;
    int decoded = 0;
    for (const QByteArray &picture : clip.pictures) {
        if (av_new_packet(packet.get(), static_cast<int>(picture.size())) != 0)
            qFatal("no memory");
        std::copy(picture.begin(), picture.end(), packet->data);
        avcodec_send_packet(context.get(), packet.get());
        av_packet_unref(packet.get());
        while (avcodec_receive_frame(context.get(), frame.get()) == 0) {
            if (!isConverted(converted, ++decoded))
                continue;
            const int rowBytes = frame->width * 4; // a multiple of 64 in these clips
            if (!scaler) {
                pixels.reset(av_buffer_alloc(rowBytes * frame->height + 64));
                scaler.reset(sws_getContext(frame->width, frame->height, context->pix_fmt, frame->width,
                                            frame->height, AV_PIX_FMT_RGB32, SWS_FAST_BILINEAR, nullptr,
                                            nullptr, nullptr));
            }
            uint8_t *const planes[] = {pixels->data, nullptr, nullptr, nullptr};
            const int strides[] = {rowBytes, 0, 0, 0};
            sws_scale(scaler.get(), frame->data, frame->linesize, 0, frame->height, planes, strides);
        }
    }
    return decoded;
}

int decodeSideBySide(const test::EncodedClip &clip, int streams)
{
    const AVCodec *codec = avcodec_find_decoder_by_name(clip.decoder.constData());
    std::vector<CodecContextHandle> contexts;
    for (int i = 0; i < streams; ++i) {
        contexts.emplace_back(avcodec_alloc_context3(codec));
        contexts.back()->thread_count = 1;
        contexts.back()->flags |= AV_CODEC_FLAG_LOW_DELAY;
        if (avcodec_open2(contexts.back().get(), codec, nullptr) != 0)
            qFatal("no decoder");
    }
    const PacketHandle packet(av_packet_alloc());
    const FrameHandle frame(av_frame_alloc());
    int decoded = 0;
    for (const QByteArray &picture : clip.pictures) {
        for (const CodecContextHandle &context : contexts) {
            if (av_new_packet(packet.get(), static_cast<int>(picture.size())) != 0)
                qFatal("no memory");
            std::copy(picture.begin(), picture.end(), packet->data);
            avcodec_send_packet(context.get(), packet.get());
            av_packet_unref(packet.get());
            while (avcodec_receive_frame(context.get(), frame.get()) == 0)
                ++decoded;
        }
    }
    return decoded;
}

int splitBare(const QByteArray &decoder, const QByteArray &bytes)
{
    const AVCodec *codec = avcodec_find_decoder_by_name(decoder.constData());
    const CodecContextHandle context(avcodec_alloc_context3(codec));
    AVCodecParserContext *parser = av_parser_init(codec->id);
    const QByteArray padded = bytes + QByteArray(AV_INPUT_BUFFER_PADDING_SIZE, '\0');
    int pictures = 0;
    for (qsizetype at = 0; at <= bytes.size();) {
        uint8_t *picture = nullptr;
        int size = 0;
        // No bytes at the end: then the parser returns the last picture.
        const int used =
            av_parser_parse2(parser, context.get(), &picture, &size,
                             reinterpret_cast<const uint8_t *>(padded.constData()) + at,
                             static_cast<int>(bytes.size() - at), AV_NOPTS_VALUE, AV_NOPTS_VALUE, 0);
        pictures += size > 0 ? 1 : 0;
        if (at == bytes.size())
            break;
        at += used;
    }
    av_parser_close(parser);
    return pictures;
}

} // namespace paravue::bench
