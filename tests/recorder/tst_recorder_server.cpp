#include "RawClient.h"

#include "recorder/RecorderServer.h"

#include <QCryptographicHash>
#include <QFile>
#include <QRandomGenerator>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QTest>

#include <zlib.h>

using recorder::RecorderServer;

namespace
{

const QByteArray Ok = "LENGTH=16\r\nVORN_ANSWER=OK\r\n";
const QByteArray LoginRefused = "LENGTH=19\r\nVORN_ANSWER=ERROR\r\n";

QByteArray readFile(const QString &path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray("unreadable");
}

void writeFile(const QString &path, const QByteArray &content)
{
    QFile file(path);
    QVERIFY(file.open(QIODevice::WriteOnly));
    file.write(content);
}

QByteArray answerTo(const QByteArray &body)
{
    return "LENGTH=" + QByteArray::number(body.size() + 16) + "\r\n" + body + "VORN_ANSWER=OK\r\n";
}

QByteArray put(const QByteArray &command, const QByteArray &body)
{
    return command + "\r\nLENGTH=" + QByteArray::number(body.size()) + "\r\n" + body;
}

QByteArray gunzip(QByteArray packed)
{
    z_stream stream{};
    if (inflateInit2(&stream, 15 + 16) != Z_OK)
        return {};
    QByteArray plain(16 * 1024 * 1024, '\0');
    stream.next_in = reinterpret_cast<Bytef *>(packed.data());
    stream.avail_in = uInt(packed.size());
    stream.next_out = reinterpret_cast<Bytef *>(plain.data());
    stream.avail_out = uInt(plain.size());
    const bool whole = inflate(&stream, Z_FINISH) == Z_STREAM_END && stream.avail_in == 0;
    plain.truncate(whole ? qsizetype(stream.total_out) : 0);
    inflateEnd(&stream);
    return plain;
}

} // namespace

class TestRecorderServer : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void cleanup();

    void logsInWith_data();
    void logsInWith();
    void countsUsersFromOneWhenThereIsNoFirstName();
    void closesAfterTooManyRefusedLogins();
    void handsOutFile_data();
    void handsOutFile();
    void packsTheDescription();
    void keepsWhatIsSent_data();
    void keepsWhatIsSent();
    void refuses_data();
    void refuses();
    void refusesAPutWithoutABody();
    void skipsABodyThatIsTooLarge();
    void closesOnALineWithoutEnd();
    void understandsSinglePieces();
    void outlivesGarbage();
    void servesTwoClientsAtOnce();
    void forgetsAHalfSentFile();
    void stopsReadingFromAClientThatDoesNotListen();
    void letsAnOperatorSaveEverythingButUsers();
    void letsAGuestReadOnly();
    void setsTheClock();
    void keepsTimeValuesThatWereNotSent();
    void showsNoPasswordInTheLog();
    void delaysAnswers();
    void keepsAFilledFolder();

private:
    void start();

    std::unique_ptr<QTemporaryDir> m_folder;
    std::unique_ptr<RecorderServer> m_server;
};

void TestRecorderServer::init()
{
    m_folder = std::make_unique<QTemporaryDir>();
    start();
}

void TestRecorderServer::cleanup()
{
    m_server.reset();
    m_folder.reset();
}

void TestRecorderServer::start()
{
    m_server = std::make_unique<RecorderServer>(m_folder->filePath("data"));
    QVERIFY2(m_server->listen(), qPrintable(m_server->errorString()));
    QVERIFY(m_server->port() != 0);
}

