#include "DescribedWindow.h"
#include "controls/LiveView.h"
#include "controls/MaskEditor.h"
#include "controls/PtzCrossView.h"
#include "controls/PtzVideoInput.h"
#include "support/Waiting.h"
#include "ui/types/ControlTypes.h"
#include "ui/window/WindowParts.h"

#include <QLabel>
#include <QLoggingCategory>
#include <QPushButton>
#include <QSignalSpy>
#include <QTcpServer>

using namespace paravue;
using namespace paravue::test;

namespace
{

/// A description whose window has these tasks and whose page shows the label "line".
QByteArray describeTasks(const QByteArray &tasks, const QByteArray &cells = {}, const QByteArray &rest = {})
{
    return describe("<window><self/>" + tasks + "</window><tabwidget><tab><item type='gridlayout'>" +
                    "<item type='label'><line/></item>" + cells + "</item></tab></tabwidget>" + rest);
}

QByteArray marker(const QByteArray &period, const QByteArray &mark = "x")
{
    return "<timetask type='call' param='" + mark + "'" + period + ">line</timetask>";
}

/// A window whose tasks live in a time that the test lets pass.
struct Ticking : DescribedWindow {
    explicit Ticking(const QByteArray &description,
                     quint32 start = 0xFFFFFF00) // before the numbers wrap around
        : DescribedWindow(description, {{"net", ""}}), now(start)
    {
        window->setTaskClock([this] { return now; });
    }

    /// What the tasks have written on the label at one tick.
    QString tickAfter(quint32 milliseconds)
    {
        now += milliseconds;
        auto *line = widget<QLabel>();
        line->clear();
        window->timeout();
        return line->text();
    }

    quint32 now;
};

class FakeSource : public PictureSource
{
public:
    bool isActive() const override { return active; }
    bool hasConnected() const override { return connected; }
    quint64 traffic() const override { return bytes; }
    bool isRefused() const override { return PictureSource::isRefused() || reason == "Login refused"; }
    QString problem() const override { return reason; }
    quint64 leftOut() const override { return lost; }
    bool isPaused() const override { return paused; }
    QString cameraPosition() const override { return connected ? "0.5,0.5" : ""; }

    bool active = true;
    bool connected = false;
    quint64 bytes = 0;
    quint64 lost = 0;
    bool paused = false;
    QString reason;
};

/// What happens, and what the controls say at the next tick.
struct Moment {
    const char *event;
    QString said;
    bool isCameraKnown = false;
};
using Story = QList<Moment>;

/// Gives \a parts a description; returns what is wrong with it.
QString describeParts(WindowParts &parts, const QByteArray &text)
{
    InterfaceDocument document;
    const QString fault = document.load(text, QStringLiteral("description"));
    parts.description.replace(document);
    return fault;
}

/// Tasks whose sources the test plays, in a window without a recorder, in a time that the test lets pass.
struct PlayedTasks {
    explicit PlayedTasks(const QByteArray &tasks, const QByteArray &cells)
        : fixture({{"net", "HOST=camera\n"}, {"general", ""}}),
          parts(fixture.store(), window, adapterOfType, WindowServices{})
    {
        fixture.store().setValue("general/network/login/guest");
        fixture.store().setValue("general/network/password/wrong");
        problem =
            describeParts(parts, describe("<window>" + tasks + "</window><page><item type='gridlayout'>" +
                                          cells + "</item></page>"));
        parts.builder.buildPage(parts.description.document().first("page"), &window);
        parts.tasks.setSourceFactory([this](PictureKind, const QDomElement &) {
            auto made = std::make_unique<FakeSource>();
            sources << made.get();
            return made;
        });
        parts.tasks.setClock([this] { return now; });
        parts.tasks.add(parts.description.document().first("window"));
    }
    ~PlayedTasks()
    {
        parts.tasks.clear();
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    }

