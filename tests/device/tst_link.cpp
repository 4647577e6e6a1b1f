#include "FakeRecorder.h"
#include "NotedStore.h"
#include "device/protocol/DeviceAddress.h"
#include "support/TestTable.h"
#include "support/Waiting.h"

#include <QTcpServer>
#include <QTcpSocket>

using namespace paravue::test;

namespace
{

const QByteArray Ok = "LENGTH=16\r\nVORN_ANSWER=OK\r\n";
const QByteArray Login = "\x04LOGIN=guest\r\nPASS=secret\r\n";
const QByteArray Refusal = "LENGTH=19\r\nVORN_ANSWER=ERROR\r\n";
const QByteArray CutReply = "LENGTH=20\r\nabcdVORN_A";
const char *const OperatorPassword = "0cc175b9c0f1b6a831c399e269772661";
/// The description of a recorder that has nothing else to fetch.
const QByteArray NoFiles = "<pvsetup><di/></pvsetup>";

struct Answers : public paravue::CredentialsSource {
    bool ask(paravue::Credentials &record) override
    {
        ++asked;
        isAfterRefusal = record.isAfterRefusal;
        url = record.url;
        record.remember = remember;
        record.login = "operator";
        record.password = OperatorPassword;
        return accept;
    }
    void save(const paravue::Credentials &record) override { saved << record.login + '@' + record.url; }

    bool accept = true;
    bool remember = true;
    int asked = 0;
    bool isAfterRefusal = false;
    QByteArray url;
    QList<QByteArray> saved;
};

/// Takes no more connections: further ones are never established.
class FullServer
{
public:
    bool listen()
    {
        m_server.setListenBacklogSize(0);
        if (!m_server.listen(QHostAddress::LocalHost))
            return false;
        m_server.pauseAccepting();
        do {
            m_clients.push_back(std::make_unique<QTcpSocket>());
            m_clients.back()->connectToHost(QHostAddress::LocalHost, m_server.serverPort());
        } while (m_clients.back()->waitForConnected(50) && m_clients.size() < 100);
        return m_clients.size() < 100;
    }
    QString address() const { return "a:b@127.0.0.1:" + QString::number(qint16(m_server.serverPort())); }

private:
    QTcpServer m_server;
    std::vector<std::unique_ptr<QTcpSocket>> m_clients;
};

Answers *answersFor(OrbNetSetup &store)
{
    auto source = std::make_unique<Answers>();
    Answers *answers = source.get();
    store.setCredentialsSource(std::move(source));
    return answers;
}

} // namespace

class TestLink : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void logsInWithTheAddress_data();
    void logsInWithTheAddress();
    void makesAddresses_data();
    void makesAddresses();
    void readsRepliesByteByByte();
    void stopsAtAWrongReply_data();
    void stopsAtAWrongReply();
    void startsOverAfterAFault();

    void reportsAWrongAddress();
    void reportsAnUnreachableRecorder();
    void reportsAConnectionThatTheRecorderCloses_data();
    void reportsAConnectionThatTheRecorderCloses();
    void explainsErrorsOfTheNetwork_data();
    void explainsErrorsOfTheNetwork();
    void noticesWhatIsNoRecorder_data();
    void noticesWhatIsNoRecorder();
    void waitsNoLongerThanItMay_data();
    void waitsNoLongerThanItMay();
    void reportsWhatNobodyAskedFor();
    void refusesToLoadBeforeItIsIdle();
    void survivesAnEventLoopInAReceiver();

    void reportsARefusedLogin_data();
    void reportsARefusedLogin();
    void asksForAnotherLogin_data();
    void asksForAnotherLogin();
    void tellsARefusalFromAMissingLogin();
};

void TestLink::logsInWithTheAddress_data()
{
    const TestTable<QString, QString> row("login", "password");
    row("plain", "guest", "secret");
    row("colon in the login", "a:b", "c");
    row("at in the password", "a", "p@x");
    row("slashes", "a/b", "c/d/");
    row("not only Latin letters", "иван", "пароль");
    row("empty", "", "");
}

