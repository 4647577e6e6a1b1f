#include "FakeRecorder.h"
#include "NotedStore.h"
#include "store/ExchangeQueue.h"
#include "support/FullDisk.h"
#include "support/TestTable.h"

#include <QDir>
#include <QPointer>

#include <algorithm>
#include <functional>

using namespace paravue;
using namespace paravue::test;

namespace
{

const QByteArray Net = "[ untitled ]\r\nA=1\r\n";
const QByteArray Time = "[ untitled ]\r\nYYYYMMDDHHMMSS=20260101120000\r\nTIME_ZONE='UTC-3'\r\n";
const QByteArray State = "ID=old\n#!s/ID=old/ID={net/untitled/A}/\n";

/// The files of a session whose description lists just these.
void push(NotedStore &store)
{
    store._push_file("interface", "<pvsetup><di><difile name='interface'/>"
                                  "<difile name='net' put_command='PUT N'/>"
                                  "<difile name='time' put_command='PUT T'/>"
                                  "<difile name='state' type='state' put_command='PUT S'/>"
                                  "</di></pvsetup>");
    store._push_file("general", "");
    store._push_file("net", Net);
    store._push_file("time", Time);
    store._push_statefile("state", State);
}

QByteArray put(const QByteArray &command, const QByteArray &body)
{
    return command + "\r\nLENGTH=" + QByteArray::number(body.size()) + "\r\n" + body;
}

QString notSent(const QString &names)
{
    return "Can't save a local copy of " + names + "; it was not sent";
}

bool isIdle(const NotedStore &store)
{
    return store.m_state == 0 && store.m_operation == 0 &&
           store.linkStatus().state == LinkStatus::State::Idle;
}

} // namespace

/// What stays on this computer when its disk fails must not reach the recorder as something else.
class TestLocalFailures : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void sendsNoFunctionWithoutItsBody();
    void savesWhatCouldBeWritten_data();
    void savesWhatCouldBeWritten();
    void sendsNothingOfAFetchThatWasNotKept();
    void sendsNothingWithoutTheDescription();
    void sendsWhatCannotBeOpenedAsEmpty_data();
    void sendsWhatCannotBeOpenedAsEmpty();
    void keepsFewCopiesOfOneName();
    void goesBackToIdle_data();
    void goesBackToIdle();
    void goesOnFromTheEndOfAFetch();
    void staysBackWhileTheLoginIsAskedFor();
    void oneAnswerServesTheNextExchange();
    void theStoreMayGoAtAnyReport_data();
    void theStoreMayGoAtAnyReport();
    void whatWaitsIsDoneBehindASilentEnd();
    void whatWaitsIsDoneBehindANestedLoop();
    void whatWaitsIsNotDoneBehindALogin();
};

void TestLocalFailures::sendsNoFunctionWithoutItsBody()
{
    SKIP_WITHOUT_FULL_DISK();
    FakeRecorder recorder;
    recorder.login().reply("DO FORMAT\r\nLENGTH=11\r\nDISC='USB'\n").expectClosed();
    recorder.startConnection().login().reply("DO FORMAT\r\nLENGTH=13\r\nDISC='DISC2'\n").expectClosed();
    NotedStore store(recorder.address());
    push(store);
    store.function("format_usb", "");
    AWAIT_COMPARE(store.stores, 1);
    AWAIT_VERIFY(isIdle(store));
    {
        const FullDisk full;
        store.function("format_disk1", "");
        QVERIFY(isIdle(store));
        QCOMPARE(store.commandCount(), 0);
    }
    QCOMPARE(store.errors, QStringList("Can't save a local copy of \"tmp\""));
    store.errors.clear();
    store.function("format_disk2", "");
    AWAIT_COMPARE(store.stores, 2);
    QCOMPARE(store.faultsWith(recorder), QStringList());
}

void TestLocalFailures::savesWhatCouldBeWritten_data()
{
    // Every save edits the time file, and the directive changes the state file.
    const TestTable<bool, QByteArray, QString> row("edits", "sent", "names");
    row("nothing edited", false, put("PUT N", "A=1\n"), R"("time", "state")");
    row("a value edited", true, "", R"("net", "time", "state")");
}