    void tick(int milliseconds)
    {
        now += milliseconds;
        parts.tasks.tick();
    }
    /// The recorder refuses the last source: a live one by ending the connection.
    void refuse(const QByteArray &type)
    {
        FakeSource &last = *sources.last();
        if (type == "startVideoOnline")
            last.connected = true;
        else
            last.reason = "Login refused";
        last.active = false;
        tick(1);
    }
    /// The time until another source is made, in ticks of half a second.
    int untilNext()
    {
        const qsizetype before = sources.size();
        int waited = 0;
        while (sources.size() == before && waited < 200'000) {
            tick(500);
            waited += 500;
        }
        return waited;
    }
    QString said() const { return window.findChild<LiveView *>()->valueText(); }

    StoreFixture fixture;
    QWidget window;
    WindowParts parts;
    QList<QPointer<FakeSource>> sources;
    QString problem;
    quint32 now = 0xFFFFFF00; // before the numbers wrap around
};

QByteArray pictureTask(const QByteArray &type, const QByteArray &rest = {})
{
    return "<timetask type='" + type + "'><url>camera:5049</url><target>view</target>" + rest + "</timetask>";
}

} // namespace

Q_DECLARE_METATYPE(Story)

class TestTimeTasks : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void runsWhenItsPeriodIsOver_data();
    void runsWhenItsPeriodIsOver();
    void startsWithTheWindow();
    void belongsToItsDialog();
    void mayWaitForTheUser();
    void opensDialogsUpToALimit();
    void showsAnErrorOnce();
    void fetchesPictures();
    void logsConnectionsOfLiveVideo();
    void saysWhyThereIsNoPicture_data();
    void saysWhyThereIsNoPicture();
    void waitsLongerAfterEachRefusal_data();
    void waitsLongerAfterEachRefusal();
    void endsTheWaitWhenAsked();
    void makesOneAttemptPerAccount();
    void connectsToNobodyInAPreview();
};

void TestTimeTasks::runsWhenItsPeriodIsOver_data()
{
    QTest::addColumn<QByteArray>("period");
    QTest::addColumn<QString>("runs"); // at each tick of 500 ms
    QTest::newRow("a second") << QByteArray(" period='1000'") << "..x..x..x";
    QTest::newRow("a little less") << QByteArray(" period='999'") << ".x.x.x.x.";
    QTest::newRow("none") << QByteArray() << "xxxxxxxxx";
    QTest::newRow("no number") << QByteArray(" period='often'") << "xxxxxxxxx";
    QTest::newRow("negative") << QByteArray(" period='-1'") << ".........";
    QTest::newRow("weeks") << QByteArray(" period='3000000000'") << ".........";
}

void TestTimeTasks::runsWhenItsPeriodIsOver()
{
    QFETCH(QByteArray, period);
    QFETCH(QString, runs);
    Ticking window(describeTasks(marker(period)));
    QString seen;
    for (qsizetype tick = 0; tick < runs.size(); ++tick)
        seen += window.tickAfter(500).isEmpty() ? '.' : 'x';
    QCOMPARE(seen, runs);
}

void TestTimeTasks::startsWithTheWindow()
{
    DescribedWindow window(describeTasks(marker({}, "old")), {{"net", ""}});
    AWAIT_COMPARE(window.widget<QLabel>()->text(), "old");
    window.fixture.setFile("interface", describeTasks(marker({}, "new")));
    window.fixture.store().load();
    window.settle();
    AWAIT_COMPARE(window.widget<QLabel>()->text(), "new");
}

void TestTimeTasks::belongsToItsDialog()
{
    Ticking window(describeTasks({},
                                 "<item type='pushbutton'><action type='call' slot='showDialog' "
                                 "param='box'>self</action></item>",
                                 "<d><box/>" + marker(" period='700'") + "</d>"));
    QStringList seen;
    const ModalWatcher dialogs(
        [&](QWidget &) { seen << window.tickAfter(500) << window.tickAfter(500) << window.tickAfter(500); },
        "QDialog");
    for (int round = 0; round < 2; ++round) {
        QTest::mouseClick(window.widget<QPushButton>(), Qt::LeftButton);
        seen << window.tickAfter(5000);
    }
    const QStringList once{"", "x", "", ""};
    QCOMPARE(seen, once + once);
}