void TestLink::logsInWithTheAddress()
{
    QFETCH(QString, login);
    QFETCH(QString, password);
    FakeRecorder recorder;
    recorder.login(login, password).reply("GET SETUP\r\n", NoFiles).expectClosed();
    recorder.startConnection().login(login, password).expectClosed();
    NotedStore store(recorder.address(login, password));
    QVERIFY(store.fetch());
    QVERIFY(store.sendAll());
    QCOMPARE(store.faultsWith(recorder), QStringList());
    QCOMPARE(store.value("general/network/login"), login);
    QCOMPARE(store.value("general/network/password"), password);
    QCOMPARE(store.value("general/network/url"), recorder.address("", "").mid(2));
    // There is nothing to fetch but the description, and nothing to send.
    QCOMPARE(store.percents, QList<int>({0, 100, 100}));
}

void TestLink::makesAddresses_data()
{
    const TestTable<QStringList, int, QString> row("parts", "port", "address");
    row("usual port", {"a", "b", "host"}, 5049, "a:b@host:5049");
    row("last short one", {"a", "b", "host"}, 32767, "a:b@host:32767");
    row("first long one", {"a", "b", "host"}, 32768, "a:b@host:-32768");
    row("last port", {"a:b", "c@d", "host"}, 65535, "a:b:c@d@host:-1");
    row("no port", {"a", "b", "host"}, 0, "");
    row("no host", {"a", "b", ""}, 1, "");
    row("IPv6", {"a", "b", "::1"}, 1, "");
    row("at in the host", {"a", "b", "c@host"}, 1, "");
    row("colon in the password", {"a", "b:c", "host"}, 1, "");
}

void TestLink::makesAddresses()
{
    QFETCH(QStringList, parts);
    QFETCH(int, port);
    QFETCH(QString, address);
    QCOMPARE(OrbNetSetup::deviceAddress(parts[0], parts[1], parts[2], quint16(port)), address);
    const auto parsed = paravue::DeviceAddress::parse(address);
    QCOMPARE(parsed.has_value(), !address.isEmpty());
    if (parsed) {
        QCOMPARE(QStringList({parsed->login, parsed->password, parsed->host}), parts);
        QCOMPARE(parsed->port, quint16(port));
    }
}

void TestLink::readsRepliesByteByByte()
{
    FakeRecorder recorder;
    recorder.expect(Login).sendInPieces(Ok, 1).expect("GET SETUP\r\n");
    recorder.sendInPieces(
        FakeRecorder::frame("<a><di><difile/><difile name='f' get_command='GET F'/></di></a>"), 1);
    recorder.expect("GET F\r\n").sendInPieces(FakeRecorder::frame("LENGTH=3\r\nVORN_ANSWER=OK\r\nx"), 1);
    recorder.expectClosed();
    NotedStore store(recorder.address());
    QVERIFY(store.fetch());
    QCOMPARE(store.content("f"), "LENGTH=3\r\nVORN_ANSWER=OK\r\nx");
    QCOMPARE(store.faultsWith(recorder), QStringList());
}

