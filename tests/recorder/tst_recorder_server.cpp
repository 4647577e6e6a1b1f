#include "RawClient.h"
#include "support/OwnerOnly.h"

#include "recorder/RecorderServer.h"
#include "support/TestTable.h"
#include "support/Waiting.h"

#include <QDir>
#include <QElapsedTimer>
#include <QRandomGenerator>
#include <QSignalSpy>
#include <QTemporaryDir>

#include <deque>

#include <zlib.h>

using paravue::test::TestTable;
using recorder::RecorderServer;

namespace
{

const QByteArray Ok = "LENGTH=16\r\nVORN_ANSWER=OK\r\n";
const QByteArray LoginRefused = "LENGTH=19\r\nVORN_ANSWER=ERROR\r\n";

QByteArray frame(const QByteArray &text)
{
    return "LENGTH=" + QByteArray::number(text.size()) + "\r\n" + text;
}

QByteArray answerTo(const QByteArray &body)
{
    return frame(body + "VORN_ANSWER=OK\r\n");
}

QByteArray error(const QByteArray &reason)
{
    return frame("VORN_ANSWER=ERROR:" + reason + "\r\n");
}

QByteArray put(const QByteArray &subject, const QByteArray &body)
{
    return "PUT " + subject + " CONFIG\r\n" + frame(body);
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

    void checksLogins_data();
    void checksLogins();
    void countsUsersFromOneWithoutAFirstName();
    void exchangesFiles_data();
    void exchangesFiles();
    void compressesTheDescription();
    void refusesInvalidRequests_data();
    void refusesInvalidRequests();
    void limitsOperatorsAndGuests();
    void refusesAPutWithoutABody();
    void skipsABodyThatIsTooLarge();
    void disconnectsAfterGuessesAndEndlessLines();
    void readsRequestsByteByByte();
    void survivesGarbage();
    void servesTwoClientsAtOnce();
    void limitsConnections();
    void discardsIncompleteFiles();
    void stopsReadingFromClientsThatDoNotRead();
    void setsTheClock();
    void showsNoPasswordInTheLog();
    void delaysAnswers();
    void keepsAFilledFolder();

private:
    QByteArray read(const QString &name) const;
    void write(const QString &name, const QByteArray &content) const;
    /// Everything in the data folder, by file name.
    QMap<QString, QByteArray> contents() const;

    std::unique_ptr<QTemporaryDir> m_folder;
    std::unique_ptr<RecorderServer> m_server;
};

void TestRecorderServer::init()
{
    m_folder = std::make_unique<QTemporaryDir>();
    m_server = std::make_unique<RecorderServer>(m_folder->filePath("data"));
    QVERIFY2(m_server->listen(), qPrintable(m_server->errorString()));
}

void TestRecorderServer::cleanup()
{
    m_server.reset();
    m_folder.reset();
}

QByteArray TestRecorderServer::read(const QString &name) const
{
    QFile file(m_server->filePath(name));
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray("unreadable");
}

void TestRecorderServer::write(const QString &name, const QByteArray &content) const
{
    QFile file(m_server->filePath(name));
    QVERIFY(file.open(QIODevice::WriteOnly));
    file.write(content);
}

QMap<QString, QByteArray> TestRecorderServer::contents() const
{
    QMap<QString, QByteArray> found;
    for (const QFileInfo &file : QDir(m_folder->filePath("data")).entryInfoList(QDir::Files | QDir::Hidden))
        found.insert(file.fileName(), read(file.completeBaseName()));
    return found;
}

void TestRecorderServer::checksLogins_data()
{
    const TestTable<QByteArray, QByteArray, bool> row("name", "password", "accepted");
    const QByteArray admin = "21232f297a57a5a743894a0e4a801fc3";     // md5 of "admin"
    const QByteArray operatorD = "4b583376b2767b923c3e1da60d10de59"; // md5 of "operator"
    const QByteArray nothing = "d41d8cd98f00b204e9800998ecf8427e";   // md5 of ""
    row("clear text, stored clear", "admin", "admin", true);
    row("digest, stored clear", "admin", admin, true);
    row("digest in capitals", "admin", admin.toUpper(), true);
    row("digest, stored digest", "operator", operatorD, true);
    row("clear text, stored digest", "operator", "operator", true);
    row("digest of nothing", "guest", nothing, true);
    row("empty password", "guest", {}, true);
    row("wrong password", "admin", "Admin", false);
    row("password of another user", "admin", operatorD, false);
    row("unknown user", "root", "admin", false);
    row("no user", {}, {}, false);
}

void TestRecorderServer::checksLogins()
{
    QFETCH(QByteArray, name);
    QFETCH(QByteArray, password);
    QFETCH(bool, accepted);
    RawClient client(m_server->port());
    const QByteArray expected = accepted ? Ok : LoginRefused;
    QCOMPARE(client.ask("\x04LOGIN=" + name + "\r\nPASS=" + password + "\r\n"), expected);
    QCOMPARE(m_server->loggedInUsers(), accepted ? QStringList(QString::fromUtf8(name)) : QStringList());
}

void TestRecorderServer::countsUsersFromOneWithoutAFirstName()
{
    write("users", "CNT=2\nNAME1='ann'\nPASSWD1='a'\nLEVEL1=2\nNAME2='bob'\nPASSWD2='b'\n");
    RawClient client(m_server->port());
    QVERIFY(client.logIn("bob", "b"));
}

void TestRecorderServer::exchangesFiles_data()
{
    const TestTable<QByteArray, QByteArray> row("subject", "body");
    row("streams", "CONFIG", "; note\n[ common ]\nname = 'Tür 1'\n\n[ stream_0 ]\nhue=50\n");
    row("net", "NET CONFIG", "A=1\nB=2\n");
    row("time", "TIME CONFIG",
        "YYYYMMDDHHMMSS = \nTIME_ZONE='UTC+1'\nUSENTP=1\nTIME_SERVER=''\nNTP_SYNC=1\nNTP_PERIOD=1\n"
        "DATE_FORMAT='ymd'\nCLOCK_OVERLAY='off'\n");
    row("timers", "TIMER CONFIG", "[ camera_0 ]\r\nmode = 'off'\r\n");
    row("soft", "SOFT CONFIG", "");
    row("disk", "DISK CONFIG", "KEEP_DAYS=7");
    row("users", "USER CONFIG", "CNT=1\nNAME0='admin'\nPASSWD0='new'\nLEVEL0=2\n");
    row("state", "STATE CONFIG", "\n#! s/A *= *[^{}]*/A = '{net/untitled/IP}'/\n[ a ]\n\tA = '\"'\n");
}

void TestRecorderServer::exchangesFiles()
{
    QFETCH(QByteArray, subject);
    QFETCH(QByteArray, body);
    const QString file = QTest::currentDataTag();
    const bool hasClock = file == "time"; // clients get the present time in it
    QSignalSpy received(m_server.get(), &RecorderServer::fileReceived);
    RawClient client(m_server->port());
    QVERIFY(client.logIn());
    QVERIFY(read(file).size() > 100);
    if (!hasClock)
        QCOMPARE(client.ask("GET " + subject + "\r\n"), answerTo(read(file)));
    if (!body.isEmpty()) {
        // As clients write: the command on its own, then the length together with the body.
        client.send("PUT " + subject + "\r\n");
        QCOMPARE(client.ask(frame(body)), Ok);
        QCOMPARE(read(file), body);
        QCOMPARE(received, (QList<QVariantList>{{file, body}}));
        QVERIFY(paravue::test::isForOwnerOnly(m_server->filePath(file)));
        if (!hasClock)
            QCOMPARE(client.ask("GET " + subject + "\r\n"), answerTo(body));
    }
    QVERIFY(QFile::remove(m_server->filePath(file)));
    if (!hasClock)
        QCOMPARE(client.ask("GET " + subject + "\r\n"), error("there is no file " + file.toUtf8()));
}

void TestRecorderServer::compressesTheDescription()
{
    RawClient client(m_server->port());
    QVERIFY(client.logIn());
    for (const QByteArray &content : {read("interface"), QByteArray("<pvsetup/>")}) {
        write("interface", content);
        QByteArray answer = client.ask("GET SETUP\r\n");
        QVERIFY(answer.endsWith("VORN_ANSWER=OK\r\n"));
        answer.chop(16);
        QCOMPARE(gunzip(answer.mid(answer.indexOf("\r\n") + 2)), content);
    }
}

void TestRecorderServer::refusesInvalidRequests_data()
{
    const TestTable<QByteArray, QByteArray> row("request", "reason");
    row("unknown command", "GET LUNCH\r\n", "unknown command");
    row("empty line", "\r\n", "unknown command");
    row("small letters", "get config\r\n", "unknown command");
    row("two blanks", "GET  CONFIG\r\n", "unknown command");
    row("surplus word", "GET CONFIG NOW\r\n", "unknown command");
    row("read-only description", "PUT SETUP\r\nLENGTH=3\r\n<a>", "the file interface is read-only");
    row("no bytes", put("NET", ""), "the file net is empty");
    row("only blanks", put("NET", " \r\n"), "the file is empty");
    row("no values", put("NET", "; note\n"), "the file holds no values");
    row("no ini text", put("NET", "A=1\nhello!\n"), "line 2 is neither a section nor a value");
    row("no UTF-8", put("NET", "A=\xff\n"), "the file is not UTF-8 text");
    row("zero byte", put("NET", QByteArray("A=\0\n", 4)), "the file is not UTF-8 text");
    row("no such date", put("TIME", "YYYYMMDDHHMMSS='20240230120000'"), "wrong date or time");
    row("no administrator", put("USER", "CNT=1\nNAME0='a'\nPASSWD0=''\nLEVEL0=1\n"),
        "no administrator would be left");
    row("user named twice", put("USER", "CNT=2\nNAME0='a'\nLEVEL0=2\nNAME1='a'\nLEVEL1=2\n"),
        "the user name a is used twice");
    row("length without a command", "LENGTH=3\r\nA=1", "a length without a command");
}

void TestRecorderServer::refusesInvalidRequests()
{
    QFETCH(QByteArray, request);
    QFETCH(QByteArray, reason);
    const auto before = contents();
    QCOMPARE(before.size(), 10);
    const QSignalSpy received(m_server.get(), &RecorderServer::fileReceived);
    RawClient client(m_server->port());
    QCOMPARE(client.ask("GET CONFIG\r\n"), QByteArray("LENGTH=32\r\nVORN_ANSWER=ERROR:log in first\r\n"));
    QVERIFY(client.logIn());
    QCOMPARE(client.ask(request), error(reason));
    QCOMPARE(contents(), before);
    QCOMPARE(received.count(), 0);
    // The next request is read from the end of the refused one.
    QCOMPARE(client.ask("GET SOFT CONFIG\r\n"), answerTo(read("soft")));
}

void TestRecorderServer::limitsOperatorsAndGuests()
{
    RawClient client(m_server->port());
    QVERIFY(client.logIn("operator", "operator"));
    QCOMPARE(client.ask(put("NET", "A=1\n")), Ok);
    QByteArray users = read("users");
    users.replace("=", " = ");
    QCOMPARE(client.ask(put("USER", users)), Ok);
    QVERIFY(users.contains("LEVEL1 = 1"));
    users.replace("LEVEL1 = 1", "LEVEL1 = 2");
    QCOMPARE(client.ask(put("USER", users)), error("only an administrator may change users"));

    RawClient guest(m_server->port());
    QVERIFY(guest.logIn("guest", ""));
    QCOMPARE(guest.ask(put("NET", "A=2\n")), error("the user guest may not change settings"));
    QCOMPARE(guest.ask("GET NET CONFIG\r\n"), answerTo("A=1\n"));
    // A new login ends the earlier one, even if it is refused.
    QCOMPARE(guest.ask("\x04LOGIN=admin\r\nno password\r\n"), LoginRefused);
    QCOMPARE(guest.ask("GET NET CONFIG\r\n"), error("log in first"));
}

void TestRecorderServer::refusesAPutWithoutABody()
{
    m_server->setBodyTimeout(50);
    RawClient client(m_server->port());
    QVERIFY(client.logIn());
    QCOMPARE(client.ask("PUT NET CONFIG\r\n"), error("the file net came without a body"));
    const QByteArray both = error("the file net came without a length") + answerTo(read("net"));
    client.send("PUT NET CONFIG\r\nGET NET CONFIG\r\n");
    QCOMPARE(client.receive(both.size()), both);
}

void TestRecorderServer::skipsABodyThatIsTooLarge()
{
    constexpr int Size = 8 * 1024 * 1024 + 1;
    const QByteArray before = answerTo(read("net"));
    RawClient client(m_server->port());
    QVERIFY(client.logIn());
    QCOMPARE(client.ask("PUT NET CONFIG\r\nLENGTH=" + QByteArray::number(Size) + "\r\n"),
             error("the file net is too large"));
    QCOMPARE(client.ask(QByteArray(Size, '\n') + "GET NET CONFIG\r\n"), before);

    for (const QByteArray length : {"99999999999999999999", "-1", "", "12 ", "0x10"}) {
        RawClient other(m_server->port());
        QVERIFY(other.logIn());
        QCOMPARE(other.ask("PUT NET CONFIG\r\nLENGTH=" + length + "\r\nA=1\n"), error("wrong length"));
    }
    QCOMPARE(answerTo(read("net")), before);
}

void TestRecorderServer::disconnectsAfterGuessesAndEndlessLines()
{
    m_server->setDrainTimeout(50);
    RawClient endless(m_server->port());
    QVERIFY(endless.logIn());
    for (int piece = 0; piece < 100; ++piece)
        endless.send(QByteArray(10000, 'x'));
    RawClient guessing(m_server->port());
    for (int attempt = 0; attempt < 5; ++attempt)
        QCOMPARE(guessing.ask("\x04LOGIN=admin\r\nPASS=guess\r\n"), LoginRefused);
    guessing.send("\x04LOGIN=admin\r\nPASS=admin\r\n");
    QCOMPARE(endless.receiveUntilClosed(), error("the request line is too long"));
    QCOMPARE(guessing.receiveUntilClosed(), QByteArray());
}

void TestRecorderServer::readsRequestsByteByByte()
{
    RawClient client(m_server->port());
    client.sendByteByByte("\x04LOGIN=admin\r\nPASS=admin\r\n");
    QCOMPARE(client.receive(Ok.size()), Ok);
    client.sendByteByByte("PUT NET CONFIG\r\nLENGTH=8\r\nA=1\nB=2\n");
    QCOMPARE(client.receive(Ok.size()), Ok);
    // Several requests in one packet are answered in their order; the last is only begun.
    const QByteArray soft = answerTo(read("soft"));
    const QByteArray answers = answerTo("A=1\nB=2\n") + soft;
    client.send("GET NET CONFIG\r\nGET SOFT CONFIG\r\nGET SOFT CON");
    QCOMPARE(client.receive(answers.size()), answers);
    QCOMPARE(client.ask("FIG\r\n"), soft);
}

void TestRecorderServer::survivesGarbage()
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
    AWAIT_COMPARE(m_server->clientCount(), 1);
}