void TestLocalFailures::savesWhatCouldBeWritten()
{
    SKIP_WITHOUT_FULL_DISK();
    QFETCH(bool, edits);
    QFETCH(QByteArray, sent);
    QFETCH(QString, names);
    FakeRecorder recorder;
    recorder.login();
    if (!sent.isEmpty())
        recorder.reply(sent);
    recorder.expectClosed();
    const QByteArray value = edits ? "2" : "1";
    recorder.startConnection()
        .login()
        .reply(put("PUT N", "A = " + value + "\n"))
        .reply(put("PUT T", "YYYYMMDDHHMMSS = \nTIME_ZONE = 'UTC-3'\n"))
        .reply(put("PUT S", "ID=" + value + "\n#!s/ID=" + value + "/ID={net/untitled/A}/\n"))
        .expectClosed();
    NotedStore store(recorder.address());
    push(store);
    if (edits)
        store.setValue("net/untitled/A/2");
    {
        const FullDisk full;
        store.store();
        AWAIT_COMPARE(store.errors, QStringList(notSent(names)));
        QVERIFY(isIdle(store));
        QCOMPARE(store.commandCount(), 0);
        QCOMPARE(store.content("net"), Net);
        QCOMPARE(store.content("time"), Time);
        QCOMPARE(store.content("state"), State);
    }
    store.errors.clear();
    QCOMPARE(store.stores, 0);
    QVERIFY2(store.sendAll(), recorder.received(1));
    QCOMPARE(store.faultsWith(recorder), QStringList());
}

void TestLocalFailures::sendsNothingOfAFetchThatWasNotKept()
{
    SKIP_WITHOUT_FULL_DISK();
    const QMap<QString, QByteArray> bodies{{"net", "A=1\n"}, {"users", "NAME0=admin\n"}};
    FakeRecorder recorder;
    recorder.login().fetchOf(bodies).expectClosed();
    recorder.startConnection().login();
    recorder.reply("PUT CONFIG\r\n")
        .reply("PUT TIMER CONFIG\r\n")
        .reply("PUT STATE CONFIG\r\n")
        .expectClosed();
    recorder.startConnection().login().fetchOf(bodies).expectClosed();
    NotedStore store(recorder.address());
    {
        const FullDisk full;
        QVERIFY(store.fetch());
        for (const char *name : {"net", "time", "soft", "disk", "users"})
            QCOMPARE(store.errors.takeFirst(), QString("Can't save a local copy of \"%1\"").arg(name));
        QVERIFY(store.errors.isEmpty());
    }
    store.store();
    AWAIT_COMPARE(store.errors, QStringList(notSent(R"("net", "time", "disk", "users")")));
    QVERIFY(isIdle(store));
    QCOMPARE(store.stores, 0);
    store.errors.clear();
    QVERIFY(store.fetch());
    QCOMPARE(store.value("users/untitled/NAME0"), "admin");
    QCOMPARE(store.faultsWith(recorder), QStringList());
}

void TestLocalFailures::sendsNothingWithoutTheDescription()
{
    SKIP_WITHOUT_FULL_DISK();
    const QByteArray description = "<pvsetup version='1.0'><di><difile name='interface'/>"
                                   "<difile name='own' get_command='GET OWN' put_command='PUT OWN'/>"
                                   "</di></pvsetup>";
    FakeRecorder recorder;
    recorder.login().reply("GET SETUP\r\n", description).reply("GET OWN\r\n", "A=1\n").expectClosed();
    NotedStore store(recorder.address());
    store._push_file("general", "");
    {
        const FullDisk full;
        QVERIFY(store.fetch());
    }
    QCOMPARE(store.errors,
             QStringList({"Can't save a local copy of \"interface\"", "Can't save a local copy of \"own\""}));
    store.errors.clear();
    // Its own list of files is lost, and the built-in one is that of another recorder.
    store.store();
    QCOMPARE(store.errors, QStringList("Can't save a local copy of \"interface\""));
    QVERIFY(isIdle(store));
    QCOMPARE(store.stores, 0);
    QCOMPARE(recorder.connectionCount(), 1);
}

