#include "FakeRecorder.h"
#include "NotedStore.h"

#include <QTcpServer>

using namespace paravue::test;

namespace
{

const QByteArray Ok = "LENGTH=16\r\nVORN_ANSWER=OK\r\n";
const QByteArray Refusal = "LENGTH=19\r\nVORN_ANSWER=ERROR\r\n";
/// The description of a recorder that has nothing else to fetch.
const QByteArray NoFiles = "<pvsetup><di/></pvsetup>";

struct Answers : public CredentialsSource {
    bool ask(Credentials &record) override
    {
        ++asked;
        url = record.url;
        record.remember = remember;
        record.login = "operator";
        record.password = "0cc175b9c0f1b6a831c399e269772661";
        return accept;
    }
    void save(const Credentials &record) override { saved << record.login + '@' + record.url; }

    bool accept = true;
    bool remember = false;
    int asked = 0;
    QByteArray url;
    QList<QByteArray> saved;
};

} // namespace

class LinkTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void logsInWithTheAddress_data();
    void logsInWithTheAddress();
    void acceptsALoginReplyInPieces();
    void acceptsNothingButTheLoginFrames_data();
    void acceptsNothingButTheLoginFrames();
    void readsRepliesByteByByte();
    void waitsForTheRestOfAReply();
    void stopsAtAWrongReply_data();
    void stopsAtAWrongReply();
    void startsOverAfterAFault();

    void reportsAWrongAddress();
    void reportsAnUnreachableRecorder();
    void reportsASecondLoad();
    void reportsAConnectionNobodyAskedFor();
    void reportsAConnectionClosedInMidList();
    void reportsAnOperationNobodyAskedFor();
    void endsAnEmptyListAfterLogin();
    void announcesTheEndBeforeItIsIdle();
    void survivesAnEventLoopInAReceiver();

    void reportsARefusedLoginWithNobodyToAsk();
    void reportsACancelledLogin();
    void asksForAnotherLogin();
    void fetchesAfterARefusedSend();
};

void LinkTest::logsInWithTheAddress_data()
{
    QTest::addColumn<QString>("login");
    QTest::addColumn<QString>("password");
    QTest::newRow("plain") << "guest"
                           << "secret";
    QTest::newRow("colon in the login") << "a:b"
                                        << "c";
    QTest::newRow("at in the password") << "a"
                                        << "p@x";
    QTest::newRow("slashes") << "a/b"
                             << "c/d/";
    QTest::newRow("not only Latin letters") << "иван"
                                            << "пароль";
    QTest::newRow("empty") << ""
                           << "";
}

void LinkTest::logsInWithTheAddress()
{
    QFETCH(QString, login);
    QFETCH(QString, password);
    FakeRecorder recorder;
    recorder.login(login, password).reply("GET SETUP\r\n", NoFiles).expectClosed();
    NotedStore store(recorder.address(login, password));
    QVERIFY(store.fetch());
    QTRY_COMPARE(recorder.problem(), QString());
    QCOMPARE(store.value("general/network/login"), login);
    QCOMPARE(store.value("general/network/password"), password);
    QCOMPARE(store.value("general/network/url"), recorder.address("", "").mid(2));
    QCOMPARE(store.errors, QStringList());
}

void LinkTest::acceptsALoginReplyInPieces()
{
    FakeRecorder recorder;
    recorder.expect("\x04LOGIN=guest\r\nPASS=secret\r\n").send("LENGTH=16\r\n").send("VORN_ANSWER=OK\r\n");
    recorder.reply("GET SETUP\r\n", NoFiles).expectClosed();
    NotedStore store(recorder.address());
    QVERIFY(store.fetch());
    QTRY_COMPARE(recorder.problem(), QString());
}

void LinkTest::acceptsNothingButTheLoginFrames_data()
{
    QTest::addColumn<QByteArray>("reply");
    QTest::newRow("bytes behind the frame") << Ok + "x";
    QTest::newRow("refusal with a text") << QByteArray("LENGTH=24\r\nVORN_ANSWER=ERROR:busy\r\n");
    QTest::newRow("another frame first") << Refusal + Ok;
    QTest::newRow("an endless one") << QByteArray(3'000'000, 'x');
}