void TestLink::stopsAtAWrongReply_data()
{
    const TestTable<QByteArray, QString, QByteArray> row("reply", "error", "remains");
    row("error with a text", FakeRecorder::frame("abc", "VORN_ANSWER=ERROR:disk busy\r\n"),
        "Device error \"disk busy\"", "abc");
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

void TestLink::stopsAtAWrongReply()
{
    QFETCH(QByteArray, reply);
    QFETCH(QString, error);
    QFETCH(QByteArray, remains);
    FakeRecorder recorder;
    // What comes later, be it a good reply, starts nothing again.
    recorder.login().expect("GET SETUP\r\n").send(reply).send(FakeRecorder::frame("abc")).send("x").close();
    NotedStore store(recorder.address());
    store.load();
    QCOMPARE(store.awaitError(), error);
    // What comes at once with the reply stays behind it.
    const QByteArray kept = store.m_buffer;
    QVERIFY2(kept.startsWith(remains), kept);
    QCOMPARE(store.awaitError(), "Network error 1"); // the recorder has gone
    QCOMPARE(store.awaitError(), "OrbNetSetup::disconnected in wrong state 4");
    QCOMPARE(store.faultsWith(recorder), QStringList());
    QCOMPARE(store.m_state, 4);
    QCOMPARE(store.loads, 0);
    QCOMPARE(store.m_buffer, kept);
    QCOMPARE(store.activity(), QString());
}

void TestLink::startsOverAfterAFault()
{
    FakeRecorder recorder;
    recorder.login().expect("GET SETUP\r\n").send("LENGTH=2\r\nab").expectClosed();
    recorder.startConnection().login().reply("PUT X\r\n").expectClosed();
    NotedStore store(recorder.address());
    store.load();
    QCOMPARE(store.awaitError(), "Wrong device answer");
    store.setFilePath("interface", store.filePath("general"));
    store._push_file("interface", "<a><di><difile name='general.original' put_command='PUT X'/></di></a>");
    QVERIFY(store.sendAll());
    QCOMPARE(store.faultsWith(recorder), QStringList());
}

void TestLink::reportsAWrongAddress()
{
    NotedStore store("guest@127.0.0.1");
    store.load();
    QCOMPARE(store.errors, QStringList("Wrong network address \"guest@127.0.0.1\"<br>"
                                       "Correct one is login:password@address[:port]"));
    QCOMPARE(store.m_state, 0);
    QVERIFY(!store.fileExists("general"));
}

void TestLink::reportsAnUnreachableRecorder()
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

void TestLink::reportsAConnectionThatTheRecorderCloses_data()
{
    const TestTable<QList<QByteArray>, int> row("replies", "state");
    // Nothing but the two login frames is a reply to a login.
    row("bytes behind the login frame", {Ok + "x"}, 2);
    row("refusal with a text", {"LENGTH=24\r\nVORN_ANSWER=ERROR:busy\r\n"}, 2);
    row("another login frame first", {Refusal + Ok}, 2);
    row("endless login frame", {QByteArray(3'000'000, 'x')}, 2);
    row("reply cut", {Ok, CutReply}, 4);
    row("mid-list", {Ok, FakeRecorder::frame("<a/>"), ""}, 5);
}

void TestLink::reportsAConnectionThatTheRecorderCloses()
{
    QFETCH(QList<QByteArray>, replies);
    QFETCH(int, state);
    const QList<QByteArray> requests{Login, "GET SETUP\r\n", "GET CONFIG\r\n"};
    FakeRecorder recorder;
    for (qsizetype i = 0; i < replies.size(); ++i)
        recorder.expect(requests.at(i)).send(replies.at(i));
    recorder.close();
    NotedStore store(recorder.address());
    store.load();
    QCOMPARE(store.awaitError(), "Network error 1");
    QCOMPARE(store.awaitError(), QString("OrbNetSetup::disconnected in wrong state %1").arg(state));
    QCOMPARE(recorder.problem(), QString());
    QCOMPARE(store.loads, 0);
    QCOMPARE(store.m_state, state);
    QCOMPARE(store.fileExists("interface"), state == 5);
    QVERIFY(store.m_buffer.size() < 64);
    QVERIFY(state != 4 || store.m_buffer == CutReply);
    QVERIFY(state != 5 || store.commandCount() == 9);
}

void TestLink::explainsErrorsOfTheNetwork_data()
{
    const TestTable<int, int, QString> row("error", "state", "words");
    row("refused", QAbstractSocket::ConnectionRefusedError, 1, "refuses the connection");
    row("no route", QAbstractSocket::NetworkError, 1, "no route to the recorder");
    row("no such name", QAbstractSocket::HostNotFoundError, 1, "No device with this name");
    row("no answer", QAbstractSocket::SocketTimeoutError, 1, "does not answer");
    row("closed", QAbstractSocket::RemoteHostClosedError, 5, "has closed the connection");
    row("lost", QAbstractSocket::NetworkError, 5, "connection was lost");
}

void TestLink::explainsErrorsOfTheNetwork()
{
    QFETCH(int, error);
    QFETCH(int, state);
    QFETCH(QString, words);
    NotedStore store("a:b@host");
    store.m_state = state;
    store.error(QAbstractSocket::SocketError(error));
    const QString message = QString("Network error %1").arg(error);
    QCOMPARE(store.errors, QStringList(message));
    QVERIFY2(store.explanation(message).contains(words), qPrintable(store.explanation(message)));
    QCOMPARE(store.linkStatus().problem, store.explanation(message));
    QCOMPARE(store.linkStatus().cause, paravue::LinkStatus::Cause::Network);
}

void TestLink::noticesWhatIsNoRecorder_data()
{
    const TestTable<bool, QByteArray, QString> row("hasTimeout", "answer", "problem");
    const QString foreign = "What answers at this address is not a recorder";
    row("mail server", false, "220 mail.example.org\r\n", foreign);
    row("nobody waits for more", true, "220 mail.example.org\r\n", foreign);
    row("another frame", true, "LENGTH=24\r\nVORN_ANSWER=ERROR:busy\r\n",
        "The recorder's answer to the login cannot be understood");
}

void TestLink::noticesWhatIsNoRecorder()
{
    QFETCH(bool, hasTimeout);
    QFETCH(QByteArray, answer);
    QFETCH(QString, problem);
    FakeRecorder recorder;
    recorder.expect(Login).send(answer);
    NotedStore store(recorder.address());
    if (hasTimeout)
        store.setTimeouts({std::chrono::hours(1), std::chrono::hours(0)});
    store.load();
    AWAIT_COMPARE(store.linkStatus().problem, problem);
    QCOMPARE(store.linkStatus().state, paravue::LinkStatus::State::Failed);
    QCOMPARE(store.linkStatus().cause, paravue::LinkStatus::Cause::BadAnswer);
    // Without a time-out the exchange waits, as for any login reply.
    QCOMPARE(store.errors, hasTimeout ? QStringList(problem) : QStringList());
    QCOMPARE(store.m_state, 2);
}

void TestLink::waitsNoLongerThanItMay_data()
{
    const TestTable<bool, QByteArray> row("isConnected", "login");
    row("for the connection", false, "");
    row("for the login reply", true, Ok.first(20));
    row("for a reply", true, Ok);
}

void TestLink::waitsNoLongerThanItMay()
{
    QFETCH(bool, isConnected);
    QFETCH(QByteArray, login);
    FakeRecorder recorder;
    recorder.expect(Login).send(login);
    if (login == Ok)
        recorder.expect("GET SETUP\r\n").send(CutReply);
    recorder.expectClosed();
    recorder.startConnection().login().reply("GET SETUP\r\n", NoFiles).expectClosed();
    FullServer full;
    NotedStore store(recorder.address());
    if (isConnected) {
        store.setTimeouts({std::chrono::hours(1), std::chrono::milliseconds(100)});
        store.load();
    } else {
        QVERIFY(full.listen());
        store.setAddress(full.address());
        store.setTimeouts({std::chrono::milliseconds(100), std::chrono::hours(1)});
        store.load();
    }
    QCOMPARE(store.awaitError(), "No answer from the recorder for 0.1 s");
    QCOMPARE(store.linkStatus().state, paravue::LinkStatus::State::Failed);
    QCOMPARE(store.linkStatus().cause, paravue::LinkStatus::Cause::NoAnswer);
    if (!isConnected)
        return;
    store.resetLink();
    QVERIFY(store.fetch());
    QCOMPARE(store.faultsWith(recorder), QStringList());
}

void TestLink::reportsWhatNobodyAskedFor()
{
    FakeRecorder recorder;
    recorder.login().expectClosed();
    recorder.startConnection();
    NotedStore store(recorder.address());
    store.load();
    store.m_operation = 0;
    QCOMPARE(store.awaitError(), "OrbNetSetup::disconnected in wrong operation 0");
    AWAIT_COMPARE(store.m_state, 0);
    QCOMPARE(store.loads + store.stores, 0);
    store.load();
    store.m_state = 0;
    QCOMPARE(store.awaitError(), "OrbNetSetup::connected in wrong state 0");
}

void TestLink::refusesToLoadBeforeItIsIdle()
{
    FakeRecorder recorder;
    recorder.login().fetchOf({}).expectClosed();
    NotedStore store(recorder.address());
    QObject::connect(&store, &OrbSetup::loadDone, &store, [&store] { store.load(); });
    store.load();
    QVERIFY(store.fetch());
    QCOMPARE(store.faultsWith(recorder), QStringList({"OrbNetSetup::_connect in wrong state 1",
                                                      "OrbNetSetup::_connect in wrong state 13"}));
    QCOMPARE(store.loads, 1);
    QCOMPARE(store.commandCount(), 0);
    QCOMPARE(store.m_operation, 0);
}

void TestLink::survivesAnEventLoopInAReceiver()
{
    FakeRecorder recorder;
    recorder.login().fetchOf({{"net", "A=1\n"}}).expectClosed();
    NotedStore store(recorder.address());
    // As a progress dialog does: the next reply arrives meanwhile, and the socket does not announce it.
    const auto *socket = store.findChild<QTcpSocket *>();
    QObject::connect(&store, &OrbSetup::progress, &store, [&](int percent) {
        QVERIFY(percent == 100 || paravue::test::waitUntil([&] { return socket->bytesAvailable() > 0; }));
    });
    QVERIFY(store.fetch());
    QCOMPARE(store.value("net/untitled/A"), "1");
    QCOMPARE(store.faultsWith(recorder), QStringList());
}

void TestLink::reportsARefusedLogin_data()
{
    QTest::addColumn<bool>("asks");
    QTest::newRow("nobody to ask") << false;
    QTest::newRow("cancelled") << true;
}

void TestLink::reportsARefusedLogin()
{
    QFETCH(bool, asks);
    FakeRecorder recorder;
    recorder.expect(Login).send(Refusal).expectClosed();
    recorder.startConnection().login().fetchOf({}).expectClosed();
    NotedStore store(recorder.address());
    Answers *answers = asks ? answersFor(store) : nullptr;
    if (answers)
        answers->accept = false;
    store.load();
    QCOMPARE(store.awaitError(), "Authorization failed");
    AWAIT_COMPARE(store.m_state, 0);
    QCOMPARE(store.m_operation, 0);
    QCOMPARE(recorder.connectionCount(), 1);
    if (answers) {
        QCOMPARE(answers->asked, 1);
        QCOMPARE(answers->url, recorder.address("", "").mid(2).toLatin1());
        QCOMPARE(answers->saved, QList<QByteArray>());
    }
    // The user may try again.
    QVERIFY(store.fetch());
    QCOMPARE(store.faultsWith(recorder), QStringList());
}

void TestLink::asksForAnotherLogin_data()
{
    const TestTable<bool, bool> row("sends", "remember");
    row("to fetch", false, true);
    // A send that is refused ends in a fetch with the new login.
    row("to send", true, false);
}

void TestLink::asksForAnotherLogin()
{
    QFETCH(bool, sends);
    QFETCH(bool, remember);
    FakeRecorder recorder;
    recorder.expect(Login).sendInPieces(Refusal, 20).expectClosed();
    recorder.startConnection().login("operator", OperatorPassword).fetchOf({});
    NotedStore store(recorder.address());
    Answers *answers = answersFor(store);
    answers->remember = remember;
    sends ? store.store() : store.load();
    AWAIT_COMPARE(store.loads, 1);
    QCOMPARE(store.faultsWith(recorder), QStringList());
    QCOMPARE(store.stores, 0);
    QCOMPARE(store.address(), recorder.address("operator", OperatorPassword));
    QCOMPARE(answers->saved, remember ? QList{"operator@" + answers->url} : QList<QByteArray>());
}

/// The default login is nobody's: that it is refused is no mistake of the user.
void TestLink::tellsARefusalFromAMissingLogin()
{
    const QString digest = "d41d8cd98f00b204e9800998ecf8427e"; // of ""
    FakeRecorder refusing;
    const auto refuse = [&refusing](const QString &login, const QString &password) {
        refusing.expect("\x04LOGIN=" + login.toUtf8() + "\r\nPASS=" + password.toUtf8() + "\r\n")
            .send(Refusal);
        refusing.expectClosed().startConnection();
    };
    refuse("admin", digest);
    refuse("operator", OperatorPassword);
    NotedStore store(refusing.address("admin", digest));
    Answers *answers = answersFor(store);
    store.load();
    AWAIT_COMPARE(answers->asked, 1);
    QVERIFY(!answers->isAfterRefusal);
    AWAIT_COMPARE(answers->asked, 2);
    QVERIFY(answers->isAfterRefusal);
}

QTEST_GUILESS_MAIN(TestLink)
#include "tst_link.moc"
