#include "BareDecoder.h"
#include "PairedRatio.h"
#include "ProcessorTime.h"
#include "StreamFeed.h"

#include "controls/LiveView.h"
#include "support/Hvx3Bytes.h"
#include "support/StoreFixture.h"
#include "ui/CWinMain.h"
#include "ui/tasks/PictureSource.h"
#include "video/VideoHVX3Reciver.h"
#include "video/cFfmpegDecoder.h"
#include "video/cHvx3Parser.h"

#include <QCoreApplication>
#include <QElapsedTimer>
#include <QSet>
#include <QTabWidget>

#include <algorithm>
#include <limits>
#include <memory>
#include <optional>
#include <vector>

// The setup window with live pictures of 25 a second, beside a bare loop of FFmpeg calls that decodes as
// many.

namespace
{

using namespace paravue;
using paravue::bench::applyPaired;
using paravue::bench::pairedRatio;
using paravue::bench::processorTime;
using paravue::bench::Seconds;
using paravue::bench::StreamFeed;

constexpr int Rate = 25;
constexpr std::chrono::milliseconds Interval(1000 / Rate);
constexpr int MeasuredSeconds = 2;
constexpr int FarKeys = 10; // seconds
constexpr int FarRuns = 3;  // each takes as long

struct Cameras {
    int count;
    QSize size;         ///< of the pictures
    QSize shown;        ///< of the controls
    int keySeconds = 1; ///< from one key picture to the next
};

constexpr QSize WindowSize(2100, 1400);
constexpr Cameras FourLarge{4, {1920, 1080}, {480, 270}};
constexpr int PaceRuns = 3; // of ten seconds each
constexpr Cameras TwoSmall{2, {640, 480}, {320, 240}};
constexpr Cameras EightSmall{8, {640, 480}, {320, 240}};
constexpr Cameras SixteenSmall{16, {640, 480}, {320, 240}};
constexpr Cameras FourKeysOfTwoSeconds{4, {1920, 1080}, {480, 270}, 2};
constexpr Cameras FourKeysOfThreeSeconds{4, {1920, 1080}, {480, 270}, 3};
constexpr Cameras FourFarKeys{4, {1920, 1080}, {480, 270}, FarKeys};
constexpr Cameras SixteenFarKeys{16, {640, 480}, {320, 240}, FarKeys};

/// Video from one key picture to the next.
test::EncodedClip clipOf(const Cameras &cameras)
{
    return test::encodeClip({.encoder = "libx264",
                             .size = cameras.size,
                             .pictures = Rate * cameras.keySeconds,
                             .quality = 9,
                             .keyInterval = Rate * cameras.keySeconds,
                             .noise = true});
}

void run(int milliseconds)
{
    QElapsedTimer clock;
    clock.start();
    while (clock.elapsed() < milliseconds)
        QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents | QEventLoop::AllEvents);
}

/// The setup window with a page of cameras and an empty one.
class LiveWindow
{
public:
    LiveWindow(const Cameras &cameras, const test::EncodedClip &clip)
        : m_feeds(cameras.count), m_seconds(std::max(MeasuredSeconds, cameras.keySeconds))
    {
        QByteArray tasks;
        QByteArray cells;
        for (int i = 0; i < cameras.count; ++i) {
            const QByteArray number = QByteArray::number(i);
            m_feeds[i] = std::make_unique<StreamFeed>();
            const QString address =
                m_feeds[i]->element().firstChildElement(QStringLiteral("url")).attribute("parsed");
            tasks += "<timetask type='startVideoOnline' period='100'><url>" + address.toUtf8() +
                     "</url><login/><password/><target>view" + number + "</target></timetask>";
            cells += "<item type='online' row='" + QByteArray::number(i / 4) + "' column='" +
                     QByteArray::number(i % 4) + "' width='" + QByteArray::number(cameras.shown.width()) +
                     "' height='" + QByteArray::number(cameras.shown.height()) + "'><view" + number +
                     "/></item>";
        }
        const QByteArray text = "<pvsetup version='1.0'><window>" + tasks +
                                "</window><tabwidget><tab><name>Cameras</name><item type='gridlayout'>" +
                                cells +
                                "</item></tab><tab><name>Other</name><item type='gridlayout'/></tab>"
                                "</tabwidget></pvsetup>";
        m_store = std::make_unique<test::StoreFixture>(QMap<QString, QByteArray>{{"interface", text}});
        m_store->store().setProperty("offline", false); // else the window makes no connections
        m_window = std::make_unique<CWinMain>(&m_store->store(), nullptr);
        m_window->show();
        QByteArray start = test::hvx3Header({{.label1 = "H264"}}) + test::hvx3Index(0);
        QList<QByteArray> frames;
        for (const QByteArray &picture : clip.pictures)
            frames << test::hvx3Frame(0, picture, 16'000);
        for (const auto &feed : m_feeds)
            feed->play(start, frames, Interval);
        run(3000); // until all of them play
        m_window->resize(WindowSize);
        for (const LiveView *view : m_window->findChildren<LiveView *>()) {
            if (view->visibleRegion().boundingRect() != view->rect() || !view->hasPicture())
                qFatal("a camera is not seen");
        }
        for (cHvx3Parser *parser : m_window->findChildren<cHvx3Parser *>())
            QObject::connect(parser, &cHvx3Parser::onDATA, parser, [this] { ++m_received; });
    }
    ~LiveWindow() { m_window->endSession(); }

    void showPage(int page) { m_window->findChild<QTabWidget *>()->setCurrentIndex(page); }

    /// The processor time of the window while pictures come, for the number that the peer decodes. On a busy
    /// computer pictures may be left out; such a time does not count.
    Seconds measure()
    {
        for (int attempt = 0; attempt < 10; ++attempt) {
            const quint64 before = leftOut();
            const Seconds time = measureOnce();
            if (leftOut() == before)
                return time;
        }
        qFatal("this computer is too busy");
    }

    /// The time from the opening of the page to a new picture of each camera, which is the present one.
    Seconds open()
    {
        QObject context;
        QSet<const cFfmpegDecoder *> shown;
        for (const cFfmpegDecoder *decoder : m_window->findChildren<cFfmpegDecoder *>()) {
            const auto note = [&shown, decoder] { shown.insert(decoder); };
            QObject::connect(decoder, &cFfmpegDecoder::onFrame, &context, note);
            QObject::connect(decoder, &cFfmpegDecoder::onScaledFrame, &context, note);
        }
        const auto start = std::chrono::steady_clock::now();
        showPage(0);
        while (shown.size() < qsizetype(m_feeds.size()))
            QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents | QEventLoop::AllEvents);
        return std::chrono::steady_clock::now() - start;
    }

