#include "controls/LiveView.h"
#include "controls/PictureView.h"
#include "recorder/RecorderServer.h"
#include "recorder/video/VideoService.h"
#include "support/PictureClock.h"
#include "support/StoreFixture.h"
#include "support/TestTable.h"
#include "support/Waiting.h"
#include "ui/CWinMain.h"
#include "video/VideoHVX3Reciver.h"
#include "video/VideoLimits.h"
#include "video/cFfmpegDecoder.h"

#include <QSet>
#include <QTabWidget>
#include <QTemporaryDir>
#include <QTest>

#include <algorithm>
#include <memory>
#include <vector>

using namespace paravue;
using namespace paravue::test;
using recorder::RecorderServer;
using recorder::VideoFaults;
using recorder::VideoSettings;

namespace
{

constexpr int Cameras = 16;
constexpr int Hidden = Cameras - 1; ///< stands on another page
constexpr int Rate = 25;
constexpr int Patience = 30'000; // milliseconds
/// Of about a hundred of a damaged camera, of which the window shows half: each camera, and on average.
constexpr int LeastPictures = 2;
constexpr int UsualPictures = 5;

bool isSoak()
{
    return qEnvironmentVariableIsSet("PARAVUE_SOAK");
}

struct Kind {
    const char *type; ///< of the control
    QSize size;       ///< of the pictures
};

/// Of the cameras in turn. Pictures are shown in 160 x 120.
const std::vector<Kind> Kinds{{"online", {160, 120}},
                              {"maskctrl", {320, 240}},
                              {"PTZvideoin", {640, 480}},
                              {"online", {160, 120}},
                              {"PTZcrossView", {160, 120}}};

/// The fault of a camera, which comes once in so many pictures.
struct Damage {
    const char *faults;
    int every;
};

/// Freezing, a tenth of the speed, jumps in time, another codec each second, and all that damages a stream.
/// Garbage takes the pictures up to the next index record: were it to come in a ratio to the rate, it could
/// hit each key picture.
const std::vector<Damage> Damages{
    {"stall=1500", Rate}, {"slow", Rate},
    {"jump", 10},         {"codec", Rate},
    {"codec,size", 8},    {"garbage,lost", 13},
    {"header", 2},        {"garbage,lost,header,unknown,stall=300,size,codec,slow,jump", 20}};

/// The tenths of a second between two times of the same day.
int elapsedTenths(int from, int to)
{
    constexpr int Day = 24 * 60 * 60 * 10;
    return (to - from + Day) % Day;
}

int nowInTenths()
{
    return QTime::fromMSecsSinceStartOfDay(0).msecsTo(QDateTime::currentDateTimeUtc().time()) / 100;
}

/// The picture of a control.
QPixmap pixmapOf(const QWidget &control)
{
    if (const auto *view = qobject_cast<const LiveView *>(&control))
        return view->pixmap();
    const auto *view = qobject_cast<const PictureView *>(&control);
    return view ? view->pixmap() : QPixmap();
}

} // namespace

/// Sixteen cameras of the simulator in one window.
class TestHostileStreams : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void showsTheOthersMeanwhile();
    void isLiveAgainAfterwards();

private:
    void damage(int round);
    /// Watches the pictures of all cameras for so long.
    void watch(int milliseconds);
    /// How many have come since then.
    qsizetype newPictures(int camera) const { return m_seen[camera].size() - 1; }
    void awaitLive(int camera);
    QPixmap pixmap(int camera) const { return pixmapOf(*m_views[camera]); }
    /// What the control says.
    QString state(int camera) const;

    QTemporaryDir m_folder;
    std::vector<std::unique_ptr<RecorderServer>> m_recorders;
    std::unique_ptr<StoreFixture> m_store;
    std::unique_ptr<CWinMain> m_window;
    QList<QWidget *> m_views;
    QList<QSet<qint64>> m_seen; ///< the keys of the pictures of each camera
};

QString TestHostileStreams::state(int camera) const
{
    if (const auto *view = qobject_cast<const LiveView *>(m_views[camera]))
        return view->valueText();
    return qobject_cast<const PictureView *>(m_views[camera])->valueText();
}

