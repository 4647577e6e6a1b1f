#include "ModalWatcher.h"
#include "PictureClock.h"
#include "SetupRun.h"
#include "controls/LiveView.h"
#include "controls/PtzVideoInput.h"
#include "recorder/RecorderServer.h"
#include "recorder/clients/HttpAccess.h"
#include "recorder/video/VideoService.h"
#include "support/Waiting.h"
#include "video/VideoHVX3Reciver.h"
#include "video/VideoLimits.h"
#include "video/cFfmpegDecoder.h"

#include <QElapsedTimer>
#include <QFile>
#include <QPushButton>
#include <QSet>
#include <QTemporaryDir>

#include <algorithm>

using namespace paravue;
using namespace paravue::test;
using recorder::HttpAccess;
using recorder::VideoCodec;

namespace
{

const char Description[] = R"(
<pvsetup version="1.0">
  <window>
    <self/>
    <timetask type="startVideoOnline" period="500">
      <url>{general/network/url}</url><target>yard</target>
    </timetask>
    <timetask type="startVideoOnline" period="500">
      <url>{general/network/url}</url><login>guest</login><password/><target>gate</target>
    </timetask>
  </window>
  <tabwidget>
    <tab>
      <name>Cameras</name>
      <item type="gridlayout">
        <item type="online" row="0" column="0" width="326" height="186"><yard/></item>
        <item type="PTZvideoin" row="0" column="1"><gate/></item>
        <item type="pushbutton" row="1" column="0">
          <text>More</text><action type="call" slot="showDialog" param="more">self</action>
        </item>
      </item>
    </tab>
  </tabwidget>
  <moreDialog>
    <more/>
    <timetask type="startVideoOnline" period="500">
      <url>{general/network/url}</url><login>operator</login><password>operator</password><target>car</target>
    </timetask>
    <item type="gridlayout"><item type="online" row="0" column="0"><car/></item></item>
  </moreDialog>
</pvsetup>
)";

/// The clock in the picture that a control shows; -1 when it shows none.
int clockIn(LiveView &view)
{
    return shownTenths(view.grab(view.contentsRect()).toImage()).value_or(-1);
}

int clockIn(PtzVideoInput &view)
{
    return shownTenths(view.grab(view.pictureRect()).toImage()).value_or(-1);
}

const char StillDescription[] = R"(
<pvsetup version="1.0">
  <window>
    <timetask type="v3getjpeg" period="500">
      <url>http://{general/network/url}/snapshot.jpg</url><target>yard</target>
    </timetask>
    <timetask type="v3getjpeg" period="500">
      <url>{general/network/url}/snapshot.jpg</url><login>guest</login><password/><target>gate</target>
    </timetask>
  </window>
  <tabwidget>
    <tab>
      <name>Cameras</name>
      <item type="gridlayout">
        <item type="online" row="0" column="0" width="326" height="186"><yard/></item>
        <item type="PTZvideoin" row="0" column="1"><gate/></item>
      </item>
    </tab>
  </tabwidget>
</pvsetup>
)";

/// A page of pictures in four columns, each of them from a task of its own.
QByteArray descriptionOf(int views, const QByteArray &task, const QByteArray &path = {})
{
    QByteArray tasks;
    QByteArray cells;
    for (int i = 0; i < views; ++i) {
        const QByteArray view = "view" + QByteArray::number(i);
        tasks += "<timetask type='" + task + "' period='500'><url>{general/network/url}" + path +
                 "</url><target>" + view + "</target></timetask>";
        cells += "<item type='online' width='160' height='90' row='" + QByteArray::number(i / 4) +
                 "' column='" + QByteArray::number(i % 4) + "'><" + view + "/></item>";
    }
    return "<pvsetup version='1.0'><window>" + tasks +
           "</window><tabwidget><tab><name>Cameras</name><item type='gridlayout'>" + cells +
           "</item></tab></tabwidget></pvsetup>";
}

/// Counts the pictures that each of some views shows, as often as they are looked at.
class ShownPictures
{
public:
    explicit ShownPictures(const QList<LiveView *> &views)
        : m_views(views), m_shown(views.size()), m_mostAtLast(views.size())
    {
    }