void LinkTest::acceptsNothingButTheLoginFrames()
{
    QFETCH(QByteArray, reply);
    FakeRecorder recorder;
    recorder.expect("\x04LOGIN=guest\r\nPASS=secret\r\n").send(reply).close();
    NotedStore store(recorder.address());
    store.load();
    QCOMPARE(store.awaitError(), "Network error 1");
    QCOMPARE(store.awaitError(), "OrbNetSetup::disconnected in wrong state 2");
    QCOMPARE(recorder.problem(), QString());
    QVERIFY(store.m_buffer.size() < 64);
}

void LinkTest::readsRepliesByteByByte()
{
    FakeRecorder recorder;
    recorder.expect("\x04LOGIN=guest\r\nPASS=secret\r\n").sendInPieces(Ok, 1).expect("GET SETUP\r\n");
    recorder.sendInPieces(
        FakeRecorder::frame("<a><di><difile/><difile name='f' get_command='GET F'/></di></a>"), 1);
    recorder.expect("GET F\r\n").sendInPieces(FakeRecorder::frame("LENGTH=3\r\nVORN_ANSWER=OK\r\nx"), 1);
    recorder.expectClosed();
    NotedStore store(recorder.address());
    QVERIFY(store.fetch());
    QTRY_COMPARE(recorder.problem(), QString());
    QCOMPARE(store.content("f"), "LENGTH=3\r\nVORN_ANSWER=OK\r\nx");
    QCOMPARE(store.errors, QStringList());
}

void LinkTest::waitsForTheRestOfAReply()
{
    FakeRecorder recorder;
    recorder.login().expect("GET SETUP\r\n").send("LENGTH=20\r\nabcdVORN_A").close();
    NotedStore store(recorder.address());
    store.load();
    QCOMPARE(store.awaitError(), "Network error 1");
    QCOMPARE(store.awaitError(), "OrbNetSetup::disconnected in wrong state 4");
    QCOMPARE(store.m_buffer, "LENGTH=20\r\nabcdVORN_A");
    QVERIFY(!store.fileExists("interface"));
}

void LinkTest::stopsAtAWrongReply_data()
{
    QTest::addColumn<QByteArray>("reply");
    QTest::addColumn<QString>("error");
    QTest::addColumn<QByteArray>("remains");

    const auto row = [](const char *name, const QByteArray &reply, const QString &error,
                        const QByteArray &remains) { QTest::newRow(name) << reply << error << remains; };
    row("error with a text", FakeRecorder::frame("abc", "VORN_ANSWER=ERROR:disk busy\r\n"),
        "Device error \"disk busy\"", "abc");
    row("error without a text", FakeRecorder::frame("", "VORN_ANSWER=ERROR\r\n"), "Device error \"\"", "");
    row("placeholder in the text", FakeRecorder::frame("", "VORN_ANSWER=ERROR:%1 %2\r\n"),
        "Device error \"%1 %2\"", "");
    row("answer of another form", FakeRecorder::frame("ab", "VORN_ANSWER=MAYBE\r\n"),
        "Unrecognized device error \"VORN_ANSWER=MAYBE\r\n\"", "ab");
    row("no answer line", "LENGTH=17\r\nwhat is an answer", "Wrong device answer", "what is an answer");
    row("too short for an answer", "LENGTH=2\r\nab", "Wrong device answer", "ab");
    row("longer than any reply", "LENGTH=50331649\r\nabc", "Wrong device answer", "LENGTH=50331649\r\nabc");
    row("longer than any number", "LENGTH=99999999999999999999\r\n", "Wrong device answer",
        "LENGTH=99999999999999999999\r\n");
}

void LinkTest::stopsAtAWrongReply()
{
    QFETCH(QByteArray, reply);
    QFETCH(QString, error);
    QFETCH(QByteArray, remains);
    FakeRecorder recorder;
    // What comes later, be it a good reply, starts nothing again.
    recorder.login().expect("GET SETUP\r\n").send(reply).send(FakeRecorder::frame("abc")).send("x");
    NotedStore store(recorder.address());
    store.load();
    QCOMPARE(store.awaitError(), error);
    QCOMPARE(store.m_buffer, remains);
    QTRY_COMPARE(recorder.problem(), QString());
    QTest::qWait(20);
    QCOMPARE(recorder.problem(), QString());
    QCOMPARE(store.errors, QStringList());
    QCOMPARE(store.m_state, 4);
    QCOMPARE(store.loads, 0);
    QCOMPARE(store.m_buffer, remains);
    QCOMPARE(store.activity(), QString());
}

