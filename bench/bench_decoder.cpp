#include "BareDecoder.h"
#include "LargeAllocations.h"
#include "PairedRatio.h"

#include "video/cFfmpegDecoder.h"

// The decoder beside a bare loop of FFmpeg calls that decodes and scales the same clip into one buffer.

namespace
{

using namespace paravue;
using paravue::bench::applyPaired;
using paravue::bench::decodeBare;
using paravue::bench::detailedClip;
using paravue::bench::pairedRatio;
using paravue::test::EncodedClip;

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

void decode(benchmark::State &state, const char *encoder)
{
    const EncodedClip &clip = detailedClip(encoder);
    const auto whole = [](int shown) {
        if (shown != bench::DetailedPictures)
            qFatal("%d pictures instead of %d", shown, bench::DetailedPictures);
    };
    pairedRatio(
        state, [&] { whole(decodeOurs(clip)); }, [&] { whole(decodeBare(clip)); }, {.limit = 1.05});
}

/// Counts allocations that could hold a picture, once the decoder is warm.
void allocate(benchmark::State &state, const char *encoder)
{
    const EncodedClip &clip = detailedClip(encoder);
    cFfmpegDecoder decoder;
    decoder.create(QString::fromLatin1(clip.decoder));
    for (const QByteArray &picture : clip.pictures)
        decoder.append(picture);
    long found = 0;
    for (auto _ : state) {
        bench::countAllocations(static_cast<std::size_t>(bench::DetailedSize.width()) *
                                bench::DetailedSize.height());
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