void TestRecorderServer::logsInWith_data()
{
    QTest::addColumn<QByteArray>("name");
    QTest::addColumn<QByteArray>("password");
    QTest::addColumn<bool>("accepted");
    const QByteArray admin = "21232f297a57a5a743894a0e4a801fc3";     // md5 of "admin"
    const QByteArray operatorD = "4b583376b2767b923c3e1da60d10de59"; // md5 of "operator"
    const QByteArray nothing = "d41d8cd98f00b204e9800998ecf8427e";   // md5 of ""
    QTest::newRow("clear text, stored clear") << QByteArray("admin") << QByteArray("admin") << true;
    QTest::newRow("digest, stored clear") << QByteArray("admin") << admin << true;
    QTest::newRow("digest, stored digest") << QByteArray("operator") << operatorD << true;
    QTest::newRow("clear text, stored digest") << QByteArray("operator") << QByteArray("operator") << true;
    QTest::newRow("digest of nothing") << QByteArray("guest") << nothing << true;
    QTest::newRow("empty password") << QByteArray("guest") << QByteArray() << true;
    QTest::newRow("wrong password") << QByteArray("admin") << QByteArray("Admin") << false;
    QTest::newRow("password of another user") << QByteArray("admin") << operatorD << false;
    QTest::newRow("unknown user") << QByteArray("root") << QByteArray("admin") << false;
    QTest::newRow("no user") << QByteArray() << QByteArray() << false;
}

void TestRecorderServer::logsInWith()
{
    QFETCH(QByteArray, name);
    QFETCH(QByteArray, password);
    QFETCH(bool, accepted);
    RawClient client(m_server->port());
    const QByteArray expected = accepted ? Ok : LoginRefused;
    QCOMPARE(client.ask("\x04LOGIN=" + name + "\r\nPASS=" + password + "\r\n", expected), expected);
    QCOMPARE(m_server->loggedInUsers(), accepted ? QStringList(QString::fromUtf8(name)) : QStringList());
}

void TestRecorderServer::countsUsersFromOneWhenThereIsNoFirstName()
{
    writeFile(m_server->filePath("users"),
              "CNT=2\nNAME1='ann'\nPASSWD1='a'\nLEVEL1=2\nNAME2='bob'\nPASSWD2='b'\n");
    RawClient client(m_server->port());
    QVERIFY(client.logIn("bob", "b"));
}

void TestRecorderServer::closesAfterTooManyRefusedLogins()
{
    RawClient client(m_server->port());
    for (int attempt = 0; attempt < 5; ++attempt)
        QCOMPARE(client.ask("\x04LOGIN=admin\r\nPASS=guess\r\n", LoginRefused), LoginRefused);
    client.send("\x04LOGIN=admin\r\nPASS=admin\r\n");
    QCOMPARE(client.receiveUntilClosed(), QByteArray());
    QVERIFY(!client.isConnected());
}

void TestRecorderServer::handsOutFile_data()
{
    QTest::addColumn<QByteArray>("command");
    QTest::addColumn<QString>("file");
    QTest::newRow("streams") << QByteArray("GET CONFIG\r\n") << "streams";
    QTest::newRow("net") << QByteArray("GET NET CONFIG\r\n") << "net";
    QTest::newRow("timers") << QByteArray("GET TIMER CONFIG\r\n") << "timers";
    QTest::newRow("soft") << QByteArray("GET SOFT CONFIG\r\n") << "soft";
    QTest::newRow("disk") << QByteArray("GET DISK CONFIG\r\n") << "disk";
    QTest::newRow("users") << QByteArray("GET USER CONFIG\r\n") << "users";
    QTest::newRow("state") << QByteArray("GET STATE CONFIG\r\n") << "state";
}

void TestRecorderServer::handsOutFile()
{
    QFETCH(QByteArray, command);
    QFETCH(QString, file);
    RawClient client(m_server->port());
    QVERIFY(client.logIn());
    const QByteArray expected = answerTo(readFile(m_server->filePath(file)));
    QVERIFY(expected.size() > 100);
    QCOMPARE(client.ask(command, expected), expected);

    QVERIFY(QFile::remove(m_server->filePath(file)));
    client.send(command);
    const QByteArray text = "VORN_ANSWER=ERROR:there is no file " + file.toUtf8() + "\r\n";
    QCOMPARE(client.receiveFrame(), "LENGTH=" + QByteArray::number(text.size()) + "\r\n" + text);
}

