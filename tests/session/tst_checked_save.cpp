#include "CheckedSaveTest.h"
#include "snapshots/SnapshotArchive.h"
#include "snapshots/SnapshotFolder.h"
#include "support/FullDisk.h"

#include <QTemporaryDir>

using namespace paravue;
using namespace paravue::test;

/// A save is confirmed, or the recorder keeps something otherwise.
class TestCheckedSave : public CheckedSaveTest
{
    Q_OBJECT

private Q_SLOTS:
    void init() { startSaving(); }
    void confirmsWhatWasSent();
    void showsWhatTheRecorderKeepsOtherwise_data();
    void showsWhatTheRecorderKeepsOtherwise();
    void keepsWhatWasSentOfAListAsAWhole();
    void findsWhatFollowsFromAnEdit();
    void findsALimitEachTime();
    void countsNoFilesThatAreNotSent();
    void keepsWhatWasSentWithoutRoomForTheRecorders_data();
    void keepsWhatWasSentWithoutRoomForTheRecorders();
};

void TestCheckedSave::confirmsWhatWasSent()
{
    Sending session(address());
    QVERIFY(session.isLoaded);
    session.type("old", "new");
    m_requests.clear();
    SavePilot pilot(Steps{{"Sent and confirmed", "Close"}});
    session.pressOk();
    QVERIFY2(pilot.isAtItsEnd(), qPrintable(pilot.headline));
    QCOMPARE(pilot.described, pilot.headline);
    QCOMPARE(pilot.files, QStringList({"streams|Sent and confirmed", "net|Sent and confirmed",
                                       "time|Sent and confirmed"}));
    QCOMPARE(session.window->result(), int(QDialog::Accepted));
    QVERIFY(net().contains("HOSTNAME = 'new'"));
    // Each file is fetched once before and once afterwards; what is never sent is not fetched.
    m_requests.removeIf([](const QString &line) { return !line.contains(" CONFIG"); });
    QCOMPARE(m_requests,
             QStringList({"GET CONFIG", "GET NET CONFIG", "GET TIME CONFIG", "PUT CONFIG", "PUT NET CONFIG",
                          "PUT TIME CONFIG", "GET CONFIG", "GET NET CONFIG", "GET TIME CONFIG"}));
}

void TestCheckedSave::showsWhatTheRecorderKeepsOtherwise_data()
{
    const TestTable<QString, QString, QString, bool> row("button", "shown", "recorder", "isClosed");
    row("keep the recorder's", "Keep the recorder's", "limited", "HOSTNAME = 'limited'", true);
    row("send again", "Send again", "limited", "HOSTNAME = 'new'", true);
    row("go on editing", "Go on editing", "new", "HOSTNAME = 'limited'", false);
}

void TestCheckedSave::showsWhatTheRecorderKeepsOtherwise()
{
    QFETCH(QString, button);
    const QTemporaryDir kept;
    Sending session(address(), true, false, kept.path());
    QVERIFY(session.isLoaded);
    session.type("old", "new");
    session.type("secret", "other");
    // The recorder allows another name only, once, has a key of its own, and has counted on.
    const auto limit =
        connect(m_recorder.get(), &recorder::RecorderServer::fileReceived, this, [&](const QString &name) {
            if (name == "net")
                QTimer::singleShot(0, this, [this] {
                    setFile(
                        "net",
                        net().replace("'new'", "'limited'").replace("17", "18").replace("'other'", "'x'"));
                });
        });
    Steps script{{"Sent, but the recorder keeps 2", button, [&] { disconnect(limit); }}};
    if (button == "Send again")
        script += SavePilot::Step{"Sent and confirmed", "Close"};
    SavePilot pilot(script);
    session.pressOk();
    QVERIFY2(pilot.isAtItsEnd(), qPrintable(pilot.headline));
    QCOMPARE(pilot.values, QStringList({"Page › Host|new|limited|net/untitled/HOSTNAME",
                                        "Page › Key|••••••••|••••••••|net/untitled/WIFI_KEY"}));
    QVERIFY(
        pilot.files.contains(button == "Send again" ? "net|Sent and confirmed" : "net|Sent, kept otherwise"));
    QFETCH(QString, recorder);
    QVERIFY2(net().contains(recorder.toUtf8()), net());
    // Each sending is preceded by a snapshot of what it overwrites.
    QStringList names;
    for (const KeptSnapshot &snapshot : SnapshotFolder(kept.path(), recorderOfAddress(address())).list())
        names << FileValues(snapshotarchive::read(snapshot.path).snapshot.files["net"])
                     .value("untitled/HOSTNAME")
                     .value_or("");
    QCOMPARE(names, button == "Send again" ? QStringList({"limited", "old"}) : QStringList("old"));
    QFETCH(bool, isClosed);
    QCOMPARE(session.window->isVisible(), !isClosed);
    if (button == "Keep the recorder's")
        QCOMPARE(session.store.value(HostName), QString("limited"));
}