void TestLocalFailures::sendsWhatCannotBeOpenedAsEmpty_data()
{
    const TestTable<bool> row("removed");
    row("removed", true);
    row("a folder in its place", false);
}

void TestLocalFailures::sendsWhatCannotBeOpenedAsEmpty()
{
    QFETCH(bool, removed);
    FakeRecorder recorder;
    recorder.login()
        .reply("PUT N\r\n")
        .reply(put("PUT T", "YYYYMMDDHHMMSS = \nTIME_ZONE = 'UTC-3'\n"))
        .reply(put("PUT S", "ID=old\n"))
        .expectClosed();
    NotedStore store(recorder.address());
    push(store);
    store._push_statefile("state", "ID=old\n");
    QVERIFY(QFile::remove(store.filePath("net")));
    QVERIFY(removed || QDir().mkpath(store.filePath("net")));
    QCOMPARE(store.value("net/untitled/A"), "");
    QVERIFY2(store.sendAll(), recorder.received());
    QCOMPARE(store.faultsWith(recorder), QStringList());
}

void TestLocalFailures::keepsFewCopiesOfOneName()
{
    NotedStore store("a:b@127.0.0.1");
    QStringList paths;
    for (int i = 0; i < 200; ++i) {
        store._push_file("tmp", QByteArray::number(i));
        paths << store.filePath("tmp") << store.filePath("tmp.original");
        QCOMPARE(store.content("tmp"), QByteArray::number(i));
    }
    const auto exist =
        std::count_if(paths.cbegin(), paths.cend(), [](auto &path) { return QFile::exists(path); });
    QVERIFY2(exist >= 2 && exist <= 20, qPrintable(QString::number(exist)));
}

void TestLocalFailures::goesBackToIdle_data()
{
    const TestTable<QByteArray, QString> row("answer", "problem");
    row("while it waits", "", "");
    row("refused command", FakeRecorder::frame({}, "VORN_ANSWER=ERROR:busy\r\n"), "Device error \"busy\"");
    row("closed", "close", "The recorder has closed the connection");
}

void TestLocalFailures::goesBackToIdle()
{
    QFETCH(QByteArray, answer);
    QFETCH(QString, problem);
    FakeRecorder recorder;
    recorder.login().expect("DO REBOOT\r\n");
    if (answer == "close")
        recorder.close();
    else if (!answer.isEmpty())
        recorder.send(answer);
    recorder.startConnection().login().reply("RESET SETTINGS\r\n").expectClosed();
    NotedStore store(recorder.address());
    push(store);
    store.setValue("net/untitled/A/2");
    store.function("soft_reboot", "");
    QCOMPARE(store.linkStatus().state, LinkStatus::State::Running);
    AWAIT_VERIFY(recorder.received().endsWith("DO REBOOT\r\n"));
    if (!problem.isEmpty()) {
        AWAIT_COMPARE(store.linkStatus().state, LinkStatus::State::Failed);
        QCOMPARE(store.linkStatus().problem, problem);
        store.errors.clear();
        store.function("soft_reset", "");
        AWAIT_VERIFY(!store.errors.isEmpty());
        QVERIFY2(store.errors.last().startsWith("OrbNetSetup::_connect in wrong state"),
                 qPrintable(store.errors.last()));
        QCOMPARE(store.linkStatus().problem, problem);
    }
    store.errors.clear();
    store.resetLink();
    QVERIFY(isIdle(store));
    QCOMPARE(store.commandCount(), 0);
    QCOMPARE(store.value("net/untitled/A"), "2");
    store.function("soft_reset", "");
    AWAIT_COMPARE(store.stores, 1);
    QCOMPARE(store.faultsWith(recorder), QStringList());
}