    void look()
    {
        for (qsizetype i = 0; i < m_views.size(); ++i) {
            const qsizetype before = m_shown[i].size();
            m_shown[i] << m_views[i]->pixmap(Qt::ReturnByValue).cacheKey();
            if (m_shown[i].size() > before)
                m_mostAtLast[i] = most();
            m_longestGap = std::max(m_longestGap, most() - m_mostAtLast[i]);
        }
    }
    /// How many pictures a view has shown at most while another one showed the same all the time.
    qsizetype longestGap() const { return m_longestGap; }
    qsizetype most() const { return std::max_element(m_shown.begin(), m_shown.end(), isFewer)->size(); }
    qsizetype fewest() const { return std::min_element(m_shown.begin(), m_shown.end(), isFewer)->size(); }

private:
    static bool isFewer(const QSet<qint64> &left, const QSet<qint64> &right)
    {
        return left.size() < right.size();
    }

    const QList<LiveView *> m_views;
    QList<QSet<qint64>> m_shown;   ///< the keys of the pictures
    QList<qsizetype> m_mostAtLast; ///< most() when the view showed a new picture
    qsizetype m_longestGap = 0;
};

/// A window on a recorder that serves the description. Time passes for its tasks when the test says so.
struct LiveSession {
    explicit LiveSession(recorder::RecorderServer &recorder)
        : session("admin:admin@127.0.0.1:" + QString::number(qint16(recorder.port())))
    {
        session.window->setTaskClock([this] { return now; });
    }

    void pass(int milliseconds)
    {
        now += milliseconds;
        session.window->timeout();
    }

    template <class View>
    View &view() const
    {
        return *session.window->findChild<View *>();
    }
    QList<LiveView *> views() const { return session.window->findChildren<LiveView *>(); }

    Session session;
    quint32 now = 0;
};

/// Waits for pictures as long as a slow computer needs, and goes on when they come. Most conditions also make
/// the time of the tasks pass, which must not fly: this one sleeps between two looks.
template <class Condition>
bool comesTrue(Condition condition)
{
    return QTest::qWaitFor(condition, 20'000);
}

template <class View>
bool goesForward(View &view, int after = 0)
{
    return comesTrue([&] { return clockIn(view) > after; }) &&
           comesTrue([&, first = clockIn(view)] { return clockIn(view) > first; });
}

} // namespace

class TestLiveVideo : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void init();
    void showsTheRunningClock_data();
    void showsTheRunningClock();
    void followsAnotherSize();
    void keepsOneConnectionForEachTask();
    void saysWhatIsWrong();
    void showsEachOfEqualCameras();
    void staysLiveWithTooManyCameras();
    void fetchesStillsAgainAndAgain_data();
    void fetchesStillsAgainAndAgain();
    void asksForOneStillAtATime();
    void logsInRarelyWhenRefused_data();
    void logsInRarelyWhenRefused();

private:
    void describe(const QByteArray &description);

    QTemporaryDir m_folder;
    std::unique_ptr<recorder::RecorderServer> m_recorder;
    QElapsedTimer m_elapsed;
};

void TestLiveVideo::initTestCase()
{
    m_recorder = std::make_unique<recorder::RecorderServer>(m_folder.path()); // fills the folder
    QVERIFY2(m_recorder->listen(), qPrintable(m_recorder->errorString()));
    // Away from midnight, when the clock of the pictures begins anew.
    m_elapsed.start();
    m_recorder->video().setClock([this] { return qint64(12 * 3600 * 1000) + m_elapsed.elapsed(); });
}

void TestLiveVideo::init()
{
    describe(Description);
    QVERIFY(m_recorder->video().setSettings({VideoCodec::MotionJpeg, {320, 180}, 25}));
}

void TestLiveVideo::describe(const QByteArray &description)
{
    QFile file(m_recorder->filePath("interface"));
    QVERIFY(file.open(QIODevice::WriteOnly | QIODevice::Truncate));
    file.write(description);
}

void TestLiveVideo::showsTheRunningClock_data()
{
    QTest::addColumn<VideoCodec>("codec");
    QTest::newRow("h264") << VideoCodec::H264;
    QTest::newRow("mpeg4") << VideoCodec::Mpeg4;
    QTest::newRow("mjpeg") << VideoCodec::MotionJpeg;
}

