#include "FakeRecorder.h"
#include "NotedStore.h"
#include "support/TestTable.h"
#include "support/Waiting.h"

#include <QElapsedTimer>
#include <QTemporaryFile>
#include <QTimer>

using namespace paravue::test;

namespace
{

const QByteArray Login = "\x04LOGIN=guest\r\nPASS=secret\r\n";
const QByteArray Adjustment = "ADJUST VIDEO\r\nLENGTH=69\r\n[ stream_0 ]\nbrightness=1\ncontrast=2\n"
                              "saturation=%1\nhue=4\nsharpness=5\n";

constexpr std::chrono::milliseconds Pause(200);

/// A store with the files that functions take values from, as if it had been loaded.
class LoadedStore : public NotedStore
{
public:
    /// Waits for \a pause instead of the usual second before the picture is adjusted.
    void shortenAdjustmentPause(std::chrono::milliseconds pause)
    {
        QCOMPARE(m_bcshTimer->interval(), 1000);
        m_bcshTimer->setInterval(pause);
    }

    explicit LoadedStore(const FakeRecorder &recorder) : NotedStore(recorder.address())
    {
        _push_file("general", "");
        _push_file("streams", "[ stream_0 ]\r\nbrightness=1\r\ncontrast=2\r\nsaturation='%1'\r\nhue=4\r\n"
                              "sharpness=5\r\n");
        _push_file("time", "[ untitled ]\r\nYYYYMMDDHHMMSS=20240501120000\r\nTIME_ZONE='UTC-5'\r\n"
                           "TIME_SERVER='%2.example'\r\n");
    }
};

} // namespace

class TestFunctions : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void sendsItsRequest_data();
    void sendsItsRequest();
    void setsTheClockToTheTimeOfItsZone();
    void installsThePackageAtTheGivenAddress();
    void reportsAPackageThatCannotBeRead();
    void answersOtherNamesWithProgress();
    void savesSettings();
    void adjustsOnceAfterTheLastCall();
    void adjustsWhenTheLinkIsIdle();
    void disturbsARunningExchange();
    void forgetsACommandWhoseLoginWasRefused();
};

void TestFunctions::sendsItsRequest_data()
{
    const TestTable<QByteArray> row("wire");
    row("clear_email_usb", "DO CLEAR EMAILS\r\nLENGTH=11\r\nDISC='USB'\n");
    row("clear_email_disk", "DO CLEAR EMAILS\r\nLENGTH=13\r\nDISC='DISC1'\n");
    row("clear_email_disk1", "DO CLEAR EMAILS\r\nLENGTH=13\r\nDISC='DISC2'\n");
    row("get_report", "GET REPORT\r\n");
    row("remove_package", "PUT SOFT CONFIG\r\nLENGTH=22\r\nPACKAGE_DELETE=tool%2\n");
    row("soft_reboot", "DO REBOOT\r\n");
    row("soft_reset", "RESET SETTINGS\r\n");
    row("format_usb", "DO FORMAT\r\nLENGTH=11\r\nDISC='USB'\n");
    row("format_disk1", "DO FORMAT\r\nLENGTH=13\r\nDISC='DISC1'\n");
    row("format_disk2", "DO FORMAT\r\nLENGTH=13\r\nDISC='DISC2'\n");
    row("set_time", "PUT TIME CONFIG\r\nLENGTH=46\r\nYYYYMMDDHHMMSS=20240501120000\nTIME_ZONE=UTC-5\n");
    row("set_time_ntp", "PUT TIME CONFIG\r\nLENGTH=59\r\n"
                        "USENTP=1\nTIME_SERVER=%2.example\nNTP_SYNC=1\nTIME_ZONE=UTC-5\n");
    row("send_test_email", "SEND TEST EMAIL\r\n");
}

void TestFunctions::sendsItsRequest()
{
    QFETCH(QByteArray, wire);
    const QString name = QTest::currentDataTag();
    const bool fetches = name == "get_report";
    FakeRecorder recorder;
    recorder.login().reply(wire, "A=1\n").expectClosed();
    LoadedStore store(recorder);
    store.setValue("general/remove_package/name/tool%2");
    store.function(name, "is not used");
    AWAIT_COMPARE(store.loads + store.stores, 1);
    QCOMPARE(store.loads, fetches ? 1 : 0);
    QCOMPARE(store.faultsWith(recorder), QStringList());
    QCOMPARE(store.percents, QList<int>({0, 100}));
    if (fetches)
        QCOMPARE(store.content("tmp"), "A=1\n");
}

void TestFunctions::setsTheClockToTheTimeOfItsZone()
{
    const auto local = [] { return QDateTime::currentDateTimeUtc().addSecs(5 * 60 * 60); };
    FakeRecorder recorder;
    recorder.login(); // the rest is not known beforehand
    LoadedStore store(recorder);
    const QDateTime earliest = local();
    store.function("set_time_current", "");
    const QByteArray request = "PUT TIME CONFIG\r\nLENGTH=29\r\nYYYYMMDDHHMMSS=";
    AWAIT_COMPARE(recorder.received().size(), Login.size() + request.size() + 14);
    QVERIFY(recorder.received().startsWith(Login + request));
    QDateTime sent = QDateTime::fromString(recorder.received().right(14), "yyyyMMddHHmmss");
    sent.setTimeSpec(Qt::UTC);
    QVERIFY(sent.secsTo(earliest) <= 1 && sent <= local());
}