void TestRecorderServer::packsTheDescription()
{
    RawClient client(m_server->port());
    QVERIFY(client.logIn());
    for (const QByteArray &content : {readFile(m_server->filePath("interface")), QByteArray("<pvsetup/>")}) {
        writeFile(m_server->filePath("interface"), content);
        client.send("GET SETUP\r\n");
        QByteArray frame = client.receiveFrame();
        QVERIFY(frame.endsWith("VORN_ANSWER=OK\r\n"));
        frame.chop(16);
        QCOMPARE(gunzip(frame.mid(frame.indexOf("\r\n") + 2)), content);
    }
}

void TestRecorderServer::keepsWhatIsSent_data()
{
    QTest::addColumn<QByteArray>("subject");
    QTest::addColumn<QString>("file");
    QTest::addColumn<QByteArray>("body");
    const auto row = [](const char *subject, const char *file, const QByteArray &body) {
        QTest::newRow(file) << QByteArray(subject) << QString::fromLatin1(file) << body;
    };
    row("CONFIG", "streams", "; note\n[ common ]\nname = 'Tür 1'\n\n[ stream_0 ]\nhue=50\n");
    row("NET CONFIG", "net", "A=1\nB=2\n");
    row("TIME CONFIG", "time",
        "YYYYMMDDHHMMSS = \nTIME_ZONE='UTC+1'\nUSENTP=1\nTIME_SERVER=''\nNTP_SYNC=1\nNTP_PERIOD=1\n"
        "DATE_FORMAT='ymd'\nCLOCK_OVERLAY='off'\n");
    row("TIMER CONFIG", "timers", "[ camera_0 ]\r\nmode = 'off'\r\n");
    row("DISK CONFIG", "disk", "KEEP_DAYS=7");
    row("USER CONFIG", "users", "CNT=1\nNAME0='admin'\nPASSWD0='new'\nLEVEL0=2\n");
    row("STATE CONFIG", "state", "\n#! s/A *= *[^{}]*/A = '{net/untitled/IP}'/\n[ a ]\n\tA = '\"'\n");
}

void TestRecorderServer::keepsWhatIsSent()
{
    QFETCH(QByteArray, subject);
    QFETCH(QString, file);
    QFETCH(QByteArray, body);
    QSignalSpy received(m_server.get(), &RecorderServer::fileReceived);
    RawClient client(m_server->port());
    QVERIFY(client.logIn());
    // As clients write: the command on its own, then the length together with the body.
    client.send("PUT " + subject + "\r\n");
    QCOMPARE(client.ask("LENGTH=" + QByteArray::number(body.size()) + "\r\n" + body, Ok), Ok);
    QCOMPARE(readFile(m_server->filePath(file)), body);
    QCOMPARE(received, (QList<QVariantList>{{file, body}}));
    QVERIFY(!(QFile::permissions(m_server->filePath(file)) & (QFile::ReadGroup | QFile::ReadOther)));

    if (file == "time")
        return; // what is handed out tells the time
    const QByteArray expected = answerTo(body);
    QCOMPARE(client.ask("GET " + subject + "\r\n", expected), expected);
}

