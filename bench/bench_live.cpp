#include "StreamFeed.h"
#include "WorstStreams.h"

#include "controls/PictureView.h"
#include "support/EncodedClip.h"
#include "support/Hvx3Bytes.h"
#include "video/VideoHVX3Reciver.h"
#include "video/cFfmpegDecoder.h"

#include <benchmark/benchmark.h>

#include <QApplication>
#include <QElapsedTimer>
#include <QFile>
#include <QGridLayout>
#include <QKeyEvent>
#include <QLineEdit>

#include <chrono>
#include <ctime>
#include <memory>
#include <pthread.h>
#include <vector>

// A window with live video: how fast it answers keys while expensive streams play, and whether its memory
// grows.

namespace
{

using namespace paravue;
using paravue::bench::StreamFeed;
using paravue::bench::WorstStream;

/// A window with a text field and some live pictures.
class LiveWindow
{
public:
    explicit LiveWindow(int receivers)
    {
        auto *layout = new QGridLayout(&m_window);
        m_field = new QLineEdit;
        layout->addWidget(m_field, 0, 0, 1, 2);
        for (int i = 0; i < receivers; ++i) {
            m_feeds.push_back(std::make_unique<StreamFeed>());
            auto *receiver = new VideoHVX3Reciver(&m_window, m_feeds.back()->element());
            auto *view = new PictureView;
            view->setPreferredSize({640, 480});
            layout->addWidget(view, 1 + i / 2, i % 2);
            QObject::connect(receiver, &VideoHVX3Reciver::pixmapReady, view, &PictureView::setPixmap);
            QObject::connect(receiver->findChild<cFfmpegDecoder *>(), &cFfmpegDecoder::onFrame, &m_window,
                             [this] { ++m_decoded; });
        }
        m_window.show();
        m_field->setFocus();
    }

    void play(const QByteArray &start, const QByteArray &again, int times)
    {
        for (const auto &feed : m_feeds)
            feed->send(start, again, times);
    }

    QLineEdit *field() { return m_field; }
    int decoded() const { return m_decoded; }

private:
    std::vector<std::unique_ptr<StreamFeed>> m_feeds;
    QWidget m_window;
    QLineEdit *m_field = nullptr;
    int m_decoded = 0;
};

/// Types into a field from another thread, independently of the event loop, and measures the time until the
/// field shows the letter, and the part of it in which the thread of the window was running: on a busy
/// computer it waits for others.
class Typist : public QObject
{
public:
    explicit Typist(QLineEdit *field) : m_field(field)
    {
        field->installEventFilter(this);
        if (pthread_getcpuclockid(pthread_self(), &m_windowClock) != 0)
            qFatal("no processor time");
        m_clock.start();
        m_thread = std::thread([this] { type(); });
    }
    ~Typist() override
    {
        m_stopped = true;
        m_thread.join();
    }

    double worstMilliseconds() const { return m_worst / 1e6; }
    double worstOfProcessor() const { return m_worstOfProcessor / 1e6; }
    int answers() const { return m_answers; }

