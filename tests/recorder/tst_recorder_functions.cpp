#include "DebFile.h"
#include "RawClient.h"

#include "recorder/RecorderServer.h"
#include "support/TestTable.h"
#include "support/Waiting.h"

#include <QDateTime>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QTest>

using namespace paravue::test;
using recorder::RecorderServer;

namespace
{

const QByteArray Ok = "LENGTH=16\r\nVORN_ANSWER=OK\r\n";

QByteArray withBody(const QByteArray &line, const QByteArray &body)
{
    return line + "\r\nLENGTH=" + QByteArray::number(body.size()) + "\r\n" + body;
}

QByteArray error(const QByteArray &reason)
{
    const QByteArray text = "VORN_ANSWER=ERROR:" + reason + "\r\n";
    return "LENGTH=" + QByteArray::number(text.size()) + "\r\n" + text;
}

QByteArray format(const QByteArray &disk)
{
    return withBody("DO FORMAT", "DISC='" + disk + "'\n");
}

const QByteArray Control = "Package: thermo-probe\nVersion: 0.9-2\nArchitecture: all\n"
                           "Description: Reads the owner's probes\n and more\n";

} // namespace

/// The functions of the recorder, whose effects are read over a new connection. Plain effects are tested with
/// the window.
class TestRecorderFunctions : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void cleanup();

    void executesFunctions_data();
    void executesFunctions();
    void refusesFunctions_data();
    void refusesFunctions();
    void refusesUsersOfLowerLevel();
    void keepsMeasuredValues();
    void resetsSettings();
    void keepsTimeAcrossClockChanges_data();
    void keepsTimeAcrossClockChanges();
    void restarts();

private:
    QByteArray ask(const QByteArray &request, const QByteArray &user = "admin");

    std::unique_ptr<QTemporaryDir> m_folder;
    std::unique_ptr<RecorderServer> m_server;
};

void TestRecorderFunctions::init()
{
    m_folder = std::make_unique<QTemporaryDir>();
    m_server = std::make_unique<RecorderServer>(m_folder->filePath("data"));
    QVERIFY2(m_server->listen(), qPrintable(m_server->errorString()));
}

void TestRecorderFunctions::cleanup()
{
    m_server.reset();
    m_folder.reset();
}

QByteArray TestRecorderFunctions::ask(const QByteArray &request, const QByteArray &user)
{
    RawClient client(m_server->port());
    return client.logIn(user, user == "guest" ? QByteArray() : user) ? client.ask(request) : "no login";
}

void TestRecorderFunctions::executesFunctions_data()
{
    // "before" and "after" are parts of the answer to "look".
    const TestTable<QByteArray, QByteArray, QByteArray, QByteArray> row("request", "look", "before", "after");
    row("format e-mails too", format("DISC1"), "GET REPORT", "DISC1 = '3'\n", "DISC1 = '0'\n");
    row("test e-mail", "SEND TEST EMAIL\r\n", "GET REPORT", "to guard@example.net: Motion",
        "to guard@example.net: test, Warehouse recorder");
    row("adjust", withBody("ADJUST VIDEO", "[ stream_0 ]\nbrightness=0\nhue=100\n"), "GET CONFIG",
        "brightness=50\ncontrast=50\nsaturation=50\nhue=50\nsharpness=40\n\n[ stream_1 ]",
        "brightness='0'\ncontrast=50\nsaturation=50\nhue='100'\nsharpness=40\n\n[ stream_1 ]");
    row("remove", withBody("PUT SOFT CONFIG", "PACKAGE_DELETE='mail-notifier'\n"), "GET SOFT CONFIG",
        "PACKAGE_NAME_5='usb-backup'\n", "PACKAGE_NAME_4='usb-backup'\nPACKAGE_VER_4='1.3'\n");
    row("install", withBody("INSTALL DEB", debFile(Control)), "GET SOFT CONFIG", "PACKAGES=6\n",
        "PACKAGE_NAME_6='thermo-probe'\nPACKAGE_VER_6='0.9-2'\nPACKAGE_DESC_6='Reads the owners probes'\n"
        "PACKAGE_PRIORITY_6='optional'\n");
    row("install a newer one",
        withBody("INSTALL DEB", debFile("Package: usb-backup\nVersion: 2.0\nPriority: extra\n")),
        "GET REPORT", "PACKAGE_5 = 'usb-backup 1.3'\n", "PACKAGE_5 = 'usb-backup 2.0'\n");
}