void TestTimeTasks::mayWaitForTheUser()
{
    // The first task opens a dialog, in which the others go on; when it closes nothing is made up for.
    Ticking window(
        describeTasks("<timetask type='call' slot='showDialog' param='box' period='999'>self</timetask>" +
                          marker(" period='999'"),
                      {}, "<d><box/></d>"));
    QStringList seen;
    const ModalWatcher dialogs(
        [&](QWidget &) {
            seen << window.tickAfter(100) << window.tickAfter(1000);
            window.widget<QLabel>()->setText("kept");
        },
        "QDialog");
    seen << window.tickAfter(1000);
    QCOMPARE(seen, (QStringList{"x", "x", "kept"}));
    QCOMPARE(dialogs.count(), 1);
}

void TestTimeTasks::opensDialogsUpToALimit()
{
    // Each dialog has a task that opens the next one, in an event loop inside its own.
    const auto opener = [](int next) {
        return "<timetask type='call' slot='showDialog' param='d" + QByteArray::number(next) +
               "'>self</timetask>";
    };
    QByteArray dialogs;
    for (int i = 0; i < 30; ++i)
        dialogs += "<x><d" + QByteArray::number(i) + "/>" + opener(i + 1) + "</x>";
    Ticking window(describeTasks(opener(0), {}, dialogs));
    int ticks = 0;
    int open = 0;
    const std::function<void()> tick = [&] {
        if (++ticks == 30) {
            open = int(window.window->findChildren<QDialog *>().size());
            window.window->close();
            return;
        }
        QTimer::singleShot(0, tick);
        window.tickAfter(500);
    };
    tick();
    QCOMPARE(open, 16);
    QCOMPARE(window.messages.texts(), QStringList("Too many dialogs are open at the same time"));
}

void TestTimeTasks::showsAnErrorOnce()
{
    Ticking window(describeTasks("<timetask type='often'/>"));
    QCOMPARE(window.messages.texts(), QStringList()); // said when it is to run
    QSignalSpy reports(window.window.get(), &CWinMain::pseudothrow);
    for (int tick = 0; tick < 3; ++tick) {
        window.tickAfter(500);
        window.settle();
    }
    QCOMPARE(reports.size(), 3);
    QCOMPARE(window.messages.texts(), QStringList("Unknown time task \"often\""));
}