void LinkTest::startsOverAfterAFault()
{
    FakeRecorder recorder;
    recorder.login().expect("GET SETUP\r\n").send("LENGTH=2\r\nab").expectClosed();
    recorder.startConnection().login().reply("PUT X\r\n").expectClosed();
    NotedStore store(recorder.address());
    store.load();
    QCOMPARE(store.awaitError(), "Wrong device answer");
    store.load();
    QCOMPARE(store.awaitError(), "OrbNetSetup::_connect in wrong state 4");
    store.setFilePath("interface", store.filePath("general"));
    store._push_file("interface", "<a><di><difile name='general.original' put_command='PUT X'/></di></a>");
    QVERIFY(store.sendAll());
    QTRY_COMPARE(recorder.problem(), QString());
    QCOMPARE(store.errors, QStringList());
}

void LinkTest::reportsAWrongAddress()
{
    NotedStore store("guest@127.0.0.1");
    store.load();
    QCOMPARE(store.errors, QStringList("Wrong network address \"guest@127.0.0.1\"<br>"
                                       "Correct one is login:password@address[:port]"));
    QCOMPARE(store.m_state, 0);
    QVERIFY(!store.fileExists("general"));
}

void LinkTest::reportsAnUnreachableRecorder()
{
    QString address;
    {
        FakeRecorder gone;
        address = gone.address();
    }
    NotedStore store(address);
    store.load();
    QCOMPARE(store.awaitError(), "Network error 0");
    // Deliberate: the state is kept, so that later attempts report it.
    store.load();
    QCOMPARE(store.awaitError(), "OrbNetSetup::_connect in wrong state 1");
    QCOMPARE(store.loads, 0);
}

void LinkTest::reportsASecondLoad()
{
    FakeRecorder recorder;
    recorder.login().fetchOf({}).expectClosed();
    NotedStore store(recorder.address());
    store.load();
    store.load();
    QCOMPARE(store.awaitError(), "OrbNetSetup::_connect in wrong state 1");
    QTRY_COMPARE(store.loads, 1);
}

void LinkTest::reportsAConnectionNobodyAskedFor()
{
    FakeRecorder recorder;
    NotedStore store(recorder.address());
    store.load();
    store.m_state = 0;
    QCOMPARE(store.awaitError(), "OrbNetSetup::connected in wrong state 0");
}

void LinkTest::reportsAConnectionClosedInMidList()
{
    FakeRecorder recorder;
    recorder.login().reply("GET SETUP\r\n", "<a/>").expect("GET CONFIG\r\n").close();
    NotedStore store(recorder.address());
    store.load();
    QCOMPARE(store.awaitError(), "Network error 1");
    QCOMPARE(store.awaitError(), "OrbNetSetup::disconnected in wrong state 5");
    QCOMPARE(store.loads, 0);
    QCOMPARE(store.m_state, 5);
    QCOMPARE(store.commandCount(), 9);
}

void LinkTest::reportsAnOperationNobodyAskedFor()
{
    FakeRecorder recorder;
    recorder.login().expectClosed();
    NotedStore store(recorder.address());
    store.load();
    store.m_operation = 0;
    QCOMPARE(store.awaitError(), "OrbNetSetup::disconnected in wrong operation 0");
    QTRY_COMPARE(store.m_state, 0);
    QCOMPARE(store.loads + store.stores, 0);
}

void LinkTest::endsAnEmptyListAfterLogin()
{
    FakeRecorder recorder;
    recorder.login().expectClosed();
    NotedStore store(recorder.address());
    store._push_file("interface", NoFiles);
    QVERIFY(store.sendAll());
    QTRY_COMPARE(recorder.problem(), QString());
    QCOMPARE(store.percents, QList<int>{100});
    QCOMPARE(store.errors, QStringList());
}