void TestFunctions::installsThePackageAtTheGivenAddress()
{
    QTemporaryFile package;
    QVERIFY(package.open());
    package.write(QByteArray("!<arch>\n\0\xff\r\n", 12));
    package.close();
    FakeRecorder recorder;
    // Packages go over the wire like every body: with LF line ends.
    recorder.login()
        .reply("INSTALL DEB\r\nLENGTH=11\r\n" + QByteArray("!<arch>\n\0\xff\n", 11))
        .expectClosed();
    LoadedStore store(recorder);
    store.setValue("general/install/path/" + package.fileName());
    store.function("soft_istall_packet", "general/install/path");
    AWAIT_COMPARE(store.stores, 1);
    QCOMPARE(store.faultsWith(recorder), QStringList());
}

void TestFunctions::reportsAPackageThatCannotBeRead()
{
    FakeRecorder recorder;
    LoadedStore store(recorder);
    for (const QString &path : {QDir::tempPath(), QString("/dev/zero"), QString("missing %1"), QString()}) {
        store.setValue("general/install/path/" + path);
        store.function("soft_istall_packet", "general/install/path");
        QCOMPARE(store.errors, QStringList("Can't read file \"" + path + "\""));
        QCOMPARE(store.m_state, 0);
        store.errors.clear();
    }
}

void TestFunctions::answersOtherNamesWithProgress()
{
    FakeRecorder recorder;
    LoadedStore store(recorder);
    for (const char *name : {"cancel", "no_such_function", "Soft_reboot", ""}) {
        store.function(name, "");
        QCOMPARE(store.percents, QList<int>({100}));
        QCOMPARE(store.m_state, 0);
        store.percents.clear();
    }
    QCOMPARE(store.errors, QStringList());
}

void TestFunctions::savesSettings()
{
    FakeRecorder recorder;
    recorder.login().reply("PUT A\r\nLENGTH=4\r\nB=1\n").expectClosed();
    NotedStore store(recorder.address());
    store._push_file("interface", "<a><di><difile/><difile name='a' put_command='PUT A'/></di></a>");
    store._push_file("a", "B=1\n");
    store.function("save_settings", "");
    AWAIT_COMPARE(store.stores, 1);
    QCOMPARE(store.faultsWith(recorder), QStringList());
}

void TestFunctions::adjustsOnceAfterTheLastCall()
{
    FakeRecorder recorder;
    recorder.login().reply(Adjustment).expectClosed();
    LoadedStore store(recorder);
    store.shortenAdjustmentPause(Pause);
    QElapsedTimer sinceLast;
    for (const int milliseconds : {0, 60, 120})
        QTimer::singleShot(milliseconds, &store, [&] {
            sinceLast.start();
            store.function("adjust_bcsh", "");
        });
    AWAIT_COMPARE(store.stores, 1);
    QVERIFY2(sinceLast.elapsed() >= Pause.count() - 2, qPrintable(QString::number(sinceLast.elapsed())));
    QCOMPARE(store.faultsWith(recorder), QStringList());
}

void TestFunctions::adjustsWhenTheLinkIsIdle()
{
    FakeRecorder recorder;
    recorder.login().reply(Adjustment).expectClosed();
    LoadedStore store(recorder);
    store.shortenAdjustmentPause(Pause);
    QElapsedTimer sinceCall;
    sinceCall.start();
    store.function("adjust_bcsh", "");
    store.m_state = 1;
    QTimer::singleShot(Pause * 13 / 10, &store, [&] { store.m_state = 0; });
    AWAIT_COMPARE(store.stores, 1);
    // The timer found a busy link once, and waited as long again.
    QVERIFY2(sinceCall.elapsed() >= 2 * Pause.count() - 2, qPrintable(QString::number(sinceCall.elapsed())));
    QCOMPARE(store.faultsWith(recorder), QStringList());
}

void TestFunctions::disturbsARunningExchange()
{
    FakeRecorder recorder;
    recorder.login().reply("GET SETUP\r\n", "<a><di><difile/><difile name='a' get_command='GET A'/>"
                                            "<difile name='b' get_command='GET B'/></di></a>");
    recorder.reply("GET A\r\n", "A=1\n").reply("DO REBOOT\r\n").expectClosed();
    NotedStore store(recorder.address());
    QObject::connect(&store, &OrbSetup::progress, &store, [&store](int percent) {
        if (percent == 33)
            store.function("soft_reboot", "");
    });
    store.load();
    // What was being fetched is dropped, what is left has nothing to send, and the command comes last.
    AWAIT_COMPARE(store.stores, 1);
    QCOMPARE(store.faultsWith(recorder), QStringList("OrbNetSetup::_connect in wrong state 5"));
    QVERIFY(!store.fileExists("a"));
    QCOMPARE(store.percents, QList<int>({0, 33, 75, 100}));
    QCOMPARE(store.loads, 0);
}

void TestFunctions::forgetsACommandWhoseLoginWasRefused()
{
    FakeRecorder recorder;
    recorder.expect(Login).send("LENGTH=19\r\nVORN_ANSWER=ERROR\r\n").expectClosed();
    recorder.startConnection().login().reply("DO REBOOT\r\n").expectClosed();
    LoadedStore store(recorder);
    store.function("format_disk1", "");
    QCOMPARE(store.awaitError(), "Authorization failed");
    store.function("soft_reboot", "");
    AWAIT_COMPARE(store.stores, 1);
    QCOMPARE(store.faultsWith(recorder), QStringList());
}

QTEST_GUILESS_MAIN(TestFunctions)
#include "tst_functions.moc"
