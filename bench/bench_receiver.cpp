#include "BareDecoder.h"
#include "PairedRatio.h"
#include "ProcessorTime.h"
#include "StreamFeed.h"

#include "support/Hvx3Bytes.h"
#include "video/StreamFigures.h"
#include "video/VideoHVX3Reciver.h"
#include "video/cFfmpegDecoder.h"

#include <QEventLoop>
#include <QPixmap>

#include <string>
#include <vector>

// The receiver with its connection, its stream of records, its thinning and its pixmaps beside a bare loop of
// FFmpeg calls that decodes the same clip, and scales all of its pictures, or those that are shown, into one
// buffer.

namespace
{

using namespace paravue;
using paravue::bench::applyPaired;
using paravue::bench::ClipQuality;
using paravue::bench::Converted;
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
        auto *decoder = m_receiver.findChild<cFfmpegDecoder *>();
        QObject::connect(decoder, &cFfmpegDecoder::idle, &m_loop, [this] {
            if (m_receiver.figures().frames == m_sent)
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
        m_sent += bench::DetailedPictures;
        m_pixmaps = 0;
        m_feed.send(stream);
        m_loop.exec();
        if (m_receiver.leftOut() > 0)
            qFatal("pictures are left out");
        if (!m_makesPixmaps)
            return;
        if (m_pixmaps < bench::DetailedPictures / 2 - 4 || m_shown.size() != bench::DetailedSize)
            qFatal("%d pixmaps", m_pixmaps);
    }

private:
    StreamFeed m_feed;
    QEventLoop m_loop;
    VideoHVX3Reciver m_receiver;
    quint64 m_sent = 0;
    int m_pixmaps = 0;
    QPixmap m_shown;
    const bool m_makesPixmaps;
};

struct Clip {
    std::string name;
    const char *encoder;
    const char *label;
    ClipQuality quality = ClipQuality::Best;
};

struct Row {
    std::string name;
    bool makesPixmaps;
    Converted converted; ///< by the peer
    double limit;
};

/// Times of this thread, as the sender has a thread of its own.
void play(benchmark::State &state, const Row &row, const Clip &clip)
{
    const test::EncodedClip &encoded = bench::detailedClip(clip.encoder, clip.quality);
    const QByteArray stream = streamOf(encoded, clip.label);
    Receiver receiver(row.makesPixmaps);
    pairedRatio(
        state, [&] { return processorTime([&] { receiver.play(stream); }); },
        [&] {
            return processorTime([&] {
                if (bench::decodeBare(encoded, row.converted) != bench::DetailedPictures)
                    qFatal("pictures are missing");
            });
        },
        {.limit = row.limit});
    state.counters["picture_bytes"] = double(stream.size()) / bench::DetailedPictures;
}

/// Nobody receives the pixmaps of the "receiveOnly" rows, so that it makes none. A receiver does not convert
/// the pictures that nobody gets; beside a peer that does not either, the rest is what the connection takes.
const std::vector<Row> Rows{
    {"receive", true, Converted::All, 1.05},
    {"receiveBesideHalf", true, Converted::Shown, 1.15},
    {"receiveOnly", false, Converted::All, 1.05},
    {"receiveOnlyBesideNone", false, Converted::None, 1.15},
};

const std::vector<Clip> Clips{
    {"h264", "libx264", "H264"},
    {"mpeg4", "mpeg4", "mp4v"},
    {"mjpeg", "mjpeg", "mjpeg"},
    {"h264_usual", "libx264", "H264", ClipQuality::Usual},
    {"mpeg4_usual", "mpeg4", "mp4v", ClipQuality::Usual},
    {"mjpeg_usual", "mjpeg", "mjpeg", ClipQuality::Usual},
};

[[maybe_unused]] const bool areRegistered = [] {
    for (const Row &row : Rows) {
        for (const Clip &clip : Clips) {
            const auto run = [row, clip](benchmark::State &state) { play(state, row, clip); };
            applyPaired(benchmark::RegisterBenchmark((row.name + '/' + clip.name).c_str(), run));
        }
    }
    return true;
}();

} // namespace