void TestLiveVideo::showsTheRunningClock()
{
    QFETCH(VideoCodec, codec);
    if (!recorder::VideoService::canEncode(codec))
        QSKIP("This FFmpeg has no encoder for it.");
    QVERIFY(m_recorder->video().setSettings({codec, {320, 180}, 25}));
    LiveSession live(*m_recorder);
    QVERIFY(live.session.isFine());
    auto &yard = live.view<LiveView>();
    auto &gate = live.view<PtzVideoInput>();
    QCOMPARE(yard.valueText(), "No picture yet"); // a task first runs when its period is over
    live.pass(500);
    QCOMPARE(yard.valueText(), "No picture yet");
    live.pass(1);
    QCOMPARE(yard.valueText(), "Connecting…");
    QVERIFY(goesForward(yard));
    QVERIFY(goesForward(gate));

    // The recorder is gone for a while.
    const quint16 port = m_recorder->port();
    const int last = clockIn(yard);
    m_recorder->close();
    QVERIFY(comesTrue([&] {
        live.pass(1);
        return yard.valueText() == "Connection lost";
    }));
    QVERIFY(gate.valueText().startsWith("Connection lost; "));
    QCOMPARE(clockIn(yard), -1); // dimmed, so it does not pass for a live picture
    QVERIFY(m_recorder->listen(port));
    live.pass(501);
    QVERIFY(goesForward(yard, last));
    QVERIFY(goesForward(gate, last));
    live.pass(1);
    QCOMPARE(yard.valueText(), QString());
}

void TestLiveVideo::followsAnotherSize()
{
    LiveSession live(*m_recorder);
    auto &gate = live.view<PtzVideoInput>();
    live.pass(501);
    QVERIFY(goesForward(gate));
    QCOMPARE(gate.pixmap().size(), QSize(320, 180));
    QVERIFY(m_recorder->video().setSettings({VideoCodec::MotionJpeg, {400, 304}, 25}));
    QVERIFY(comesTrue([&] { return gate.pixmap().size() == QSize(400, 304); }));
    QVERIFY(goesForward(gate));
}

void TestLiveVideo::keepsOneConnectionForEachTask()
{
    LiveSession live(*m_recorder);
    const auto users = [&] {
        QStringList names = m_recorder->loggedInUsers();
        names.sort();
        return names.join(' ');
    };
    int connections = 0;
    connect(m_recorder.get(), &recorder::RecorderServer::logged, &live.session.store,
            [&](const QString &line) { connections += line.endsWith(" connected"); });
    const auto passes = [&] {
        for (int period = 0; period < 20; ++period) {
            live.pass(501);
            QCoreApplication::processEvents();
        }
    };
    live.pass(501);
    QVERIFY(comesTrue([&] { return users() == "admin guest"; }));
    passes();
    QVERIFY(goesForward(live.view<LiveView>()));
    QCOMPARE(users(), "admin guest");

    const ModalWatcher dialogs(
        [&](QWidget &dialog) {
            passes();
            QVERIFY(comesTrue([&] { return users() == "admin guest operator"; }));
            QVERIFY(goesForward(*dialog.findChild<LiveView *>()));
            passes();
        },
        "QDialog");
    QTest::mouseClick(buttonWithText<QPushButton>(*live.session.window, "More"), Qt::LeftButton);
    QCOMPARE(dialogs.count(), 1);
    QVERIFY(comesTrue([&] { return users() == "admin guest"; }));
    passes();
    QVERIFY(goesForward(live.view<LiveView>()));
    QCOMPARE(m_recorder->clientCount(), 2);
    QCOMPARE(connections, 3);
}

void TestLiveVideo::saysWhatIsWrong()
{
    LiveSession live(*m_recorder);
    auto &yard = live.view<LiveView>();
    const auto says = [&](const QString &text) {
        return comesTrue([&] {
            live.pass(1);
            return yard.valueText() == text;
        });
    };
    live.session.store.setValue("general/network/password/wrong");
    live.pass(501);
    QVERIFY(says("No picture: login refused? (next attempt within 10 s)"));
    live.session.store.setValue("general/network/password/admin");
    live.pass(501); // with the login of now
    QVERIFY(says(""));
    QVERIFY(goesForward(yard));

    // Nothing comes for a while, over a connection that stands.
    recorder::VideoFaults stall;
    stall.kinds = recorder::VideoFaults::Stall;
    stall.every = 1;
    stall.stall = 2000; // milliseconds
    m_recorder->video().setFaults(stall);
    QVERIFY(comesTrue([&] {
        live.pass(200);
        return yard.valueText().startsWith("No picture for ");
    }));
    QCOMPARE(clockIn(yard), -1);
    m_recorder->video().setFaults({});

    const quint16 port = m_recorder->port();
    m_recorder->close();
    QVERIFY(says("Connection lost"));
    live.pass(501);
    QVERIFY(says("No connection"));
    QVERIFY(m_recorder->listen(port));
    live.pass(501);
    QVERIFY(goesForward(yard));
}