    struct Pace {
        double gap;   ///< the longest time without a new picture in any control, in seconds
        double share; ///< the least one of its pictures that a control has shown
    };
    /// Over ten seconds in which no picture is left out; nothing when this computer is too busy.
    std::optional<Pace> pace()
    {
        for (int attempt = 0; attempt < 3; ++attempt) {
            const quint64 before = leftOut();
            const Pace pace = paceOnce();
            if (leftOut() == before)
                return pace;
        }
        return {};
    }

private:
    Pace paceOnce()
    {
        constexpr int PaceSeconds = 10;
        struct Control {
            int received = 0;
            QList<qint64> shown; // when
        };
        QObject context;
        QElapsedTimer clock;
        const QList<PictureSource *> sources = m_window->findChildren<PictureSource *>();
        std::vector<Control> controls(size_t(sources.size()));
        for (qsizetype i = 0; i < sources.size(); ++i) {
            Control &control = controls[size_t(i)];
            const auto note = [&control, &clock] { control.shown << clock.elapsed(); };
            QObject::connect(sources[i], &PictureSource::pixmapReady, &context, note);
            QObject::connect(sources[i], &PictureSource::scaledReady, &context, note);
            QObject::connect(sources[i]->findChild<cHvx3Parser *>(), &cHvx3Parser::onDATA, &context,
                             [&control] { ++control.received; });
        }
        clock.start();
        run(PaceSeconds * 1000);
        Pace pace{0, 1};
        for (Control &control : controls) {
            pace.share = std::min(pace.share, double(control.shown.size()) / control.received);
            control.shown << PaceSeconds * 1000;
            qint64 last = 0;
            for (const qint64 time : control.shown) {
                pace.gap = std::max(pace.gap, double(time - last) / 1000);
                last = time;
            }
        }
        return pace;
    }

    Seconds measureOnce()
    {
        setPaused(false);
        run(1500); // past the next key pictures, in case some are left out
        const double before = feedSeconds();
        m_received = 0;
        Seconds all = processorTime([this] { run(m_seconds * 1000); }, CLOCK_PROCESS_CPUTIME_ID);
        all -= Seconds(feedSeconds() - before);
        // The peer would keep the window from reading.
        const int received = m_received;
        setPaused(true);
        run(200);
        return all * (double(m_feeds.size()) * Rate * m_seconds / received);
    }

    quint64 leftOut() const
    {
        quint64 sum = 0;
        for (const VideoHVX3Reciver *receiver : m_window->findChildren<VideoHVX3Reciver *>())
            sum += receiver->leftOut();
        return sum;
    }

    void setPaused(bool isPaused)
    {
        for (const auto &feed : m_feeds)
            feed->setPaused(isPaused);
    }

    double feedSeconds() const
    {
        double sum = 0;
        for (const auto &feed : m_feeds)
            sum += feed->processorSeconds();
        return sum;
    }

    std::vector<std::unique_ptr<StreamFeed>> m_feeds;
    std::unique_ptr<test::StoreFixture> m_store;
    std::unique_ptr<CWinMain> m_window;
    const int m_seconds; ///< of a measurement
    int m_received = 0;
};