void TestHostileStreams::initTestCase()
{
    QByteArray tasks;
    QByteArray cells[2]; // of each page
    for (int camera = 0; camera < Cameras; ++camera) {
        const QByteArray number = QByteArray::number(camera);
        auto server = std::make_unique<RecorderServer>(m_folder.filePath(number));
        VideoSettings settings;
        settings.codec = recorder::VideoCodec(camera % 3);
        if (!recorder::VideoService::canEncode(settings.codec))
            settings.codec = recorder::VideoCodec::Mpeg4;
        const Kind &kind = Kinds[size_t(camera) % Kinds.size()];
        settings.size = kind.size;
        settings.rate = Rate;
        QVERIFY(server->video().setSettings(settings));
        QVERIFY2(server->listen(), qPrintable(server->errorString()));
        tasks += "<timetask type='startVideoOnline' period='500'><url>127.0.0.1:" +
                 QByteArray::number(server->port()) +
                 "</url><login>admin</login><password>admin</password><target>view" + number +
                 "</target><ptz>view" + number + "</ptz></timetask>";
        cells[camera == Hidden ? 1 : 0] += "<item type='" + QByteArray(kind.type) + "' row='" +
                                           QByteArray::number(camera / 4) + "' column='" +
                                           QByteArray::number(camera % 4) +
                                           "' width='160' height='120'><view" + number + "/></item>";
        m_recorders.push_back(std::move(server));
    }
    QByteArray pages;
    for (const QByteArray &page : cells)
        pages += "<tab><name>Cameras</name><item type='gridlayout'>" + page + "</item></tab>";
    const QByteArray text =
        "<pvsetup version='1.0'><window>" + tasks + "</window><tabwidget>" + pages + "</tabwidget></pvsetup>";
    m_store = std::make_unique<StoreFixture>(QMap<QString, QByteArray>{{"interface", text}});
    m_store->store().setProperty("offline", false); // else the window makes no connections
    m_window = std::make_unique<CWinMain>(&m_store->store(), nullptr);
    m_window->resize(900, 700);
    m_window->show();
    for (QWidget *widget : m_window->findChildren<QWidget *>()) {
        if (qobject_cast<LiveView *>(widget) || qobject_cast<PictureView *>(widget))
            m_views << widget;
    }
    QCOMPARE(m_views.size(), Cameras);
    std::stable_partition(m_views.begin(), m_views.end(),
                          [](const QWidget *view) { return view->isVisible(); });
    QVERIFY(m_views[Hidden - 1]->isVisible() && !m_views[Hidden]->isVisible());
    m_seen.resize(Cameras);
    for (int camera = 0; camera < Cameras; ++camera)
        AWAIT_VERIFY_WITHIN(!pixmap(camera).isNull(), Patience);
}

void TestHostileStreams::damage(int round)
{
    for (int camera = 0; camera < Cameras; ++camera) {
        const Damage &damage = Damages[size_t(camera + round) % Damages.size()];
        QString reason;
        auto faults = recorder::readVideoFaults(damage.faults, reason);
        QVERIFY2(faults, qPrintable(reason));
        faults->every = damage.every;
        faults->seed = quint32(100 * round + camera);
        if (isSoak() && faults->stall == 1500)
            faults->stall = 15'000; // the connection counts as silent
        m_recorders[size_t(camera)]->video().setFaults(*faults);
    }
}

void TestHostileStreams::watch(int milliseconds)
{
    for (QSet<qint64> &seen : m_seen)
        seen.clear();
    waitUntil(
        [&] {
            for (int camera = 0; camera < Cameras; ++camera)
                m_seen[camera] << pixmap(camera).cacheKey();
            return false;
        },
        milliseconds);
}

void TestHostileStreams::showsTheOthersMeanwhile()
{
    const int rounds = isSoak() ? 12 : 1; // a function of a test may take five minutes
    for (int round = 0; round < rounds; ++round) {
        damage(round);
        watch(isSoak() ? 20'000 : 4'000);
        for (int camera = 0; camera < Cameras; ++camera) {
            const QByteArray where = "camera " + QByteArray::number(camera) + " in round " +
                                     QByteArray::number(round) + ": " + state(camera).toUtf8();
            QVERIFY2(camera == Hidden || newPictures(camera) >= LeastPictures,
                     where + ", pictures: " + QByteArray::number(newPictures(camera)));
            QVERIFY2(!state(camera).contains("login"), where); // nobody was refused
        }
        qsizetype sum = 0;
        for (int camera = 0; camera < Hidden; ++camera)
            sum += newPictures(camera);
        QVERIFY2(sum >= Hidden * UsualPictures, QByteArray::number(sum));
        for (const VideoHVX3Reciver *receiver : m_window->findChildren<VideoHVX3Reciver *>()) {
            const qsizetype waiting = receiver->findChild<cFfmpegDecoder *>()->waitingBytes();
            QVERIFY2(waiting < MaxWaitingBytes, QByteArray::number(waiting));
        }
    }
}

void TestHostileStreams::awaitLive(int camera)
{
    constexpr int Late = 15; // tenths of a second; the thinning leaves out half a second
    const auto age = [&] {
        const auto shown = shownTenths(pixmap(camera).toImage());
        return shown ? elapsedTenths(*shown, nowInTenths()) : -1;
    };
    // Other controls say where the camera looks, for example. On a busy computer sixteen cameras may be too
    // many: then it says so, of a picture that is live.
    const auto tellsNoFault = [&] {
        return !qobject_cast<LiveView *>(m_views[camera]) || state(camera).isEmpty() ||
               state(camera) == "Pictures are left out: this computer is too slow";
    };
    const auto isLive = [&] { return age() >= 0 && age() <= Late && tellsNoFault(); };
    QVERIFY2(waitUntil(isLive, Patience), "camera " + QByteArray::number(camera) + ": " +
                                              QByteArray::number(age()) + " tenths, " +
                                              state(camera).toUtf8());
}

void TestHostileStreams::isLiveAgainAfterwards()
{
    for (const auto &server : m_recorders)
        server->video().setFaults({});
    for (int camera = 0; camera < Hidden && !QTest::currentTestFailed(); ++camera)
        awaitLive(camera);
    watch(2'000);
    for (int camera = 0; camera < Hidden; ++camera)
        QVERIFY2(newPictures(camera) >= UsualPictures, QByteArray::number(camera));
    m_window->findChild<QTabWidget *>()->setCurrentIndex(1);
    awaitLive(Hidden);
    m_window->endSession();
}

QTEST_MAIN(TestHostileStreams)
#include "tst_hostile_streams.moc"
