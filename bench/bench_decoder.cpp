#include "BareDecoder.h"
#include "EndlessSlices.h"
#include "LargeAllocations.h"
#include "PairedRatio.h"
#include "ProcessorTime.h"

#include "video/CodedPictures.h"
#include "video/cFfmpegDecoder.h"

#include <QBuffer>
#include <QCoreApplication>
#include <QElapsedTimer>
#include <QImageWriter>

// The decoder beside a bare loop of FFmpeg calls that decodes and scales the same clip into one buffer, the
// search for the ends of pictures beside FFmpeg's parsers, and pictures that are left out of live video.

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

/// Pictures of many slices, as cameras send them that cut their slices to the size of a network packet: in
/// turns beside all at once.
void manySlices(benchmark::State &state)
{
    const EncodedClip clip = test::encodeClip({.encoder = "libx264",
                                               .size = {1920, 1080},
                                               .pictures = 25,
                                               .quality = 6,
                                               .slices = 24,
                                               .noise = true});
    const auto decode = [&clip](bool inTurns) {
        int shown = 0;
        cFfmpegDecoder decoder;
        if (inTurns)
            decoder.workInTurns();
        QObject::connect(&decoder, &cFfmpegDecoder::onFrame, &decoder, [&shown] { ++shown; });
        decoder.create(QString::fromLatin1(clip.decoder));
        for (const QByteArray &picture : clip.pictures)
            decoder.append(picture);
        while (decoder.isBusy())
            QCoreApplication::processEvents(QEventLoop::AllEvents);
        if (shown != clip.pictures.size())
            qFatal("%d pictures", shown);
    };
    pairedRatio(
        state, [&] { return bench::processorTime([&] { decode(true); }); },
        [&] { return bench::processorTime([&] { decode(false); }); }, {.limit = 1.25});
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

QByteArray parameterSetOf(const EncodedClip &clip)
{
    const QByteArray &picture = clip.pictures.first();
    const qsizetype at = picture.indexOf(QByteArray("\0\0\1\x68", 4));
    return picture.sliced(at, picture.indexOf(QByteArray("\0\0\1", 3), at + 3) - at);
}

void splitBesideParser(benchmark::State &state, VideoCodec codec, const QByteArray &decoder,
                       const QByteArray &bytes)
{
    int pictures = 0;
    pairedRatio(
        state,
        [&] {
            CodedPictures coded(codec, {bytes.constData(), std::size_t(bytes.size())}, bytes.size());
            for (pictures = 0; !coded.atEnd(); ++pictures)
                benchmark::DoNotOptimize(coded.next());
        },
        [&] {
            if (bench::splitBare(decoder, bytes) != pictures)
                qFatal("not as many pictures as we find");
        });
}

void split(benchmark::State &state, VideoCodec codec, const char *encoder)
{
    const EncodedClip &clip = detailedClip(encoder);
    splitBesideParser(state, codec, clip.decoder, clip.whole());
}

/// 1 MiB of parameter sets before a picture.
void splitParameterSets(benchmark::State &state)
{
    const EncodedClip &clip = detailedClip("libx264");
    const QByteArray set = parameterSetOf(clip);
    splitBesideParser(state, VideoCodec::H264, clip.decoder,
                      set.repeated(1024 * 1024 / set.size()) + clip.pictures.first());
}

/// A picture that takes so long that it is left out of live video.
struct SlowPicture {
    EncodedClip clip; ///< the first picture of which comes before it
    QByteArray bytes;
};

/// Huffman tables of one code each.
SlowPicture slowTables()
{
    const EncodedClip clip = test::encodeClip({.encoder = "mjpeg", .size = {1024, 1024}, .pictures = 1});
    const QByteArray &photo = clip.pictures.first();
    const QByteArray table = QByteArray("\xff\xc4\x00\x14\x00\x01", 6) + QByteArray(16, '\0');
    return {clip, photo.first(2) + table.repeated(7 * 1024 * 1024 / table.size()) + photo.sliced(2)};
}

/// A progressive picture of one colour, whose last scan comes again and again.
SlowPicture slowScans()
{
    const EncodedClip clip = test::encodeClip({.encoder = "mjpeg", .size = {64, 64}, .pictures = 1});
    QImage image(4096, 4096, QImage::Format_RGB32);
    image.fill(Qt::red);
    QBuffer buffer;
    QImageWriter writer(&buffer, "jpeg");
    writer.setProgressiveScanWrite(true);
    writer.write(image);
    const QByteArray photo = buffer.data();
    const QByteArray scan = photo.sliced(photo.lastIndexOf("\xff\xda")).chopped(2);
    return {clip, photo.chopped(2) + scan.repeated(100) + photo.last(2)};
}

/// Packets of MPEG-4 that each begin at the second block and leave 4,000 as they are.
SlowPicture slowPackets()
{
    const EncodedClip clip =
        test::encodeClip({.encoder = "mpeg4", .size = {1024, 1024}, .pictures = 2, .still = true});
    const QByteArray packet = QByteArray("\0\0\x80\x08\x2f", 5) + QByteArray(500, '\xff') + "\x7f";
    return {clip, clip.pictures[1].first(100) + packet.repeated(1000)};
}

SlowPicture slowSlices()
{
    const QSize size(4096, 4096);
    const EncodedClip clip =
        test::encodeClip({.encoder = "libx264", .size = size, .pictures = 2, .still = true});
    QByteArray slices;
    for (quint32 block = 0; block < 100; ++block)
        slices += bench::emptySliceFrom(clip.pictures[1], block, size);
    return {clip, slices};
}

SlowPicture slowParameterSets()
{
    const EncodedClip &clip = detailedClip("libx264");
    const QByteArray set = parameterSetOf(clip);
    return {clip, set.repeated(7 * 1024 * 1024 / set.size()) + clip.pictures.first()};
}

/// The longest turn of the event loop, in milliseconds, while the picture is decoded.
double longestTurn(const SlowPicture &picture, bool live)
{
    cFfmpegDecoder decoder;
    if (live)
        decoder.workInTurns();
    decoder.create(QString::fromLatin1(picture.clip.decoder));
    decoder.append(picture.clip.pictures.first());
    while (decoder.isBusy())
        QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
    double longest = 0;
    QElapsedTimer clock;
    clock.start();
    decoder.append(picture.bytes);
    do {
        longest = std::max(longest, double(clock.nsecsElapsed()) / 1e6);
        clock.start();
        QCoreApplication::processEvents(QEventLoop::AllEvents);
    } while (decoder.isBusy());
    return longest;
}

void leaveOut(benchmark::State &state, SlowPicture (*make)())
{
    constexpr double MaxTurn = 150; // milliseconds
    const SlowPicture picture = make();
    double live = 0;
    for (auto _ : state) {
        state.counters["decoded_ms"] = longestTurn(picture, false);
        live = longestTurn(picture, true);
    }
    state.counters["left_out_ms"] = live;
    state.counters["limit"] = MaxTurn;
    state.SetLabel(live <= MaxTurn ? "within limit" : "OVER LIMIT");
}

} // namespace