void TestLocalFailures::staysBackWhileTheLoginIsAskedFor()
{
    /// Gives the exchange up while it asks, and answers all the same.
    struct Source : CredentialsSource {
        explicit Source(OrbSetup &store) : store(store) {}
        bool ask(Credentials &record) override
        {
            wasRunning = store.linkStatus().state == LinkStatus::State::Running;
            store.resetLink();
            record.login = "x";
            asked = true;
            return true;
        }
        void save(const Credentials &) override {}
        OrbSetup &store;
        bool wasRunning = false;
        bool asked = false;
    };
    FakeRecorder recorder;
    recorder.expect("\x04LOGIN=guest\r\nPASS=secret\r\n")
        .send("LENGTH=19\r\nVORN_ANSWER=ERROR\r\n")
        .expectClosed();
    NotedStore store(recorder.address());
    auto owned = std::make_unique<Source>(store);
    const Source &source = *owned;
    store.setCredentialsSource(std::move(owned));
    store.load();
    AWAIT_VERIFY(source.asked);
    QVERIFY(source.wasRunning);
    QTest::qWait(0);
    QVERIFY(isIdle(store));
    QCOMPARE(recorder.connectionCount(), 1);
    QCOMPARE(store.faultsWith(recorder), QStringList());
}

namespace
{

const QByteArray RefusedLogin = "LENGTH=19\r\nVORN_ANSWER=ERROR\r\n";
const QByteArray GuestLogin = "\x04LOGIN=guest\r\nPASS=secret\r\n";

/// Does something before it answers.
struct SlowSource : CredentialsSource {
    bool ask(Credentials &record) override
    {
        ++asked;
        whileAsked();
        record.login = "x";
        record.password = "y";
        return true;
    }
    void save(const Credentials &) override {}
    std::function<void()> whileAsked;
    int asked = 0;
};

SlowSource &giveSlowSource(NotedStore &store)
{
    auto owned = std::make_unique<SlowSource>();
    SlowSource &source = *owned;
    store.setCredentialsSource(std::move(owned));
    return source;
}

} // namespace

void TestLocalFailures::goesOnFromTheEndOfAFetch()
{
    FakeRecorder recorder;
    recorder.login().fetchOf({}).expectClosed();
    recorder.startConnection().login().reply("RESET SETTINGS\r\n").expectClosed();
    NotedStore store(recorder.address());
    push(store);
    connect(&store, &OrbSetup::loadDone, &store, [&store] {
        store.resetLink();
        store.function("soft_reset", "");
    });
    store.load();
    AWAIT_COMPARE(store.stores, 1);
    AWAIT_VERIFY(isIdle(store));
    QCOMPARE(store.loads, 1);
    QCOMPARE(store.faultsWith(recorder), QStringList());
}

void TestLocalFailures::oneAnswerServesTheNextExchange()
{
    FakeRecorder recorder;
    recorder.expect(GuestLogin).send(RefusedLogin).expectClosed();
    recorder.startConnection().expect(GuestLogin).send(RefusedLogin).expectClosed();
    recorder.startConnection().login("x", "y").fetchOf({}).expectClosed();
    NotedStore store(recorder.address());
    SlowSource &source = giveSlowSource(store);
    source.whileAsked = [&] {
        store.resetLink();
        store.load();
        AWAIT_VERIFY(recorder.connectionCount() == 2 && store.m_state == 0);
        QTest::qWait(0); // the second question would be asked now
    };
    store.load();
    AWAIT_COMPARE(store.loads, 1);
    QCOMPARE(source.asked, 1);
    QCOMPARE(store.faultsWith(recorder), QStringList());
}

void TestLocalFailures::theStoreMayGoAtAnyReport_data()
{
    const TestTable<QByteArray> row("report");
    row("progress", SIGNAL(progress(int)));
    row("end of a fetch", SIGNAL(loadDone()));
    row("end of a save", SIGNAL(storeDone()));
    row("message", SIGNAL(pseudothrow(QString)));
}