void TestRecorderServer::refuses_data()
{
    QTest::addColumn<QByteArray>("request");
    QTest::addColumn<QByteArray>("answer");
    const auto row = [](const char *name, const QByteArray &request, const QByteArray &answer) {
        QTest::newRow(name) << request << answer;
    };
    const QByteArray unknown = "LENGTH=35\r\nVORN_ANSWER=ERROR:unknown command\r\n";
    row("unknown command", "GET LUNCH\r\n", unknown);
    row("empty line", "\r\n", unknown);
    row("small letters", "get config\r\n", unknown);
    row("two blanks", "GET  CONFIG\r\n", unknown);
    row("surplus word", "GET CONFIG NOW\r\n", unknown);
    row("device function", "DO REBOOT\r\n", unknown);
    row("device function with a body", "DO FORMAT\r\nLENGTH=11\r\nDISC='USB'\n", unknown);
    row("read-only list", "PUT SOFT CONFIG\r\nLENGTH=20\r\nPACKAGE_DELETE=base\n",
        "LENGTH=46\r\nVORN_ANSWER=ERROR:the file soft is read-only\r\n");
    row("read-only description", "PUT SETUP\r\nLENGTH=3\r\n<a>",
        "LENGTH=51\r\nVORN_ANSWER=ERROR:the file interface is read-only\r\n");
    row("no bytes", "PUT NET CONFIG\r\nLENGTH=0\r\n",
        "LENGTH=41\r\nVORN_ANSWER=ERROR:the file net is empty\r\n");
    row("only blanks", "PUT NET CONFIG\r\nLENGTH=3\r\n \r\n",
        "LENGTH=37\r\nVORN_ANSWER=ERROR:the file is empty\r\n");
    row("no values", "PUT NET CONFIG\r\nLENGTH=7\r\n; note\n",
        "LENGTH=44\r\nVORN_ANSWER=ERROR:the file holds no values\r\n");
    row("no ini text", "PUT NET CONFIG\r\nLENGTH=11\r\nA=1\nhello!\n",
        "LENGTH=59\r\nVORN_ANSWER=ERROR:line 2 is neither a section nor a value\r\n");
    row("no UTF-8", "PUT NET CONFIG\r\nLENGTH=4\r\nA=\xff\n",
        "LENGTH=46\r\nVORN_ANSWER=ERROR:the file is not UTF-8 text\r\n");
    row("zero byte", put("PUT NET CONFIG", QByteArray("A=\0\n", 4)),
        "LENGTH=46\r\nVORN_ANSWER=ERROR:the file is not UTF-8 text\r\n");
    row("date that does not exist", put("PUT TIME CONFIG", "YYYYMMDDHHMMSS='20240230120000'"),
        "LENGTH=38\r\nVORN_ANSWER=ERROR:wrong date or time\r\n");
    row("users without an administrator", put("PUT USER CONFIG", "CNT=1\nNAME0='a'\nPASSWD0=''\nLEVEL0=1\n"),
        "LENGTH=50\r\nVORN_ANSWER=ERROR:no administrator would be left\r\n");
    row("user named twice", put("PUT USER CONFIG", "CNT=2\nNAME0='a'\nLEVEL0=2\nNAME1='a'\nLEVEL1=2\n"),
        "LENGTH=49\r\nVORN_ANSWER=ERROR:the user name a is used twice\r\n");
    row("length without a command", "LENGTH=3\r\nA=1",
        "LENGTH=46\r\nVORN_ANSWER=ERROR:a length without a command\r\n");
}

void TestRecorderServer::refuses()
{
    QFETCH(QByteArray, request);
    QFETCH(QByteArray, answer);
    QHash<QString, QByteArray> before;
    const QStringList files = {"interface", "streams", "net",   "time", "timers",
                               "soft",      "disk",    "users", "state"};
    for (const QString &file : files)
        before.insert(file, readFile(m_server->filePath(file)));

    RawClient stranger(m_server->port());
    const QByteArray logInFirst = "LENGTH=32\r\nVORN_ANSWER=ERROR:log in first\r\n";
    QCOMPARE(stranger.ask("GET CONFIG\r\n", logInFirst), logInFirst);

    RawClient client(m_server->port());
    QVERIFY(client.logIn());
    QCOMPARE(client.ask(request, answer), answer);
    for (const QString &file : files)
        QCOMPARE(readFile(m_server->filePath(file)), before.value(file));
    // The conversation goes on where the refused request ended.
    const QByteArray soft = answerTo(before.value("soft"));
    QCOMPARE(client.ask("GET SOFT CONFIG\r\n", soft), soft);
}

void TestRecorderServer::refusesAPutWithoutABody()
{
    m_server->setBodyTimeout(50);
    const QByteArray before = readFile(m_server->filePath("net"));
    RawClient client(m_server->port());
    QVERIFY(client.logIn());
    const QByteArray noBody = "LENGTH=52\r\nVORN_ANSWER=ERROR:the file net came without a body\r\n";
    QCOMPARE(client.ask("PUT NET CONFIG\r\n", noBody), noBody);

    const QByteArray noLength = "LENGTH=54\r\nVORN_ANSWER=ERROR:the file net came without a length\r\n";
    const QByteArray both = noLength + answerTo(before);
    QCOMPARE(client.ask("PUT NET CONFIG\r\nGET NET CONFIG\r\n", both), both);
}