    bool eventFilter(QObject *, QEvent *event) override
    {
        if (event->type() == QEvent::Paint && m_field->text().size() > m_length) {
            m_length = m_field->text().size();
            m_worst = std::max(m_worst, m_clock.nsecsElapsed() - m_typedAt);
            m_worstOfProcessor = std::max(m_worstOfProcessor, windowNanoseconds() - m_ranAt);
            ++m_answers;
            m_typedAt = 0;
        }
        return false;
    }

private:
    void type()
    {
        while (!m_stopped) {
            // Not a multiple of the intervals of the window and the streams.
            std::this_thread::sleep_for(std::chrono::microseconds(17'300));
            if (m_typedAt != 0)
                continue;
            m_ranAt = windowNanoseconds();
            m_typedAt = m_clock.nsecsElapsed();
            QCoreApplication::postEvent(m_field, new QKeyEvent(QEvent::KeyPress, Qt::Key_A, {}, "a"));
        }
    }

    qint64 windowNanoseconds() const
    {
        timespec time{};
        clock_gettime(m_windowClock, &time);
        return time.tv_sec * 1'000'000'000 + time.tv_nsec;
    }

    QLineEdit *const m_field;
    QElapsedTimer m_clock;
    clockid_t m_windowClock{};
    qsizetype m_length = 0;
    qint64 m_worst = 0;
    qint64 m_worstOfProcessor = 0;
    int m_answers = 0;
    std::atomic<qint64> m_typedAt = 0;
    std::atomic<qint64> m_ranAt = 0;
    std::atomic<bool> m_stopped = false;
    std::thread m_thread;
};

constexpr int Receivers = 4;
constexpr double MaxAnswer = 100; // milliseconds of the processor

void answer(benchmark::State &state, WorstStream (*make)())
{
    const WorstStream stream = make();
    double worst = 0;
    double worstOfProcessor = 0;
    int answers = 0;
    int pictures = 0;
    for (auto _ : state) {
        LiveWindow window(Receivers);
        window.play(stream.start, stream.again, StreamFeed::Endless);
        Typist typist(window.field());
        QElapsedTimer clock;
        clock.start();
        while (clock.elapsed() < 5000)
            QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents | QEventLoop::AllEvents);
        worst = std::max(worst, typist.worstMilliseconds());
        worstOfProcessor = std::max(worstOfProcessor, typist.worstOfProcessor());
        answers += typist.answers();
        pictures += window.decoded();
    }
    state.counters["worst_ms"] = worst;
    state.counters["worst_processor_ms"] = worstOfProcessor;
    state.counters["limit"] = MaxAnswer;
    state.counters["answers"] = answers;
    state.counters["pictures"] = pictures;
    state.SetLabel(answers > 0 && worstOfProcessor <= MaxAnswer ? "within limit" : "OVER LIMIT");
}

/// The memory of this process that is in use, in bytes.
double residentBytes()
{
    QFile file(QStringLiteral("/proc/self/statm"));
    if (!file.open(QIODevice::ReadOnly))
        qFatal("no memory figures on this system");
    constexpr double PageSize = 4096;
    return file.readAll().split(' ').value(1).toDouble() * PageSize;
}

void hour(benchmark::State &state)
{
    constexpr int PicturesPerMinute = 25 * 60;
    constexpr int Minutes = 60;
    constexpr double MaxGrowth = 1024 * 1024;
    const test::EncodedClip clip = test::encodeClip(
        {.encoder = "mpeg4", .size = {176, 144}, .pictures = 30, .quality = 4, .noise = true});
    QByteArray second = test::hvx3Index(0);
    for (const QByteArray &picture : clip.pictures)
        second += test::hvx3Frame(0, picture, 1000);
    double growth = 0;
    for (auto _ : state) {
        LiveWindow window(1);
        window.play(test::hvx3Header({{.label1 = "mp4v"}}) + second, second, StreamFeed::Endless);
        double atStart = 0;
        while (window.decoded() < PicturesPerMinute * Minutes) {
            QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents | QEventLoop::AllEvents);
            if (atStart == 0 && window.decoded() >= PicturesPerMinute)
                atStart = residentBytes();
        }
        growth = residentBytes() - atStart;
    }
    state.counters["growth_KiB"] = growth / 1024;
    state.counters["limit"] = MaxGrowth / 1024;
    state.SetLabel(growth <= MaxGrowth ? "within limit" : "OVER LIMIT");
}

} // namespace

BENCHMARK_CAPTURE(answer, empty_pictures, bench::emptyPictures)->Iterations(1);
BENCHMARK_CAPTURE(answer, dense_h264, bench::denseH264)->Iterations(1);
BENCHMARK_CAPTURE(answer, dense_photos, bench::densePhotos)->Iterations(1);
BENCHMARK_CAPTURE(answer, dense_mpeg4, bench::denseMpeg4)->Iterations(1);
BENCHMARK_CAPTURE(answer, crowded_frames, bench::crowdedFrames)->Iterations(1);
BENCHMARK_CAPTURE(answer, headers, bench::headers)->Iterations(1);
BENCHMARK_CAPTURE(answer, alternating_sizes, bench::alternatingSizes)->Iterations(1);
BENCHMARK_CAPTURE(answer, damaged_pictures, bench::damagedPictures)->Iterations(1);
BENCHMARK_CAPTURE(answer, many_slices, bench::manySlices)->Iterations(1);
BENCHMARK_CAPTURE(answer, empty_frames, bench::emptyFrames)->Iterations(1);
BENCHMARK(hour)->Iterations(1)->Unit(benchmark::kMillisecond);
