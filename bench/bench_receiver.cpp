#include "BareDecoder.h"
#include "PairedRatio.h"
#include "ProcessorTime.h"
#include "StreamFeed.h"

#include "support/Hvx3Bytes.h"
#include "video/VideoHVX3Reciver.h"
#include "video/cFfmpegDecoder.h"

#include <QEventLoop>
#include <QPixmap>

// The receiver with its connection, its stream of records, its thinning and its pixmaps beside a bare loop of
// FFmpeg calls that decodes and scales the same clip into one buffer.

namespace
{

using namespace paravue;
using paravue::bench::applyPaired;
using paravue::bench::ClipQuality;
using paravue::bench::pairedRatio;
using paravue::bench::processorTime;
using paravue::bench::StreamFeed;

constexpr int FragmentSize = 16'000;

QByteArray streamOf(const test::EncodedClip &clip, const QByteArray &label)
{
    QByteArray bytes = test::hvx3Header({{.label1 = label}}) + test::hvx3Index(0);
    for (const QByteArray &picture : clip.pictures)
        bytes += test::hvx3Frame(0, picture, FragmentSize);
    return bytes;
}

/// A receiver that is connected and logged in.
class Receiver
{
public:
    explicit Receiver(bool makesPixmaps) : m_receiver(nullptr, m_feed.element()), m_makesPixmaps(makesPixmaps)
    {
        QObject::connect(m_receiver.findChild<cFfmpegDecoder *>(), &cFfmpegDecoder::onFrame, &m_loop, [this] {
            if (++m_decoded == bench::DetailedPictures)
                m_loop.quit();
        });
        if (!makesPixmaps)
            return;
        QObject::connect(&m_receiver, &VideoHVX3Reciver::pixmapReady, &m_loop, [this](const QPixmap &pixmap) {
            m_shown = pixmap;
            ++m_pixmaps;
        });
    }

    void play(const QByteArray &stream)
    {
        m_decoded = 0;
        m_pixmaps = 0;
        m_feed.send(stream);
        m_loop.exec();
        if (!m_makesPixmaps)
            return;
        if (m_pixmaps < bench::DetailedPictures / 2 - 4 || m_shown.size() != bench::DetailedSize)
            qFatal("%d pixmaps", m_pixmaps);
    }

private:
    StreamFeed m_feed;
    QEventLoop m_loop;
    VideoHVX3Reciver m_receiver;
    int m_decoded = 0;
    int m_pixmaps = 0;
    QPixmap m_shown;
    const bool m_makesPixmaps;
};

/// Times of this thread, as the sender has a thread of its own.
void play(benchmark::State &state, const char *encoder, const char *label, ClipQuality quality,
          bool makesPixmaps, double limit)
{
    const test::EncodedClip &clip = bench::detailedClip(encoder, quality);
    const QByteArray stream = streamOf(clip, label);
    Receiver receiver(makesPixmaps);
    pairedRatio(
        state, [&] { return processorTime([&] { receiver.play(stream); }); },
        [&] {
            return processorTime([&] {
                if (bench::decodeBare(clip) != bench::DetailedPictures)
                    qFatal("pictures are missing");
            });
        },
        {.limit = limit});
    state.counters["picture_bytes"] = double(stream.size()) / bench::DetailedPictures;
}

void receive(benchmark::State &state, const char *encoder, const char *label, ClipQuality quality)
{
    play(state, encoder, label, quality, true, 1.15);
}

/// Nobody receives its pixmaps, so that it makes none.
void receiveOnly(benchmark::State &state, const char *encoder, const char *label, ClipQuality quality)
{
    play(state, encoder, label, quality, false, 1.05);
}

} // namespace

BENCHMARK_CAPTURE(receive, h264, "libx264", "H264", ClipQuality::Best)->Apply(applyPaired);
BENCHMARK_CAPTURE(receive, mpeg4, "mpeg4", "mp4v", ClipQuality::Best)->Apply(applyPaired);
BENCHMARK_CAPTURE(receive, mjpeg, "mjpeg", "mjpeg", ClipQuality::Best)->Apply(applyPaired);
BENCHMARK_CAPTURE(receive, h264_usual, "libx264", "H264", ClipQuality::Usual)->Apply(applyPaired);
BENCHMARK_CAPTURE(receive, mpeg4_usual, "mpeg4", "mp4v", ClipQuality::Usual)->Apply(applyPaired);
BENCHMARK_CAPTURE(receive, mjpeg_usual, "mjpeg", "mjpeg", ClipQuality::Usual)->Apply(applyPaired);
BENCHMARK_CAPTURE(receiveOnly, h264, "libx264", "H264", ClipQuality::Best)->Apply(applyPaired);
BENCHMARK_CAPTURE(receiveOnly, mpeg4, "mpeg4", "mp4v", ClipQuality::Best)->Apply(applyPaired);
BENCHMARK_CAPTURE(receiveOnly, mjpeg, "mjpeg", "mjpeg", ClipQuality::Best)->Apply(applyPaired);
BENCHMARK_CAPTURE(receiveOnly, h264_usual, "libx264", "H264", ClipQuality::Usual)->Apply(applyPaired);
BENCHMARK_CAPTURE(receiveOnly, mpeg4_usual, "mpeg4", "mp4v", ClipQuality::Usual)->Apply(applyPaired);
BENCHMARK_CAPTURE(receiveOnly, mjpeg_usual, "mjpeg", "mjpeg", ClipQuality::Usual)->Apply(applyPaired);