void TestLocalFailures::theStoreMayGoAtAnyReport()
{
    QFETCH(QByteArray, report);
    FakeRecorder recorder;
    recorder.login().fetchOf({}).expectClosed();
    recorder.startConnection().login().reply("DO REBOOT\r\n").expectClosed();
    recorder.startConnection().login().expect("RESET SETTINGS\r\n");
    recorder.send(FakeRecorder::frame({}, "VORN_ANSWER=ERROR:busy\r\n")).expectClosed();
    auto store = std::make_unique<NotedStore>(recorder.address());
    const QPointer<NotedStore> alive(store.get());
    const auto removeStore = [&store] { store.reset(); };
    if (report.contains("progress"))
        connect(store.get(), &OrbSetup::progress, this, removeStore);
    else if (report.contains("loadDone"))
        connect(store.get(), &OrbSetup::loadDone, this, removeStore);
    else if (report.contains("storeDone"))
        connect(store.get(), &OrbSetup::storeDone, this, removeStore);
    else
        connect(store.get(), &OrbSetup::pseudothrow, this, removeStore);
    ExchangeQueue &queue = ExchangeQueue::of(*store);
    store->load();
    queue.call("soft_reboot", {}, ExchangeQueue::Caller::User);
    queue.call("soft_reset", {}, ExchangeQueue::Caller::User);
    AWAIT_VERIFY(!alive);
    QCoreApplication::processEvents();
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
}

void TestLocalFailures::whatWaitsIsDoneBehindASilentEnd()
{
    FakeRecorder recorder;
    recorder.login()
        .reply(put("PUT N", "A = 1\n"))
        .reply(put("PUT T", "YYYYMMDDHHMMSS = \nTIME_ZONE = 'UTC-3'\n"))
        .expectClosed();
    recorder.startConnection().login().reply("DO REBOOT\r\n").expectClosed();
    NotedStore store(recorder.address());
    push(store);
    // This directive matches what it has put in. The message comes before the first byte, and none at the
    // end.
    store._push_statefile("state", "a\n#!s/\\x61/aa{net/untitled/A}/\n");
    ExchangeQueue &queue = ExchangeQueue::of(store);
    queue.call("save_settings", {}, ExchangeQueue::Caller::User);
    queue.call("soft_reboot", {}, ExchangeQueue::Caller::User);
    QCOMPARE(queue.waiting(), QStringList("soft_reboot"));
    AWAIT_COMPARE(store.stores, 1);
    QCOMPARE(queue.waiting(), QStringList());
    QCOMPARE(store.faultsWith(recorder), QStringList("The directives of file \"state\" make it too large"));
}

void TestLocalFailures::whatWaitsIsDoneBehindANestedLoop()
{
    FakeRecorder recorder;
    recorder.login().fetchOf({}).expectClosed();
    recorder.startConnection().login().reply("DO REBOOT\r\n").expectClosed();
    NotedStore store(recorder.address());
    push(store);
    ExchangeQueue &queue = ExchangeQueue::of(store);
    connect(&store, &OrbSetup::loadDone, this, [] { QTest::qWait(50); }); // a message box, for example
    store.load();
    queue.call("soft_reboot", {}, ExchangeQueue::Caller::User);
    AWAIT_COMPARE(store.stores, 1);
    QCOMPARE(queue.waiting(), QStringList());
}

void TestLocalFailures::whatWaitsIsNotDoneBehindALogin()
{
    FakeRecorder recorder;
    recorder.expect(GuestLogin).send(RefusedLogin).expectClosed();
    recorder.startConnection().login("x", "y").fetchOf({}).expectClosed();
    NotedStore store(recorder.address());
    SlowSource &source = giveSlowSource(store);
    ExchangeQueue &queue = ExchangeQueue::of(store);
    // The settings are fetched behind the login, so this save would send them back as they are.
    source.whileAsked = [&] { queue.call("save_settings", {}, ExchangeQueue::Caller::User); };
    queue.call("get_report", {}, ExchangeQueue::Caller::User);
    AWAIT_COMPARE(store.loads, 1);
    AWAIT_VERIFY(isIdle(store));
    QCOMPARE(queue.waiting(), QStringList());
    QCOMPARE(queue.abandoned(), QStringList("save_settings"));
    QCOMPARE(store.faultsWith(recorder), QStringList());
}

QTEST_GUILESS_MAIN(TestLocalFailures)
#include "tst_local_failures.moc"
