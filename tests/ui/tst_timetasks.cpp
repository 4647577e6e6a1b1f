#include "DescribedWindow.h"
#include "controls/LiveView.h"
#include "controls/MaskEditor.h"
#include "controls/PtzCrossView.h"
#include "support/Waiting.h"
#include "ui/types/ControlTypes.h"
#include "ui/window/WindowParts.h"

#include <QLabel>
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
    QString problem() const override { return reason; }
    QString cameraPosition() const override { return connected ? "0.5,0.5" : ""; }

    bool active = true;
    bool connected = false;
    quint64 bytes = 0;
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
    void saysWhyThereIsNoPicture_data();
    void saysWhyThereIsNoPicture();
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
    QTest::newRow("does not let in") << live
                                     << Story{{"connect", "No picture yet", true},
                                              {"close", "No picture: login refused?"},
                                              {"connect", "No picture: login refused?", true},
                                              {"wait 6", "No picture: login refused?"},
                                              {"wait 55", "No picture: login refused?"}};
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
    QTest::newRow("still pictures") << still
                                    << Story{{"", "Connecting…"},   {"fail Login refused", "Login refused"},
                                             {"", "Login refused"}, {"picture close", ""},
                                             {"wait 4", ""},        {"wait 2", "No picture for 6 s"},
                                             {"picture close", ""}, {"fail No connection", "No connection"}};
}

void TestTimeTasks::saysWhyThereIsNoPicture()
{
    QFETCH(QByteArray, type);
    QFETCH(Story, story);
    StoreFixture fixture({{"general", ""}});
    QWidget window;
    WindowParts parts(fixture.store(), window, adapterOfType, WindowServices{});
    QCOMPARE(describeParts(parts,
                           describe("<window><timetask type='" + type +
                                    "'><url>x</url><target>view</target><ptz>camera</ptz></timetask></window>"
                                    "<page><item type='gridlayout'><item type='online'><view/></item>"
                                    "<item type='PTZcrossView'><camera/></item>"
                                    "<item type='maskctrl'><view/></item></item></page>")),
             QString());
    parts.builder.buildPage(parts.description.document().first("page"), &window);
    const auto *online = window.findChild<LiveView *>();
    const auto *mask = window.findChild<MaskEditor *>();
    const QString cell = mask->valueText();
    const auto *cross = window.findChild<PtzCrossView *>();
    QPointer<FakeSource> receiver;
    parts.tasks.setSourceFactory([&](PictureKind, const QDomElement &) {
        auto made = std::make_unique<FakeSource>();
        receiver = made.get();
        return made;
    });
    quint32 now = 0;
    parts.tasks.setClock([&] { return now; });
    parts.tasks.add(parts.description.document().first("window"));
    QCOMPARE(online->valueText(), "No picture yet");
    const auto tick = [&](int milliseconds) {
        now += milliseconds;
        parts.tasks.tick();
    };
    tick(1);
    QPixmap picture(3, 2);
    picture.fill(Qt::red);
    for (const Moment &moment : story) {
        const QString event = moment.event;
        const int seconds = event.section(' ', 1).toInt();
        if (event == "connect") {
            receiver->connected = true;
            Q_EMIT receiver->cameraMoved(receiver->cameraPosition());
        }
        if (event.startsWith("picture"))
            Q_EMIT receiver->pixmapReady(picture);
        if (event.endsWith("close") || event.startsWith("fail"))
            receiver->active = false;
        if (event.startsWith("fail"))
            receiver->reason = event.section(' ', 1);
        if (event.startsWith("bytes") || event.startsWith("picture"))
            ++receiver->bytes;
        tick(seconds > 0 ? 1000 * seconds : 1);
        const QByteArray where = "after " + event.toUtf8();
        QVERIFY2(online->valueText() == moment.said, where + ": " + online->valueText().toUtf8());
        QVERIFY2(cross->valueText().startsWith("Pan") == moment.isCameraKnown, where);
        QCOMPARE(mask->valueText(), moment.said.isEmpty() ? cell : moment.said + "; " + cell);
    }
    parts.tasks.clear();
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
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