void TestRecorderFunctions::executesFunctions()
{
    QFETCH(QByteArray, request);
    QFETCH(QByteArray, look);
    QFETCH(QByteArray, before);
    QFETCH(QByteArray, after);
    look += "\r\n";
    QByteArray answer = ask(look);
    QVERIFY2(answer.contains(before) && !answer.contains(after), answer);
    QCOMPARE(ask(request), Ok);
    answer = ask(look);
    QVERIFY2(answer.contains(after) && !answer.contains(before), answer);
    QVERIFY(answer.endsWith("VORN_ANSWER=OK\r\n"));
}

void TestRecorderFunctions::refusesFunctions_data()
{
    const TestTable<QByteArray, QByteArray> row("request", "reason");
    row("no such disk", format("DISC3"), "there is no disk DISC3");
    row("no disk", withBody("DO FORMAT", "all of them\n"), "there is no disk ");
    row("empty body", withBody("DO FORMAT", ""), "the command DO FORMAT is empty");
    row("body without a use", "DO REBOOT NOW\r\n", "unknown command");
    row("e-mails of no disk", withBody("DO CLEAR EMAILS", "DISC='DISC9'\n"), "there is no disk DISC9");
    row("not installed", withBody("PUT SOFT CONFIG", "PACKAGE_DELETE=x\n"), "the package x is not installed");
    for (const QByteArray name : {"base-system", "recorder-core", "network-services"})
        row(name, withBody("PUT SOFT CONFIG", "PACKAGE_DELETE=" + name + '\n'),
            "the package " + name + " cannot be done without");
    row("no package", withBody("INSTALL DEB", "hello"), "this is no package");
    row("out of range", withBody("ADJUST VIDEO", "[ stream_0 ]\nhue=101\n"),
        "hue is no number from 0 to 100");
    row("no number", withBody("ADJUST VIDEO", "[ stream_0 ]\nhue=\n"), "hue is no number from 0 to 100");
    row("no such camera", withBody("ADJUST VIDEO", "[ stream_9 ]\nhue=1\n"), "hue cannot be adjusted");
    row("no picture value", withBody("ADJUST VIDEO", "[ stream_0 ]\nurl=1\n"), "url cannot be adjusted");
    row("no time server", withBody("PUT TIME CONFIG", "USENTP=1\nTIME_SERVER=\nNTP_SYNC=1\n"),
        "there is no time server");
    row("no time zone", withBody("PUT TIME CONFIG", "TIME_ZONE=UTC-3,M3.5.0/2\n"), "wrong time zone");
}

void TestRecorderFunctions::refusesFunctions()
{
    QFETCH(QByteArray, request);
    QFETCH(QByteArray, reason);
    const auto files = [this] { return ask("GET REPORT\r\n").mid(80) + ask("GET CONFIG\r\n"); };
    const QByteArray before = files();
    QCOMPARE(ask(request), error(reason));
    QCOMPARE(files(), before);
}

void TestRecorderFunctions::refusesUsersOfLowerLevel()
{
    const QByteArray adjust = withBody("ADJUST VIDEO", "[ stream_0 ]\nhue=1\n");
    QCOMPARE(ask(format("USB"), "operator"), error("the user operator may not do that"));
    QCOMPARE(ask("RESET SETTINGS\r\n", "operator"), error("the user operator may not do that"));
    QCOMPARE(ask(adjust, "guest"), error("the user guest may not do that"));
    QCOMPARE(ask(adjust, "operator"), Ok);
    QVERIFY(ask("GET REPORT\r\n", "guest").endsWith("VORN_ANSWER=OK\r\n"));
}

