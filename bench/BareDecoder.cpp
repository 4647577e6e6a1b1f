#include "BareDecoder.h"

#include "video/FfmpegHandles.h"

#include <algorithm>
#include <map>

extern "C" {
#include <libavcodec/avcodec.h>
#include <libswscale/swscale.h>
}

namespace paravue::bench
{

const test::EncodedClip &detailedClip(const QByteArray &encoder)
{
    static std::map<QByteArray, test::EncodedClip> clips;
    auto found = clips.find(encoder);
    if (found == clips.end())
        found = clips
                    .emplace(encoder, test::encodeClip({.encoder = encoder,
                                                        .size = DetailedSize,
                                                        .pictures = DetailedPictures,
                                                        .quality = 4,
                                                        .noise = true}))
                    .first;
    return found->second;
}

int decodeBare(const test::EncodedClip &clip)
{
    av_log_set_level(AV_LOG_ERROR); // a bare loop uses pixel formats that are warned of
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
    int shown = 0;
    for (const QByteArray &picture : clip.pictures) {
        if (av_new_packet(packet.get(), static_cast<int>(picture.size())) != 0)
            qFatal("no memory");
        std::copy(picture.begin(), picture.end(), packet->data);
        avcodec_send_packet(context.get(), packet.get());
        av_packet_unref(packet.get());
        while (avcodec_receive_frame(context.get(), frame.get()) == 0) {
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
            ++shown;
        }
    }
    return shown;
}

} // namespace paravue::bench