void TestTimeTasks::fetchesPictures()
{
    StoreFixture fixture({{"net", "HOST=camera\n"}, {"general", ""}});
    fixture.store().setValue("general/network/login/guest");
    fixture.store().setValue("general/network/password/secret");
    QWidget window;
    WindowParts parts(fixture.store(), window, adapterOfType, WindowServices{});
    QCOMPARE(
        describeParts(parts,
                      describe("<window><timetask type='startVideoOnline'><url>{net/untitled/HOST}:1</url>"
                               "<target>view</target></timetask><timetask type='v3getjpeg'><url>still</url>"
                               "<login>@me</login><password/></timetask></window>"
                               "<page><item type='gridlayout'><item type='label'><view/></item></item></page>"
                               "<translations><ru><me>I</me></ru></translations>")),
        QString());
    parts.builder.buildPage(parts.description.document().first("page"), &window);

    QStringList sources; // of the receivers that were made
    QList<QPointer<FakeSource>> receivers;
    parts.tasks.setSourceFactory([&](PictureKind kind, const QDomElement &task) {
        const QDomElement url = task.firstChildElement("url");
        sources << QStringList{kind == PictureKind::Live ? "live" : "still", url.attribute("parsed"),
                               url.attribute("login"), url.attribute("password")}
                       .join(' ');
        auto receiver = std::make_unique<FakeSource>();
        receivers << receiver.get();
        return receiver;
    });
    quint32 now = 0;
    parts.tasks.setClock([&] { return now += 1000; });
    const auto added = parts.tasks.add(parts.description.document().first("window"));
    const QString live = "live camera:1 guest secret";
    const QString still = "still still I ";
    parts.tasks.tick();
    parts.tasks.tick();
    QCOMPARE(sources, (QStringList{live, still}));

    QPixmap picture(3, 2);
    picture.fill(Qt::red);
    Q_EMIT receivers[0]->pixmapReady(picture);
    QCOMPARE(window.findChild<QLabel *>()->pixmap().toImage(), picture.toImage());

    // The next one still goes to the host of before; that of a window that is opened again does not.
    fixture.store().setValue("net/untitled/HOST/other");
    receivers[0]->active = false;
    parts.tasks.tick();
    QCOMPARE(sources, (QStringList{live, still, live}));
    QVERIFY(parts.tasks.add(parts.description.document().first("window")).isEmpty());
    parts.tasks.remove(added);
    QCOMPARE(window.findChild<QLabel *>()->text(), "Pictures have ended");
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    QVERIFY(!receivers[0] && !receivers[1] && !receivers[2]);
    parts.tasks.add(parts.description.document().first("window"));
    parts.tasks.tick();
    QCOMPARE(sources.value(3), "live other:1 guest secret");
    parts.tasks.clear();
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
}

/// Once for each change, however often a recorder that is off is tried.
void TestTimeTasks::logsConnectionsOfLiveVideo()
{
    static QStringList logged;
    logged.clear();
    QLoggingCategory::setFilterRules("paravue.pictures.info=true");
    const QtMessageHandler before = qInstallMessageHandler(
        [](QtMsgType, const QMessageLogContext &, const QString &text) { logged << text; });
    {
        PlayedTasks played(pictureTask("startVideoOnline"), "<item type='online'><view/></item>");
        const auto end = [&played] {
            played.sources.last()->active = false;
            played.tick(1);
        };
        played.tick(1);
        end();
        end();
        played.sources.last()->connected = true;
        played.tick(1);
        Q_EMIT played.sources.last()->pixmapReady(QPixmap(1, 1));
        played.tick(1);
        end();
        played.refuse("startVideoOnline");
    }
    qInstallMessageHandler(before);
    QLoggingCategory::setFilterRules(QString());
    const QString recorder = "camera:5049 ";
    QCOMPARE(logged, QStringList({recorder + "No connection", recorder + "connected",
                                  recorder + "first picture", recorder + "Connection lost",
                                  recorder + "connected", recorder + "No picture: login refused?"}));
}