void TestRecorderServer::skipsABodyThatIsTooLarge()
{
    constexpr int Size = 8 * 1024 * 1024 + 1;
    const QByteArray before = readFile(m_server->filePath("net"));
    RawClient client(m_server->port());
    QVERIFY(client.logIn());
    const QByteArray tooLarge = "LENGTH=45\r\nVORN_ANSWER=ERROR:the file net is too large\r\n";
    QCOMPARE(client.ask("PUT NET CONFIG\r\nLENGTH=" + QByteArray::number(Size) + "\r\n", tooLarge), tooLarge);
    const QByteArray kept = answerTo(before);
    QCOMPARE(client.ask(QByteArray(Size, '\n') + "GET NET CONFIG\r\n", kept), kept);

    for (const QByteArray length : {"99999999999999999999", "-1", "", "12 ", "0x10"}) {
        RawClient other(m_server->port());
        QVERIFY(other.logIn());
        const QByteArray wrong = "LENGTH=32\r\nVORN_ANSWER=ERROR:wrong length\r\n";
        QCOMPARE(other.ask("PUT NET CONFIG\r\nLENGTH=" + length + "\r\nA=1\n", wrong), wrong);
    }
    QCOMPARE(readFile(m_server->filePath("net")), before);
}

void TestRecorderServer::closesOnALineWithoutEnd()
{
    RawClient client(m_server->port());
    QVERIFY(client.logIn());
    for (int piece = 0; piece < 100; ++piece)
        client.send(QByteArray(10000, 'x'));
    QCOMPARE(client.receiveUntilClosed(),
             QByteArray("LENGTH=48\r\nVORN_ANSWER=ERROR:the request line is too long\r\n"));
}

void TestRecorderServer::understandsSinglePieces()
{
    RawClient client(m_server->port());
    client.sendByteByByte("\x04LOGIN=admin\r\nPASS=admin\r\n");
    QCOMPARE(client.receive(Ok.size()), Ok);
    client.sendByteByByte("PUT NET CONFIG\r\nLENGTH=8\r\nA=1\nB=2\n");
    QCOMPARE(client.receive(Ok.size()), Ok);
    // And several requests in one packet are answered in their order.
    const QByteArray net = answerTo("A=1\nB=2\n");
    const QByteArray soft = answerTo(readFile(m_server->filePath("soft")));
    QCOMPARE(client.ask("GET NET CONFIG\r\nGET SOFT CONFIG\r\nGET NET CONFIG\r\n", net + soft + net),
             net + soft + net);
    // A piece may hold the end of one request and the start of the next.
    QCOMPARE(client.ask("GET NET CONFIG\r\nGET SOFT CON", net), net);
    QCOMPARE(client.ask("FIG\r\n", soft), soft);
}

void TestRecorderServer::outlivesGarbage()
{
    QRandomGenerator random(20240501);
    for (int round = 0; round < 40; ++round) {
        RawClient client(m_server->port());
        if (round % 2 == 0)
            QVERIFY(client.logIn());
        QByteArray garbage(1 + random.bounded(3000), '\0');
        for (char &byte : garbage)
            byte = random.bounded(4) == 0 ? "\r\n\x04=LENGTHPUT 019"[random.bounded(18)]
                                          : char(random.bounded(256));
        client.send(garbage);
        QCoreApplication::processEvents();
        if (round % 3 == 0)
            client.abort();
    }
    RawClient client(m_server->port());
    QVERIFY(client.logIn());
    QTRY_COMPARE(m_server->clientCount(), 1);
}

void TestRecorderServer::servesTwoClientsAtOnce()
{
    const QByteArray before = answerTo(readFile(m_server->filePath("net")));
    RawClient first(m_server->port());
    RawClient second(m_server->port());
    QVERIFY(first.logIn());
    QVERIFY(second.logIn("operator", "operator"));
    QStringList users = m_server->loggedInUsers();
    users.sort();
    QCOMPARE(users, QStringList({"admin", "operator"}));
    first.send("PUT NET CONFIG\r\nLENGTH=8\r\nA=1");
    QCOMPARE(second.ask("GET NET CONFIG\r\n", before), before);
    QCOMPARE(first.ask("\nB=2\n", Ok), Ok);
    const QByteArray after = answerTo("A=1\nB=2\n");
    QCOMPARE(second.ask("GET NET CONFIG\r\n", after), after);
}