BENCHMARK_CAPTURE(decode, h264, "libx264")->Apply(applyPaired);
BENCHMARK_CAPTURE(decode, mpeg4, "mpeg4")->Apply(applyPaired);
BENCHMARK_CAPTURE(decode, mjpeg, "mjpeg")->Apply(applyPaired);
BENCHMARK(manySlices)->Apply(applyPaired);
BENCHMARK_CAPTURE(allocate, h264, "libx264")->Iterations(1);
BENCHMARK_CAPTURE(allocate, mpeg4, "mpeg4")->Iterations(1);
BENCHMARK_CAPTURE(allocate, mjpeg, "mjpeg")->Iterations(1);
BENCHMARK_CAPTURE(split, h264, VideoCodec::H264, "libx264")->Apply(applyPaired);
BENCHMARK_CAPTURE(split, mpeg4, VideoCodec::Mpeg4, "mpeg4")->Apply(applyPaired);
BENCHMARK_CAPTURE(split, mjpeg, VideoCodec::MotionJpeg, "mjpeg")->Apply(applyPaired);
BENCHMARK(splitParameterSets)->Apply(applyPaired);
BENCHMARK_CAPTURE(leaveOut, slices, slowSlices)->Iterations(1);
BENCHMARK_CAPTURE(leaveOut, parameter_sets, slowParameterSets)->Iterations(1);
BENCHMARK_CAPTURE(leaveOut, packets, slowPackets)->Iterations(1);
BENCHMARK_CAPTURE(leaveOut, scans, slowScans)->Iterations(1);
BENCHMARK_CAPTURE(leaveOut, tables, slowTables)->Iterations(1);

int main(int argc, char **argv)
{
    QCoreApplication application(argc, argv);
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
    return 0;
}