void TestTimeTasks::saysWhyThereIsNoPicture_data()
{
    QTest::addColumn<QByteArray>("type");
    QTest::addColumn<Story>("story"); // a run at each tick
    const QByteArray live("startVideoOnline");
    const QByteArray still("v3getjpeg");
    QTest::newRow("comes, stops and comes back")
        << live << Story{{"", "Connecting…"},     {"connect", "No picture yet", true},
                         {"picture", "", true},   {"close", "Connection lost"},
                         {"", "Connection lost"}, {"close", "No connection"},
                         {"", "No connection"},   {"connect", "No connection", true},
                         {"picture", "", true},   {"", "", true}};
    QTest::newRow("does not let in")
        << live
        << Story{{"connect", "No picture yet", true},
                 {"close", "No picture: login refused? (next attempt within 10 s)"},
                 {"wait 1", "No picture: login refused?"},
                 {"connect", "No picture: login refused?", true},
                 {"wait 6", "No picture: login refused?"},
                 {"wait 55", "No picture: login refused? (next attempt within 10 s)"}};
    QTest::newRow("falls silent") << live
                                  << Story{{"connect", "No picture yet", true},
                                           {"wait 5", "No picture for 5 s"},
                                           {"picture", "", true},
                                           {"wait 3", "", true},
                                           {"wait 2", "No picture for 5 s"},
                                           {"wait 8", "No picture for 10 s"},
                                           {"picture", "", true},
                                           {"wait 6", "No picture for 6 s"}};
    QTest::newRow("sends no picture")
        << live << Story{{"connect", "No picture yet", true}, {"bytes 4", "No picture yet", true},
                         {"bytes 4", "No picture yet", true}, {"bytes 4", "No picture yet", true},
                         {"bytes 4", "No picture for 15 s"},  {"wait 4", "No picture for 20 s"}};
    QTest::newRow("is switched off") << live << Story{{"connect", "No picture yet", true},
                                                      {"picture", "", true},
                                                      {"wait 58", "No picture for 55 s"},
                                                      {"wait 2", "Connection lost"},
                                                      {"connect", "Connection lost", true},
                                                      {"picture", "", true}};
    QTest::newRow("is switched off and comes back frozen") << live
                                                           << Story{{"connect", "No picture yet", true},
                                                                    {"picture", "", true},
                                                                    {"wait 60", "Connection lost"},
                                                                    {"connect", "Connection lost", true},
                                                                    {"wait 6", "No picture for 1 min"},
                                                                    {"wait 53", "No picture for 1 min"},
                                                                    {"picture", "", true},
                                                                    {"wait 6", "No picture for 6 s"}};
    const QString slow = "Pictures are left out: this computer is too slow";
    QTest::newRow("leaves out pictures") << live
                                         << Story{{"connect", "No picture yet", true},
                                                  {"lose", "No picture yet", true},
                                                  {"picture", slow, true},
                                                  {"picture", slow, true},
                                                  {"wait 5", "No picture for 5 s"},
                                                  {"picture", "", true},
                                                  {"lose", slow, true},
                                                  {"close", "Connection lost"}};
    QTest::newRow("pauses while nobody looks") << live
                                               << Story{{"connect", "No picture yet", true},
                                                        {"picture", "", true},
                                                        {"pause", "", true},
                                                        {"bytes 10", "", true},
                                                        {"bytes 10", "", true},
                                                        {"wait 6", "No picture for 25 s"},
                                                        {"held", "No picture for 6 s"},
                                                        {"pause", "No picture for 6 s"},
                                                        {"bytes 1", "", true}};
    QTest::newRow("still pictures") << still
                                    << Story{
                                           {"", "Connecting…"},
                                           {"fail Login refused", "Login refused (next attempt within 10 s)"},
                                           {"wait 1", "Login refused"},
                                           {"picture close", ""},
                                           {"wait 4", ""},
                                           {"wait 2", "No picture for 6 s"},
                                           {"picture close", ""},
                                           {"fail No connection", "No connection"}};
}

void TestTimeTasks::saysWhyThereIsNoPicture()
{
    QFETCH(QByteArray, type);
    QFETCH(Story, story);
    PlayedTasks played(pictureTask(type, "<ptz>camera</ptz>"),
                       "<item type='online'><view/></item><item type='PTZcrossView'><camera/></item>"
                       "<item type='maskctrl'><view/></item>");
    QCOMPARE(played.problem, QString());
    const auto *online = played.window.findChild<LiveView *>();
    const auto *mask = played.window.findChild<MaskEditor *>();
    const QString cell = mask->valueText().section("; ", 1);
    const auto *cross = played.window.findChild<PtzCrossView *>();
    QCOMPARE(online->valueText(), "No picture yet");
    played.tick(1);
    QPixmap picture(3, 2);
    picture.fill(Qt::red);
    for (const Moment &moment : story) {
        FakeSource *receiver = played.sources.last();
        const QString event = moment.event;
        const int seconds = event.section(' ', 1).toInt();
        if (event == "connect") {
            receiver->connected = true;
            Q_EMIT receiver->cameraMoved(receiver->cameraPosition());
        }
        if (event.startsWith("picture") || event == "held")
            Q_EMIT receiver->pixmapReady(picture);
        if (event.endsWith("close") || event.startsWith("fail"))
            receiver->active = false;
        if (event.startsWith("fail"))
            receiver->reason = event.section(' ', 1);
        receiver->paused = (receiver->paused && event != "held") || event == "pause";
        if (event == "lose")
            ++receiver->lost;
        if (event.startsWith("bytes") || event.startsWith("picture"))
            ++receiver->bytes;
        played.tick(seconds > 0 ? 1000 * seconds : 1);
        const QByteArray where = "after " + event.toUtf8();
        QVERIFY2(online->valueText() == moment.said, where + ": " + online->valueText().toUtf8());
        QVERIFY2(cross->valueText().startsWith("Pan") == moment.isCameraKnown, where);
        QCOMPARE(mask->valueText(), moment.said.isEmpty() ? cell : moment.said + "; " + cell);
    }
}