void TestRecorderServer::forgetsAHalfSentFile()
{
    const QByteArray before = readFile(m_server->filePath("net"));
    {
        RawClient client(m_server->port());
        QVERIFY(client.logIn());
        client.send("PUT NET CONFIG\r\nLENGTH=8\r\nA=1\nB=");
        QCoreApplication::processEvents();
    }
    QTRY_COMPARE(m_server->clientCount(), 0);
    QCOMPARE(readFile(m_server->filePath("net")), before);
    QCOMPARE(QDir(m_folder->filePath("data")).entryList(QDir::Files | QDir::Hidden).size(), 9);
}

void TestRecorderServer::stopsReadingFromAClientThatDoesNotListen()
{
    constexpr int Requests = 4000;
    writeFile(m_server->filePath("net"), "A='" + QByteArray(100000, 'x') + "'\n");
    int answers = 0;
    connect(m_server.get(), &RecorderServer::logged, this,
            [&](const QString &line) { answers += line.contains("> OK, 100005") ? 1 : 0; });
    RawClient client(m_server->port());
    QVERIFY(client.logIn());
    client.deafen();
    client.send(QByteArray("GET NET CONFIG\r\n").repeated(Requests));
    QTRY_VERIFY(answers > 0);
    int last = 0;
    QTRY_VERIFY(std::exchange(last, answers) == answers);
    QTest::qWait(200);
    QVERIFY2(answers < Requests / 2, qPrintable(QString::number(answers)));
}

void TestRecorderServer::letsAnOperatorSaveEverythingButUsers()
{
    const QByteArray users = readFile(m_server->filePath("users"));
    RawClient client(m_server->port());
    QVERIFY(client.logIn("operator", "operator"));
    QCOMPARE(client.ask(put("PUT NET CONFIG", "A=1\n"), Ok), Ok);
    QByteArray rewritten = users;
    rewritten.replace("=", " = ");
    QCOMPARE(client.ask(put("PUT USER CONFIG", rewritten), Ok), Ok);
    const QByteArray refused = "LENGTH=58\r\nVORN_ANSWER=ERROR:only an administrator may change users\r\n";
    QByteArray raised = users;
    raised.replace("LEVEL1=1", "LEVEL1=2");
    QVERIFY(raised != users);
    QCOMPARE(client.ask(put("PUT USER CONFIG", raised), refused), refused);
}

void TestRecorderServer::letsAGuestReadOnly()
{
    const QByteArray net = readFile(m_server->filePath("net"));
    RawClient client(m_server->port());
    QVERIFY(client.logIn("guest", ""));
    QCOMPARE(client.ask("GET NET CONFIG\r\n", answerTo(net)), answerTo(net));
    const QByteArray refused = "LENGTH=58\r\nVORN_ANSWER=ERROR:the user guest may not change settings\r\n";
    QCOMPARE(client.ask(put("PUT NET CONFIG", "A=1\n"), refused), refused);
    QCOMPARE(readFile(m_server->filePath("net")), net);
}

void TestRecorderServer::setsTheClock()
{
    const auto clock = [](const QByteArray &answer) {
        const qsizetype start = answer.indexOf("YYYYMMDDHHMMSS='") + 16;
        return QDateTime::fromString(QString::fromLatin1(answer.mid(start, 14)), "yyyyMMddHHmmss");
    };
    RawClient client(m_server->port());
    QVERIFY(client.logIn());
    client.send("GET TIME CONFIG\r\n");
    QVERIFY(qAbs(clock(client.receiveFrame()).secsTo(QDateTime::currentDateTime())) < 60);

    QCOMPARE(client.ask(put("PUT TIME CONFIG", "YYYYMMDDHHMMSS=20010203040506"), Ok), Ok);
    const QDateTime set(QDate(2001, 2, 3), QTime(4, 5, 6));
    client.send("GET TIME CONFIG\r\n");
    QVERIFY(qAbs(set.secsTo(clock(client.receiveFrame()))) < 60);

    // Clients that save everything empty the key, so that an old reading does not become the time.
    QCOMPARE(client.ask(put("PUT TIME CONFIG", "YYYYMMDDHHMMSS = \nTIME_ZONE='UTC+1'\n"), Ok), Ok);
    client.send("GET TIME CONFIG\r\n");
    QVERIFY(qAbs(set.secsTo(clock(client.receiveFrame()))) < 60);
}