void TestRecorderServer::servesTwoClientsAtOnce()
{
    const QByteArray before = answerTo(read("net"));
    RawClient first(m_server->port());
    RawClient second(m_server->port());
    QVERIFY(first.logIn());
    QVERIFY(second.logIn("operator", "operator"));
    QStringList users = m_server->loggedInUsers();
    users.sort();
    QCOMPARE(users, QStringList({"admin", "operator"}));
    first.send("PUT NET CONFIG\r\nLENGTH=8\r\nA=1");
    QCOMPARE(second.ask("GET NET CONFIG\r\n"), before);
    QCOMPARE(first.ask("\nB=2\n"), Ok);
    QCOMPARE(second.ask("GET NET CONFIG\r\n"), answerTo("A=1\nB=2\n"));
}

void TestRecorderServer::limitsConnections()
{
    constexpr int Most = 32;
    std::deque<RawClient> clients;
    for (int i = 0; i < Most; ++i)
        clients.emplace_back(m_server->port());
    AWAIT_COMPARE(m_server->clientCount(), Most);
    QCOMPARE(RawClient(m_server->port()).receiveUntilClosed(), QByteArray());
    QVERIFY(clients.back().logIn());
}

void TestRecorderServer::discardsIncompleteFiles()
{
    const auto before = contents();
    {
        RawClient client(m_server->port());
        QVERIFY(client.logIn());
        client.send("PUT NET CONFIG\r\nLENGTH=8\r\nA=1\nB=");
        QCoreApplication::processEvents();
    }
    AWAIT_COMPARE(m_server->clientCount(), 0);
    QCOMPARE(contents(), before); // with no temporary file left either
}