/// Clients send back files that they have fetched earlier.
void TestRecorderFunctions::keepsMeasuredValues()
{
    const auto bodyOf = [this](const QByteArray &subject) {
        const QByteArray answer = ask("GET " + subject + "\r\n");
        return answer.mid(answer.indexOf("\r\n") + 2).chopped(16);
    };
    const QByteArray disk = bodyOf("DISK CONFIG");
    const QByteArray state = bodyOf("STATE CONFIG");
    QCOMPARE(ask(format("DISC1")), Ok);
    const QSignalSpy cameBack(m_server.get(), &RecorderServer::cameBack);
    m_server->setRebootTime(1);
    QCOMPARE(ask("DO REBOOT\r\n"), Ok);
    AWAIT_COMPARE(cameBack.size(), 1);
    QCOMPARE(ask(withBody("PUT DISK CONFIG", QByteArray(disk).replace("KEEP_DAYS=30", "KEEP_DAYS=9"))), Ok);
    QCOMPARE(ask(withBody("PUT STATE CONFIG", state)), Ok);
    const QByteArray kept = bodyOf("DISK CONFIG");
    QVERIFY2(kept.contains("DISC1_USED='0G'\n") && kept.contains("KEEP_DAYS=9\n"), kept);
    QVERIFY(bodyOf("STATE CONFIG").contains("UPTIME_DAYS='0'\n"));
}

void TestRecorderFunctions::resetsSettings()
{
    const QByteArray net = ask("GET NET CONFIG\r\n");
    QCOMPARE(ask(withBody("PUT NET CONFIG", "HOSTNAME='mine'\n")), Ok);
    QCOMPARE(ask(format("USB")), Ok);
    QCOMPARE(ask(withBody("PUT SOFT CONFIG", "PACKAGE_DELETE=usb-backup\n")), Ok);
    QCOMPARE(ask("RESET SETTINGS\r\n"), Ok);
    QCOMPARE(ask("GET NET CONFIG\r\n"), net);
    // A reset restores neither the contents of disks nor packages.
    QVERIFY(ask("GET DISK CONFIG\r\n").contains("USB_USED='0G'"));
    QVERIFY(!ask("GET SOFT CONFIG\r\n").contains("usb-backup"));
}

void TestRecorderFunctions::keepsTimeAcrossClockChanges_data()
{
    const TestTable<QByteArray, QByteArray, QByteArray> row("zone", "set", "later");
    const char *berlin = "UTC-1UTC-2,M3.5.0/2,M10.5.0/3";
    row("no summer time", "UTC-5:30", "20260329015959", "20260329020000");
    row("spring", berlin, "20260329015959", "20260329030000");
    row("autumn, the first reading", berlin, "20261025025959", "20261025020000");
    row("southern spring", "UTC-10UTC-11,M10.1.0/2,M4.1.0/3", "20261004015959", "20261004030000");
    row("no rule at all", "", "20260329015959", "20260329030000");
}

void TestRecorderFunctions::keepsTimeAcrossClockChanges()
{
    QFETCH(QByteArray, zone);
    QFETCH(QByteArray, set);
    QFETCH(QByteArray, later);
    qint64 now = 1'600'000'000;
    const auto clock = [&now] { return now; };
    const auto reading = [this] {
        const QByteArray answer = ask("GET TIME CONFIG\r\n");
        return answer.mid(answer.indexOf("YYYYMMDDHHMMSS='") + 16, 14);
    };
    m_server->setClock(clock);
    QCOMPARE(ask(withBody("PUT TIME CONFIG", "YYYYMMDDHHMMSS=" + set + "\nTIME_ZONE=" + zone + '\n')), Ok);
    QCOMPARE(reading(), set);
    now += 1;
    QCOMPARE(reading(), later);
    // Also while the recorder is switched off.
    m_server = std::make_unique<RecorderServer>(m_folder->filePath("data"));
    m_server->setClock(clock);
    QVERIFY(m_server->listen());
    now += 59;
    QCOMPARE(reading(), later.chopped(2) + "59");
}

void TestRecorderFunctions::restarts()
{
    m_server->setRebootTime(50);
    const quint16 port = m_server->port();
    QSignalSpy down(m_server.get(), &RecorderServer::wentDown);
    QSignalSpy back(m_server.get(), &RecorderServer::cameBack);
    RawClient idle(port);
    QVERIFY(idle.logIn());
    QCOMPARE(ask("DO REBOOT\r\n"), Ok);
    QVERIFY(down.wait());
    QCOMPARE(idle.receiveUntilClosed(), QByteArray());
    QVERIFY(!RawClient(port).isConnected());
    QVERIFY(back.wait());
    QCOMPARE(m_server->port(), port);
    QCOMPARE(ask("DO REBOOT\r\n"), Ok);
}

QTEST_GUILESS_MAIN(TestRecorderFunctions)
#include "tst_recorder_functions.moc"