void TestRecorderServer::keepsTimeValuesThatWereNotSent()
{
    writeFile(m_server->filePath("time"), "# clock\r\nTIME_ZONE='UTC-3'\r\nUSENTP=0\r\nTIME_SERVER='a'\r\n");
    RawClient client(m_server->port());
    QVERIFY(client.logIn());
    QCOMPARE(client.ask(put("PUT TIME CONFIG", "USENTP=1\nTIME_SERVER=b\nNTP_SYNC=1\n"), Ok), Ok);
    QCOMPARE(readFile(m_server->filePath("time")),
             QByteArray("# clock\r\nTIME_ZONE='UTC-3'\r\nUSENTP='1'\r\nTIME_SERVER='b'\r\nNTP_SYNC='1'\n"));
}

void TestRecorderServer::showsNoPasswordInTheLog()
{
    QStringList log;
    connect(m_server.get(), &RecorderServer::logged, this, [&](const QString &line) { log += line; });
    RawClient client(m_server->port());
    const QByteArray refused = LoginRefused;
    QCOMPARE(client.ask("\x04LOGIN=admin\r\nPASS=secret-1\r\n", refused), refused);
    QCOMPARE(client.ask("\x04LOGIN=admin\r\npassword: secret-2\r\n", refused), refused);
    client.ask("PASS=secret-3\r\n", "LENGTH=32\r\nVORN_ANSWER=ERROR:log in first\r\n");
    QVERIFY(client.logIn());
    QCOMPARE(client.ask(put("PUT NET CONFIG", "SMTP_PASSWORD='secret-4'\n"), Ok), Ok);
    client.ask("line\x01\n", "LENGTH=35\r\nVORN_ANSWER=ERROR:unknown command\r\n");
    const QString text = log.join('\n');
    QVERIFY2(!text.contains("secret"), qPrintable(text));
    for (const char *expected :
         {"#1 < LOGIN=admin", "#1 < PASS=***", "#1 > ERROR, login refused", "#1 < PUT NET CONFIG",
          "#1 < LENGTH=25", "#1 > OK", "#1 < line\\x01", "#1 > ERROR: unknown command"})
        QVERIFY2(log.contains(expected), expected);
}

void TestRecorderServer::delaysAnswers()
{
    m_server->setReplyDelay(120);
    RawClient client(m_server->port());
    QElapsedTimer timer;
    timer.start();
    QVERIFY(client.logIn());
    QVERIFY(timer.elapsed() >= 110);
    const QByteArray net = answerTo(readFile(m_server->filePath("net")));
    QCOMPARE(client.ask("GET NET CONFIG\r\nGET NET CONFIG\r\n", net + net), net + net);
    QVERIFY(timer.elapsed() >= 330);
}

void TestRecorderServer::keepsAFilledFolder()
{
    writeFile(m_server->filePath("net"), "A=1\n");
    QVERIFY(QFile::remove(m_server->filePath("disk")));
    start();
    QCOMPARE(readFile(m_server->filePath("net")), QByteArray("A=1\n"));
    QVERIFY(!QFile::exists(m_server->filePath("disk")));

    RecorderServer impossible(m_server->filePath("net") + "/below-a-file");
    QVERIFY(!impossible.errorString().isEmpty());
    QVERIFY(!impossible.listen());
    RecorderServer taken(m_folder->filePath("other"));
    QVERIFY(!taken.listen(m_server->port()));
    QVERIFY(!taken.errorString().isEmpty());
}

QTEST_GUILESS_MAIN(TestRecorderServer)
#include "tst_recorder_server.moc"