void TestRecorderServer::stopsReadingFromClientsThatDoNotRead()
{
    constexpr int Requests = 4000;
    write("net", "A='" + QByteArray(100000, 'x') + "'\n");
    int answers = 0;
    connect(m_server.get(), &RecorderServer::logged, this,
            [&](const QString &line) { answers += line.contains("> OK, 100005") ? 1 : 0; });
    RawClient client(m_server->port());
    QVERIFY(client.logIn());
    client.stopReading();
    client.send(QByteArray("GET NET CONFIG\r\n").repeated(Requests));
    AWAIT_VERIFY(answers > 0);
    RawClient other(m_server->port()); // is served once the first one is no longer read
    QVERIFY(other.logIn());
    QVERIFY2(answers < Requests / 2, qPrintable(QString::number(answers)));
}

void TestRecorderServer::setsTheClock()
{
    RawClient client(m_server->port());
    QVERIFY(client.logIn());
    const auto secondsSince = [&](const QDateTime &time) {
        const QByteArray answer = client.ask("GET TIME CONFIG\r\n");
        const QByteArray digits = answer.mid(answer.indexOf("YYYYMMDDHHMMSS='") + 16, 14);
        return time.secsTo(QDateTime::fromString(QString::fromLatin1(digits), "yyyyMMddHHmmss"));
    };
    QDateTime here = QDateTime::currentDateTimeUtc().addSecs(3 * 60 * 60); // in the zone UTC-3
    here.setTimeSpec(Qt::LocalTime);
    QVERIFY(qAbs(secondsSince(here)) < 60);
    const QDateTime set(QDate(2001, 2, 3), QTime(4, 5, 6));
    QCOMPARE(client.ask(put("TIME", "YYYYMMDDHHMMSS=20010203040506")), Ok);
    QVERIFY(qAbs(secondsSince(set)) < 60);
    // Clients that save all files send an empty time, which must not set the clock.
    QCOMPARE(client.ask(put("TIME", "YYYYMMDDHHMMSS = \nTIME_ZONE='UTC+1'\n")), Ok);
    QVERIFY(qAbs(secondsSince(set.addSecs(-4 * 60 * 60))) < 60);

    // Values that are not sent stay.
    write("time", "# clock\r\nTIME_ZONE='UTC-3'\r\nUSENTP=0\r\nTIME_SERVER='a'\r\n");
    QCOMPARE(client.ask(put("TIME", "USENTP=1\nTIME_SERVER=b\nNTP_SYNC=1\n")), Ok);
    QCOMPARE(read("time"),
             QByteArray("# clock\r\nTIME_ZONE='UTC-3'\r\nUSENTP='1'\r\nTIME_SERVER='b'\r\nNTP_SYNC='1'\n"));
}