void TestCheckedSave::keepsWhatWasSentOfAListAsAWhole()
{
    setFile("net", Net + "CNT=3\nNAME0=ann\nLEVEL0=2\nNAME1=bob\nLEVEL1=0\nNAME2=carol\nLEVEL2=0\n");
    Sending session(address());
    QVERIFY(session.isLoaded);
    session.store.setValue("net/untitled/LEVEL1/1"); // of bob, whom the recorder drops then
    connect(m_recorder.get(), &recorder::RecorderServer::fileReceived, this, [&](const QString &name) {
        if (name == "net")
            QTimer::singleShot(0, this, [this] {
                setFile("net", Net + "CNT=2\nNAME0=ann\nLEVEL0=2\nNAME1=carol\nLEVEL1=0\n");
            });
    });
    SavePilot pilot(Steps{{"Sent, but the recorder keeps one value otherwise", "Go on editing"}});
    session.pressOk();
    QVERIFY2(pilot.isAtItsEnd(), qPrintable(pilot.headline));
    QStringList users;
    for (const QString number : {"0", "1", "2"})
        users << session.store.value("net/untitled/NAME" + number) + ' ' +
                     session.store.value("net/untitled/LEVEL" + number);
    QCOMPARE(users, QStringList({"ann 2", "bob 1", "carol 0"}));
    QCOMPARE(session.store.value("net/untitled/CNT"), "3");
}

void TestCheckedSave::findsWhatFollowsFromAnEdit()
{
    setFile("net", QByteArray(Net).replace("Gate", "8000"));
    Sending session(address());
    QVERIFY(session.isLoaded);
    session.type("old", "25");
    connect(m_recorder.get(), &recorder::RecorderServer::fileReceived, this, [&](const QString &name) {
        if (name == "net")
            QTimer::singleShot(0, this,
                               [this] { setFile("net", net().replace("8000", "4000").replace("17", "18")); });
    });
    SavePilot pilot(Steps{{"Sent, but the recorder keeps one value otherwise", "Go on editing"}});
    session.pressOk();
    QVERIFY2(pilot.isAtItsEnd(), qPrintable(pilot.headline));
    QCOMPARE(pilot.values, QStringList("Page › Place|8000|4000|net/untitled/PLACE"));
}

void TestCheckedSave::findsALimitEachTime()
{
    Sending session(address());
    QVERIFY(session.isLoaded);
    session.type("old", "30");
    connect(m_recorder.get(), &recorder::RecorderServer::fileReceived, this, [&](const QString &name) {
        if (name == "net")
            QTimer::singleShot(0, this, [this] { setFile("net", net().replace("= 30", "= 25")); });
    });
    const QString limited = "Sent, but the recorder keeps one value otherwise";
    SavePilot again(Steps{{limited, "Send again"}, {limited, "Go on editing"}});
    session.pressOk();
    QVERIFY2(again.isAtItsEnd(), qPrintable(again.headline));
    QCOMPARE(again.values, QStringList({"Page › Host|30|25|net/untitled/HOSTNAME"}));
    // What was sent is an edit again.
    QCOMPARE(session.changes(), QString("1 change"));
    QCOMPARE(session.store.value(HostName), QString("30"));
}

void TestCheckedSave::countsNoFilesThatAreNotSent()
{
    Sending session(address());
    QVERIFY(session.isLoaded && session.store.fileExists("soft"));
    session.store.setValue("soft/untitled/SOFT_VERSION/9.9");
    QCOMPARE(session.changes(), QString());
    session.store.setValue("net/untitled/PLACE/Yard");
    QCOMPARE(session.changes(), QString("1 change"));
}

void TestCheckedSave::keepsWhatWasSentWithoutRoomForTheRecorders_data()
{
    const TestTable<QString, QString, QString, bool> row("choice", "then", "value", "isClosed");
    row("keep the recorder's", "Keep the recorder's", "Try again", "limited", true);
    row("keep the recorder's, leave", "Keep the recorder's", "Leave them", "new", true);
    row("go on editing", "Go on editing", "Try again", "new", false);
    row("go on editing, leave", "Go on editing", "Leave them", "new", false);
}

void TestCheckedSave::keepsWhatWasSentWithoutRoomForTheRecorders()
{
    SKIP_WITHOUT_FULL_DISK();
    QFETCH(QString, choice);
    QFETCH(QString, then);
    QFETCH(QString, value);
    QFETCH(bool, isClosed);
    Sending session(address());
    QVERIFY(session.isLoaded);
    session.type("old", "new");
    connect(m_recorder.get(), &recorder::RecorderServer::fileReceived, this, [&](const QString &name) {
        if (name == "net")
            QTimer::singleShot(0, this, [this] { setFile("net", net().replace("'new'", "'limited'")); });
    });
    std::unique_ptr<FullDisk> full;
    SavePilot pilot(
        Steps{{"Sent, but", choice, [&] { full = std::make_unique<FullDisk>(); }},
              {"The values of the recorder could not be taken into the window: Can't save a local", then,
               [&] { full.reset(); }}});
    session.pressOk();
    QVERIFY2(pilot.isAtItsEnd(), qPrintable(pilot.headline));
    QCOMPARE(session.window->isVisible(), !isClosed);
    QCOMPARE(session.store.value(HostName), value);
    QCOMPARE(session.changes(), QString(choice == "Go on editing" && then == "Try again" ? "1 change" : ""));
}

QTEST_MAIN(TestCheckedSave)
#include "tst_checked_save.moc"
