#include "LargeAllocations.h"
#include "PairedRatio.h"

#include "support/EncodedClip.h"
#include "video/cFfmpegDecoder.h"

#include <map>

extern "C" {
#include <libavcodec/avcodec.h>
#include <libswscale/swscale.h>
}

// The decoder beside a bare loop of FFmpeg calls that decodes and scales the same clip into one buffer.

namespace
{

using namespace paravue;
using paravue::bench::applyPaired;
using paravue::bench::pairedRatio;
using paravue::test::EncodedClip;

const QSize Size(704, 576);
constexpr int Pictures = 50;
/// Rows are a multiple of 64 bytes.
constexpr int RowBytes = 704 * 4;

const EncodedClip &clipOf(const QByteArray &encoder)
{
    static std::map<QByteArray, EncodedClip> clips;
    auto found = clips.find(encoder);
    if (found == clips.end())
        found = clips
                    .emplace(encoder, test::encodeClip({.encoder = encoder,
                                                        .size = Size,
                                                        .pictures = Pictures,
                                                        .quality = 4,
                                                        .noise = true}))
                    .first;
    return found->second;
}

int decodeOurs(const EncodedClip &clip)
{
    int shown = 0;
    cFfmpegDecoder decoder;
    QObject::connect(&decoder, &cFfmpegDecoder::onFrame, &decoder, [&shown] { ++shown; });
    if (!decoder.create(QString::fromLatin1(clip.decoder)))
        qFatal("no decoder");
    for (const QByteArray &picture : clip.pictures)
        decoder.append(picture);
    return shown;
}

int decodeBare(const EncodedClip &clip)
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
    const BufferHandle pixels(av_buffer_alloc(RowBytes * Size.height() + 64));
    ScalerHandle scaler;
    int shown = 0;
    for (const QByteArray &picture : clip.pictures) {
        if (av_new_packet(packet.get(), static_cast<int>(picture.size())) != 0)
            qFatal("no memory");
        std::copy(picture.begin(), picture.end(), packet->data);
        avcodec_send_packet(context.get(), packet.get());
        av_packet_unref(packet.get());
        while (avcodec_receive_frame(context.get(), frame.get()) == 0) {
            if (!scaler)
                scaler.reset(sws_getContext(frame->width, frame->height, context->pix_fmt, frame->width,
                                            frame->height, AV_PIX_FMT_RGB32, SWS_FAST_BILINEAR, nullptr,
                                            nullptr, nullptr));
            uint8_t *const planes[] = {pixels->data, nullptr, nullptr, nullptr};
            const int strides[] = {RowBytes, 0, 0, 0};
            sws_scale(scaler.get(), frame->data, frame->linesize, 0, frame->height, planes, strides);
            ++shown;
        }
    }
    return shown;
}

void decode(benchmark::State &state, const char *encoder)
{
    const EncodedClip &clip = clipOf(encoder);
    const auto whole = [](int shown) {
        if (shown != Pictures)
            qFatal("%d pictures instead of %d", shown, Pictures);
    };
    pairedRatio(
        state, [&] { whole(decodeOurs(clip)); }, [&] { whole(decodeBare(clip)); }, {.limit = 1.05});
}

/// Counts allocations that could hold a picture, once the decoder is warm.
void allocate(benchmark::State &state, const char *encoder)
{
    const EncodedClip &clip = clipOf(encoder);
    cFfmpegDecoder decoder;
    decoder.create(QString::fromLatin1(clip.decoder));
    for (const QByteArray &picture : clip.pictures)
        decoder.append(picture);
    long found = 0;
    for (auto _ : state) {
        bench::countAllocations(static_cast<std::size_t>(Size.width()) * Size.height());
        for (const QByteArray &picture : clip.pictures)
            decoder.append(picture);
        found = bench::countedAllocations();
    }
    state.counters["allocations"] = static_cast<double>(found);
    state.SetLabel(found == 0 ? "within limit" : "OVER LIMIT");
}

} // namespace

BENCHMARK_CAPTURE(decode, h264, "libx264")->Apply(applyPaired);
BENCHMARK_CAPTURE(decode, mpeg4, "mpeg4")->Apply(applyPaired);
BENCHMARK_CAPTURE(decode, mjpeg, "mjpeg")->Apply(applyPaired);
BENCHMARK_CAPTURE(allocate, h264, "libx264")->Iterations(1);
BENCHMARK_CAPTURE(allocate, mpeg4, "mpeg4")->Iterations(1);
BENCHMARK_CAPTURE(allocate, mjpeg, "mjpeg")->Iterations(1);

BENCHMARK_MAIN();