void LinkTest::announcesTheEndBeforeItIsIdle()
{
    FakeRecorder recorder;
    recorder.login().fetchOf({}).expectClosed();
    NotedStore store(recorder.address());
    QObject::connect(&store, &OrbSetup::loadDone, &store, [&store] { store.load(); });
    QVERIFY(store.fetch());
    QCOMPARE(store.errors, QStringList("OrbNetSetup::_connect in wrong state 13"));
    QCOMPARE(store.commandCount(), 0);
    QCOMPARE(store.m_operation, 0);
}

void LinkTest::survivesAnEventLoopInAReceiver()
{
    FakeRecorder recorder;
    recorder.login().fetchOf({{"net", "A=1\n"}}).expectClosed();
    NotedStore store(recorder.address());
    // As a progress dialog does: the next reply arrives meanwhile, and the socket does not announce it.
    QObject::connect(&store, &OrbSetup::progress, &store, [] { QTest::qWait(20); });
    QVERIFY(store.fetch());
    QCOMPARE(store.value("net/untitled/A"), "1");
    QCOMPARE(store.errors, QStringList());
}

void LinkTest::reportsARefusedLoginWithNobodyToAsk()
{
    FakeRecorder recorder;
    recorder.expect("\x04LOGIN=guest\r\nPASS=secret\r\n").send(Refusal).expectClosed();
    NotedStore store(recorder.address());
    store.load();
    QCOMPARE(store.awaitError(), "Authorization failed");
    QTRY_COMPARE(recorder.problem(), QString());
    QCOMPARE(store.errors, QStringList());
    QCOMPARE(store.m_state, 0);
    QCOMPARE(store.m_operation, 0);
    QCOMPARE(recorder.connectionCount(), 1);
}

void LinkTest::reportsACancelledLogin()
{
    FakeRecorder recorder;
    recorder.expect("\x04LOGIN=guest\r\nPASS=secret\r\n").send(Refusal).expectClosed();
    recorder.startConnection().login().fetchOf({}).expectClosed();
    NotedStore store(recorder.address());
    auto source = std::make_unique<Answers>();
    Answers *answers = source.get();
    answers->accept = false;
    answers->remember = true;
    store.setCredentialsSource(std::move(source));
    store.load();
    QCOMPARE(store.awaitError(), "Authorization failed");
    QCOMPARE(answers->asked, 1);
    QCOMPARE(answers->url, recorder.address("", "").mid(2).toLatin1());
    QCOMPARE(answers->saved, QList<QByteArray>());
    // The user may try again.
    QVERIFY(store.fetch());
    QCOMPARE(store.errors, QStringList());
}

void LinkTest::asksForAnotherLogin()
{
    FakeRecorder recorder;
    recorder.expect("\x04LOGIN=guest\r\nPASS=secret\r\n").sendInPieces(Refusal, 20).expectClosed();
    recorder.startConnection().login("operator", "0cc175b9c0f1b6a831c399e269772661").fetchOf({});
    NotedStore store(recorder.address());
    auto source = std::make_unique<Answers>();
    Answers *answers = source.get();
    answers->remember = true;
    store.setCredentialsSource(std::move(source));
    QVERIFY(store.fetch());
    QTRY_COMPARE(recorder.problem(), QString());
    QCOMPARE(store.errors, QStringList());
    QCOMPARE(store.address(), recorder.address("operator", "0cc175b9c0f1b6a831c399e269772661"));
    QCOMPARE(answers->saved, QList<QByteArray>{"operator@" + answers->url});
}

void LinkTest::fetchesAfterARefusedSend()
{
    FakeRecorder recorder;
    recorder.expect("\x04LOGIN=guest\r\nPASS=secret\r\n").send(Refusal).expectClosed();
    recorder.startConnection().login("operator", "0cc175b9c0f1b6a831c399e269772661").fetchOf({});
    NotedStore store(recorder.address());
    store.setCredentialsSource(std::make_unique<Answers>());
    store.store();
    QTRY_COMPARE(store.loads, 1);
    QTRY_COMPARE(recorder.problem(), QString());
    QCOMPARE(store.stores, 0);
    QCOMPARE(store.errors, QStringList());
}

QTEST_GUILESS_MAIN(LinkTest)
#include "tst_link.moc"