/// All pictures come at the same times and in the same order, so that the count of all of them shows those of
/// the same four cameras again and again.
void TestLiveVideo::showsEachOfEqualCameras()
{
    describe(descriptionOf(8, "startVideoOnline"));
    LiveSession live(*m_recorder);
    const QList<LiveView *> views = live.views();
    QCOMPARE(views.size(), 8);
    live.pass(501);
    for (const LiveView *view : views)
        QVERIFY(comesTrue([&] { return view->hasPicture(); }));
    ShownPictures shown(views);
    QVERIFY(waitUntil(
        [&] {
            shown.look();
            return shown.most() >= 60;
        },
        20'000));
    // 40 % of the pictures, and none for 0.6 s at most. Both are counted by the pictures of the other
    // cameras, as a busy computer lets all of them wait.
    constexpr qsizetype FewestShown = 24;
    constexpr qsizetype LongestGap = 15;
    QVERIFY2(shown.fewest() >= FewestShown, QByteArray::number(shown.fewest()));
    QVERIFY2(shown.longestGap() <= LongestGap, QByteArray::number(shown.longestGap()));
}

void TestLiveVideo::staysLiveWithTooManyCameras()
{
    // The computer that decodes each picture sixteen times encodes it, too. Whatever it can encode is more
    // than it can decode.
    QVERIFY(m_recorder->video().setSettings({VideoCodec::MotionJpeg, {1920, 1080}, 100, 60'000}));
    describe(descriptionOf(16, "startVideoOnline"));
    LiveSession live(*m_recorder);
    const QList<LiveView *> views = live.views();
    QCOMPARE(views.size(), 16);
    live.pass(501);
    qsizetype mostWaiting = 0;
    const auto lookAtMemory = [&] {
        for (const auto *receiver : live.session.window->findChildren<VideoHVX3Reciver *>())
            mostWaiting = std::max(mostWaiting, receiver->findChild<cFfmpegDecoder *>()->waitingBytes());
    };
    QVERIFY(waitUntil(
        [&] {
            lookAtMemory();
            live.pass(1);
            return std::all_of(views.begin(), views.end(), [](const LiveView *view) {
                return view->valueText() == "Pictures are left out: this computer is too slow";
            });
        },
        60'000));
    ShownPictures shown(views);
    QVERIFY(waitUntil(
        [&] {
            lookAtMemory();
            shown.look();
            return shown.fewest() >= 5;
        },
        60'000));
    QVERIFY2(mostWaiting < MaxWaitingBytes, QByteArray::number(mostWaiting));

    QVERIFY(m_recorder->video().setSettings({VideoCodec::MotionJpeg, {320, 180}, 5}));
    for (LiveView *view : views) {
        QVERIFY(comesTrue([&] {
            live.pass(50);
            return view->valueText().isEmpty();
        }));
    }
}

void TestLiveVideo::fetchesStillsAgainAndAgain_data()
{
    QTest::addColumn<unsigned>("logins");
    QTest::newRow("Basic") << unsigned(HttpAccess::Basic);
    QTest::newRow("Digest") << unsigned(HttpAccess::Digest);
    QTest::newRow("either") << unsigned(HttpAccess::Basic | HttpAccess::Digest);
}

void TestLiveVideo::fetchesStillsAgainAndAgain()
{
    QFETCH(unsigned, logins);
    describe(StillDescription);
    m_recorder->setSnapshotLogins(logins);
    LiveSession live(*m_recorder);
    QVERIFY(live.session.isFine());
    auto &yard = live.view<LiveView>();
    auto &gate = live.view<PtzVideoInput>();
    live.pass(501);
    QCOMPARE(yard.valueText(), "Connecting…");
    int last = 0;
    for (int picture = 0; picture < 3; ++picture) {
        QVERIFY(comesTrue([&] {
            live.pass(501);
            return clockIn(yard) > last && clockIn(gate) > last;
        }));
        last = clockIn(yard);
    }
    live.pass(501);
    QCOMPARE(yard.valueText(), QString()); // the last one stays the present one until the next has come

    live.session.store.setValue("general/network/password/wrong");
    QVERIFY(comesTrue([&] {
        live.pass(501);
        return yard.valueText().startsWith("Login refused (next attempt within ");
    }));
    QCOMPARE(clockIn(yard), -1);
    // It has a login of its own, and goes on when an answer has taken longer than its patience.
    QVERIFY(comesTrue([&] {
        live.pass(501);
        return gate.valueText() == "320 × 180 pixels";
    }));
    const quint16 port = m_recorder->port();
    m_recorder->close();
    QVERIFY(comesTrue([&] {
        live.pass(501);
        return gate.valueText() == "No connection; 320 × 180 pixels";
    }));
    QVERIFY(m_recorder->listen(port));
    live.session.store.setValue("general/network/password/admin");
    QVERIFY(comesTrue([&] {
        live.pass(501);
        return clockIn(yard) > last && clockIn(gate) > last;
    }));
}

void TestLiveVideo::asksForOneStillAtATime()
{
    describe(StillDescription);
    LiveSession live(*m_recorder);
    QVERIFY(comesTrue([&] { return m_recorder->clientCount() == 0; }));
    m_recorder->setReplyDelay(200);
    int most = 0;
    int answers = 0;
    connect(m_recorder.get(), &recorder::RecorderServer::logged, &live.session.store,
            [&](const QString &line) {
                most = std::max(most, m_recorder->clientCount());
                answers += line.contains("> 200");
            });
    QVERIFY(comesTrue([&] {
        live.pass(501);
        return answers >= 6;
    }));
    m_recorder->setReplyDelay(0);
    QCOMPARE(most, 2); // of two tasks
}

void TestLiveVideo::logsInRarelyWhenRefused_data()
{
    QTest::addColumn<QByteArray>("task");
    QTest::addColumn<QString>("login"); // what the line of the recorder's log contains
    QTest::newRow("live") << QByteArray("startVideoOnline") << "LOGIN=admin";
    QTest::newRow("still") << QByteArray("v3getjpeg") << "> 401";
}

void TestLiveVideo::logsInRarelyWhenRefused()
{
    QFETCH(QByteArray, task);
    QFETCH(QString, login);
    describe(descriptionOf(4, task, task == "v3getjpeg" ? "/snapshot.jpg" : ""));
    m_recorder->setSnapshotLogins(HttpAccess::Digest);
    LiveSession live(*m_recorder);
    const QList<LiveView *> views = live.views();
    QCOMPARE(views.size(), 4);
    live.session.store.setValue("general/network/password/wrong");
    int logins = 0;
    connect(m_recorder.get(), &recorder::RecorderServer::logged, &live.session.store,
            [&](const QString &line) { logins += line.contains(login); });
    const auto isRefused = [](const LiveView *view) {
        return view->valueText().contains("efused") && view->valueText().contains("(next attempt within ");
    };
    // What a tick begins has come to its end at the next one.
    const auto pass = [&](int milliseconds) {
        for (int tick = 0; tick < milliseconds; tick += 500) {
            live.pass(500);
            AWAIT_VERIFY((live.pass(1), std::all_of(views.begin(), views.end(), isRefused)));
        }
    };
    // Over HTTP the recorder refuses each request a first time, to ask for the login.
    const int perAttempt = task == "v3getjpeg" ? 2 : 1;
    pass(17'000);
    QVERIFY2(logins >= 4 * perAttempt && logins <= 6 * perAttempt, QByteArray::number(logins));

    const int before = logins;
    QTest::mouseClick(views.last(), Qt::LeftButton);
    pass(1000);
    QCOMPARE(logins, before + perAttempt);

    live.session.store.setValue("general/network/password/admin");
    for (LiveView *view : views) {
        QVERIFY(comesTrue([&] {
            live.pass(501);
            return clockIn(*view) > 0;
        }));
    }
}

QTEST_MAIN(TestLiveVideo)
#include "tst_live_video.moc"