void TestTimeTasks::waitsLongerAfterEachRefusal_data()
{
    QTest::addColumn<QByteArray>("type");
    QTest::addColumn<QByteArray>("period");
    QTest::addColumn<QList<int>>("waits");
    const QList<int> doubling{1000, 2000, 4000, 8000, 16'000, 32'000, 60'000, 60'000};
    QTest::newRow("live") << QByteArray("startVideoOnline") << QByteArray("0") << doubling;
    QTest::newRow("still") << QByteArray("v3getjpeg") << QByteArray("0") << doubling;
    QTest::newRow("never before its period")
        << QByteArray("startVideoOnline") << QByteArray("10000")
        << QList<int>{10'000, 10'000, 10'000, 10'000, 16'000, 32'000, 60'000, 60'000};
}

void TestTimeTasks::waitsLongerAfterEachRefusal()
{
    QFETCH(QByteArray, type);
    QFETCH(QByteArray, period);
    QFETCH(QList<int>, waits);
    PlayedTasks played(pictureTask(type).replace("'><url", "' period='" + period + "'><url"),
                       "<item type='online'><view/></item>");
    QCOMPARE(played.problem, QString());
    played.tick(period.toInt() + 1);
    for (int round = 0; round < 2; ++round) {
        QList<int> waited;
        for (qsizetype i = 0; i < waits.size(); ++i) {
            played.refuse(type);
            waited << played.untilNext();
        }
        QCOMPARE(waited, waits);
        // A picture ends that. Then the connection is lost, and nobody answers for a while.
        FakeSource *source = played.sources.last();
        source->connected = type == "startVideoOnline";
        Q_EMIT source->pixmapReady(QPixmap(3, 2));
        source->active = false;
        const int usual = period.toInt() + 500;
        QCOMPARE(played.untilNext(), usual);
        for (int attempt = 0; attempt < 3; ++attempt) {
            played.sources.last()->active = false;
            QCOMPARE(played.untilNext(), usual);
        }
    }
}