void watch(benchmark::State &state, const Cameras &cameras)
{
    const test::EncodedClip clip = clipOf(cameras);
    LiveWindow window(cameras, clip);
    pairedRatio(
        state, [&] { return window.measure(); },
        [&] {
            return processorTime([&] {
                for (int second = 0; second < MeasuredSeconds; ++second) {
                    if (bench::decodeSideBySide(clip, cameras.count) != cameras.count * Rate)
                        qFatal("pictures are missing");
                }
            });
        },
        {.limit = 1.5});
}

/// Controls on another page beside the same ones while their page is shown.
void hide(benchmark::State &state, const Cameras &cameras)
{
    const test::EncodedClip clip = clipOf(cameras);
    LiveWindow window(cameras, clip);
    const auto measure = [&](int page) {
        window.showPage(page);
        return window.measure();
    };
    pairedRatio(
        state, [&] { return measure(1); }, [&] { return measure(0); }, {.limit = 0.15});
}

/// How evenly the pictures of equal cameras are shown: the best run, as load makes pictures late.
void pace(benchmark::State &state, const Cameras &cameras)
{
    constexpr double LongestGap = 0.6;
    constexpr double LeastShare = 0.4;
    const test::EncodedClip clip = clipOf(cameras);
    LiveWindow window(cameras, clip);
    LiveWindow::Pace best{std::numeric_limits<double>::max(), 0};
    for (auto _ : state) {
        const std::optional<LiveWindow::Pace> pace = window.pace();
        if (!pace) {
            state.SkipWithError("this computer is too busy");
            return;
        }
        best.gap = std::min(best.gap, pace->gap);
        best.share = std::max(best.share, pace->share);
        state.SetIterationTime(pace->gap);
    }
    state.counters["longest_gap_ms"] = best.gap * 1000;
    state.counters["least_share"] = best.share;
    state.SetLabel(best.gap <= LongestGap && best.share >= LeastShare ? "within limit" : "OVER LIMIT");
}

/// Opens the page of cameras that nobody has seen for some time. The picture of each has to be there within a
/// second.
void open(benchmark::State &state, const Cameras &cameras)
{
    const test::EncodedClip clip = clipOf(cameras);
    LiveWindow window(cameras, clip);
    double longest = 0;
    int hidden = 0; // seconds, another part of the time between two key pictures each time
    for (auto _ : state) {
        window.showPage(1);
        run((2 + hidden++ % cameras.keySeconds) * 1000 + 500);
        const Seconds time = window.open();
        longest = std::max(longest, time.count());
        state.SetIterationTime(time.count());
    }
    state.counters["longest_ms"] = longest * 1000;
    state.SetLabel(longest <= 1 ? "within limit" : "OVER LIMIT");
}

} // namespace

BENCHMARK_CAPTURE(watch, 4_of_1920x1080, FourLarge)->Apply(applyPaired);
BENCHMARK_CAPTURE(watch, 16_of_640x480, SixteenSmall)->Apply(applyPaired);
BENCHMARK_CAPTURE(hide, 4_of_1920x1080, FourLarge)->Apply(applyPaired);
BENCHMARK_CAPTURE(hide, 16_of_640x480, SixteenSmall)->Apply(applyPaired);
BENCHMARK_CAPTURE(hide, 4_of_1920x1080_keys_of_2_s, FourKeysOfTwoSeconds)
    ->Apply(applyPaired)
    ->Iterations(FarRuns);
BENCHMARK_CAPTURE(hide, 4_of_1920x1080_keys_of_3_s, FourKeysOfThreeSeconds)
    ->Apply(applyPaired)
    ->Iterations(FarRuns);
BENCHMARK_CAPTURE(hide, 4_of_1920x1080_far_keys, FourFarKeys)->Apply(applyPaired)->Iterations(FarRuns);
BENCHMARK_CAPTURE(hide, 16_of_640x480_far_keys, SixteenFarKeys)->Apply(applyPaired)->Iterations(FarRuns);
BENCHMARK_CAPTURE(pace, 2_of_640x480, TwoSmall)->Apply(applyPaired)->Iterations(PaceRuns);
BENCHMARK_CAPTURE(pace, 8_of_640x480, EightSmall)->Apply(applyPaired)->Iterations(PaceRuns);
BENCHMARK_CAPTURE(pace, 16_of_640x480, SixteenSmall)->Apply(applyPaired)->Iterations(PaceRuns);
BENCHMARK_CAPTURE(open, 4_of_1920x1080, FourLarge)->Apply(applyPaired);
BENCHMARK_CAPTURE(open, 16_of_640x480, SixteenSmall)->Apply(applyPaired);
BENCHMARK_CAPTURE(open, 4_of_1920x1080_keys_of_2_s, FourKeysOfTwoSeconds)->Apply(applyPaired);
BENCHMARK_CAPTURE(open, 4_of_1920x1080_keys_of_3_s, FourKeysOfThreeSeconds)->Apply(applyPaired);
BENCHMARK_CAPTURE(open, 4_of_1920x1080_far_keys, FourFarKeys)->Apply(applyPaired);
BENCHMARK_CAPTURE(open, 16_of_640x480_far_keys, SixteenFarKeys)->Apply(applyPaired);