void TestRecorderServer::showsNoPasswordInTheLog()
{
    QStringList log;
    connect(m_server.get(), &RecorderServer::logged, this, [&](const QString &line) { log += line; });
    RawClient client(m_server->port());
    QCOMPARE(client.ask("\x04LOGIN=admin\r\nPASS=secret-1\r\n"), LoginRefused);
    QCOMPARE(client.ask("\x04LOGIN=admin\r\npassword: secret-2\r\n"), LoginRefused);
    client.ask("PASS=secret-3\r\n");
    QVERIFY(client.logIn());
    QCOMPARE(client.ask(put("NET", "SMTP_PASSWORD='secret-4'\n")), Ok);
    client.ask("line\x01\n");
    const QString text = log.join('\n');
    QVERIFY2(!text.contains("secret"), qPrintable(text));
    for (const char *expected :
         {"#1 < LOGIN=admin", "#1 < PASS=***", "#1 > ERROR, login refused", "#1 < PUT NET CONFIG",
          "#1 < LENGTH=25", "#1 > OK", "#1 < line\\x01", "#1 > ERROR: unknown command"})
        QVERIFY2(log.contains(expected), expected);
}

void TestRecorderServer::delaysAnswers()
{
    m_server->setReplyDelay(50);
    RawClient client(m_server->port());
    QElapsedTimer timer;
    timer.start();
    QVERIFY(client.logIn());
    QVERIFY(timer.elapsed() >= 45);
    const QByteArray both = answerTo(read("net")).repeated(2);
    client.send("GET NET CONFIG\r\nGET NET CONFIG\r\n");
    QCOMPARE(client.receive(both.size()), both);
    QVERIFY(timer.elapsed() >= 135);
}

void TestRecorderServer::keepsAFilledFolder()
{
    write("net", "A=1\n");
    QVERIFY(QFile::remove(m_server->filePath("disk")));
    const auto before = contents();
    RecorderServer taken(m_folder->filePath("data"));
    QCOMPARE(contents(), before);
    QVERIFY(!taken.listen(m_server->port()));
    QVERIFY(!taken.errorString().isEmpty());

    RecorderServer impossible(m_server->filePath("net") + "/below-a-file");
    QVERIFY(!impossible.errorString().isEmpty());
    QVERIFY(!impossible.listen());
}

QTEST_GUILESS_MAIN(TestRecorderServer)
#include "tst_recorder_server.moc"