void TestTimeTasks::endsTheWaitWhenAsked()
{
    PlayedTasks played(pictureTask("startVideoOnline"),
                       "<item type='online'><view/></item><item type='maskctrl' row='1'><view/></item>"
                       "<item type='PTZvideoin' row='2'><view/></item>");
    auto *online = played.window.findChild<LiveView *>();
    auto *mask = played.window.findChild<MaskEditor *>();
    auto *camera = played.window.findChild<PtzVideoInput *>();
    played.tick(1);
    for (int refusal = 0; refusal < 8; ++refusal) {
        played.refuse("startVideoOnline");
        played.untilNext();
    }
    const auto clickAndEnter = [](QWidget &view) {
        QTest::mouseClick(&view, Qt::LeftButton);
        QTest::keyClick(&view, Qt::Key_Return);
    };
    clickAndEnter(*online); // during an attempt nothing is asked
    QStringList said;
    const QList<std::function<void()>> ways{
        [&] { QTest::mouseClick(online, Qt::LeftButton); },
        [&] { QTest::keyClick(online, Qt::Key_Return); },
        [&] { QTest::mouseClick(camera, Qt::LeftButton); },
        [&] { played.parts.tasks.retryPictures(); },
        [&] { played.fixture.store().setValue("general/network/password/other"); },
    };
    for (const auto &way : ways) {
        played.refuse("startVideoOnline");
        said.clear();
        for (int tick = 0; tick < 40; ++tick) {
            played.tick(500);
            if (said.isEmpty() || said.last() != played.said())
                said << played.said();
        }
        QCOMPARE(said, (QStringList{"No picture: login refused? (next attempt within 60 s)"}));
        QVERIFY(!online->toolTip().isEmpty() && online->focusPolicy() == Qt::TabFocus);
        QTest::mouseClick(mask, Qt::LeftButton); // paints
        QTest::mouseClick(online, Qt::RightButton);
        const qsizetype before = played.sources.size();
        played.tick(500);
        QCOMPARE(played.sources.size(), before);
        way();
        played.tick(1);
        QCOMPARE(played.sources.size(), before + 1);
        QCOMPARE(played.said(), "No picture: login refused?");
        QVERIFY(online->toolTip().isEmpty());
    }
    // The other login begins with the shortest wait.
    played.refuse("startVideoOnline");
    QCOMPARE(played.untilNext(), 1000);
}

void TestTimeTasks::makesOneAttemptPerAccount()
{
    const QByteArray live = pictureTask("startVideoOnline");
    const QByteArray still = pictureTask("v3getjpeg");
    PlayedTasks played(live + live + still +
                           pictureTask("startVideoOnline", "<login>other</login><password/>"),
                       "<item type='online'><view/></item>");
    played.tick(1);
    QCOMPARE(played.sources.size(), 2);
    QPointer<FakeSource> other = played.sources.last();
    other->connected = true;
    for (int tick = 0; tick < 5; ++tick)
        played.tick(1);
    QCOMPARE(played.sources.size(), 2);
    played.sources.move(0, 1);
    QList<int> waited;
    for (int refusal = 0; refusal < 5; ++refusal) {
        played.refuse("startVideoOnline");
        waited << played.untilNext();
    }
    QCOMPARE(waited, (QList<int>{1000, 2000, 4000, 8000, 16'000}));
    QCOMPARE(played.sources.size(), 7);

    // With the first picture the others follow. When all are refused later, that counts once.
    Q_EMIT played.sources.last()->pixmapReady(QPixmap(3, 2));
    played.tick(1);
    QCOMPARE(played.sources.size(), 9);
    for (const auto &source : {played.sources[7], played.sources[8]}) {
        source->connected = true;
        source->reason = "Login refused";
        source->active = false;
    }
    QCOMPARE(played.untilNext(), 1500); // seen after 500, and 1000 later
    QCOMPARE(played.sources.size(), 10);
    QVERIFY(other && other->active);
}

void TestTimeTasks::connectsToNobodyInAPreview()
{
    QTcpServer recorder;
    recorder.listen(QHostAddress::LocalHost);
    const QByteArray url = "127.0.0.1:" + QByteArray::number(recorder.serverPort());
    Ticking window(describeTasks("<timetask type='startVideoOnline'><url>" + url +
                                     "</url><target>view</target></timetask>"
                                     "<timetask type='v3getjpeg'><url>" +
                                     url + "</url><target>view</target></timetask>",
                                 "<item type='online' row='1'><view/></item>"));
    QCOMPARE(window.widget<LiveView>()->valueText(), "No video in a preview");
    window.tickAfter(500);
    QVERIFY(!recorder.waitForNewConnection(200));
    QCOMPARE(window.widget<LiveView>()->valueText(), "No video in a preview");
}

QTEST_MAIN(TestTimeTasks)
#include "tst_timetasks.moc"
