#include "RawClient.h"

#include "recorder/RecorderServer.h"
#include "recorder/protocol/AnswerFault.h"
#include "support/TestTable.h"
#include "support/Waiting.h"

#include <QElapsedTimer>
#include <QSignalSpy>
#include <QTemporaryDir>

#include <zlib.h>

using paravue::test::TestTable;
using recorder::AnswerFault;
using recorder::RecorderServer;

namespace
{

const QByteArray Ok = "LENGTH=16\r\nVORN_ANSWER=OK\r\n";
const QByteArray Refused = "LENGTH=19\r\nVORN_ANSWER=ERROR\r\n";
const QByteArray Garbage = "\x07garbage\xff\r\n";

/// What a gzip reader finds: the size of the content, or -1 when it is damaged, and its beginning.
struct Unpacked {
    qint64 size = 0;
    QByteArray start;
};

Unpacked unpack(QByteArray packed)
{
    Unpacked result;
    z_stream stream{};
    if (inflateInit2(&stream, 15 + 16) != Z_OK)
        return {-1, {}};
    stream.next_in = reinterpret_cast<Bytef *>(packed.data());
    stream.avail_in = uInt(packed.size());
    QByteArray piece(1024 * 1024, '\0');
    int status = Z_OK;
    while (status == Z_OK) {
        stream.next_out = reinterpret_cast<Bytef *>(piece.data());
        stream.avail_out = uInt(piece.size());
        status = inflate(&stream, Z_NO_FLUSH);
        result.start += piece.first(qMin<qsizetype>(300, piece.size() - stream.avail_out));
    }
    result.size = status == Z_STREAM_END ? qint64(stream.total_out) : -1;
    inflateEnd(&stream);
    return result;
}

} // namespace

class TestRecorderFaults : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void readsFaults_data();
    void readsFaults();
    void changesAnswers_data();
    void changesAnswers();
    void endsConnections_data();
    void endsConnections();
    void sendsPieces_data();
    void sendsPieces();
    void isLate();
    void refusesLogins();
    void replacesTheDescription_data();
    void replacesTheDescription();

private:
    void setFault(const QString &text);

    std::unique_ptr<QTemporaryDir> m_folder;
    std::unique_ptr<RecorderServer> m_server;
};

void TestRecorderFaults::init()
{
    m_server.reset();
    m_folder = std::make_unique<QTemporaryDir>();
    m_server = std::make_unique<RecorderServer>(m_folder->path());
    QVERIFY2(m_server->listen(), qPrintable(m_server->errorString()));
    QFile file(m_server->filePath("net"));
    QVERIFY(file.open(QIODevice::WriteOnly) && file.write("A=1\n") == 4);
}

void TestRecorderFaults::setFault(const QString &text)
{
    QString reason;
    const auto fault = recorder::readAnswerFault(text, reason);
    QVERIFY2(fault, qPrintable(reason));
    m_server->setFaults({*fault});
}

void TestRecorderFaults::readsFaults_data()
{
    const TestTable<QString> row("reason");
    row("never", "");
    row("late=0@all", "");
    row("error=a@b=c@login", "");
    row("length=-5@12", "");
    row("bomb@GET SETUP", "");
    row("", "there is no fault \"\", only");
    row("Never", "there is no fault \"Never\", only");
    row("never=3", "never takes no value");
    row("late=-1", "late takes a number from 0 to 3600000, not \"-1\"");
    row("refuse=0", "refuse takes a number from 1 to 1000000, not \"0\"");
    row("refuse@GET SETUP", "refuse is possible @login only");
    row("directives@3", "directives is possible @GET STATE CONFIG only");
    row("length", "length takes a number, less, more or none, not \"\"");
    row("length=-", "length takes a number, less, more or none, not \"-\"");
    row("length=12x", "length takes a number, less, more or none, not \"12x\"");
    row("never@", "@ takes login, a command such as");
    row("never@0", "@ takes login, a command such as");
}

void TestRecorderFaults::readsFaults()
{
    QFETCH(QString, reason);
    QString said;
    const auto fault = recorder::readAnswerFault(QTest::currentDataTag(), said);
    QCOMPARE(fault.has_value(), reason.isEmpty());
    QVERIFY2(reason.isEmpty() || said.startsWith(reason), qPrintable(said));
    QCOMPARE(said.isEmpty(), reason.isEmpty());
}

void TestRecorderFaults::changesAnswers_data()
{
    const QByteArray body = "A=1\nVORN_ANSWER=OK\r\n";
    const QByteArray good = "LENGTH=20\r\n" + body;
    const TestTable<QByteArray> row("answer");
    row("error", "LENGTH=19\r\nVORN_ANSWER=ERROR\r\n");
    row("error=a@b@all", "LENGTH=23\r\nVORN_ANSWER=ERROR:a@b\r\n");
    row("no-answer-line", "LENGTH=4\r\nA=1\n");
    row("length=0", "LENGTH=0\r\n" + body);
    row("length=less", "LENGTH=19\r\n" + body);
    row("length=more", "LENGTH=21\r\n" + body);
    row("length=9223372036854775808", "LENGTH=9223372036854775808\r\n" + body);
    row("length=-5", "LENGTH=-5\r\n" + body);
    row("length=none", body);
    row("garbage-before", Garbage + good);
    row("garbage-behind", good + Garbage);
    row("error@2", "LENGTH=19\r\nVORN_ANSWER=ERROR\r\n");
    // They apply elsewhere.
    row("error@1", good);
    row("error@login", good);
    row("error@GET SOFT CONFIG", good);
    row("directives", good);
}

void TestRecorderFaults::changesAnswers()
{
    QFETCH(QByteArray, answer);
    RawClient client(m_server->port());
    QVERIFY(client.logIn());
    setFault(QTest::currentDataTag());
    client.send("GET NET CONFIG\r\n");
    QCOMPARE(client.receive(answer.size()), answer);
    m_server->setFaults({});
    QCOMPARE(client.ask("GET NET CONFIG\r\n"), QByteArray("LENGTH=20\r\nA=1\nVORN_ANSWER=OK\r\n"));
}

void TestRecorderFaults::endsConnections_data()
{
    const TestTable<QByteArray, QString> row("received", "log");
    row("close-before", "", "#1 fault: close-before");
    row("close-within", "LENGTH=16\r\nVO", "#1 fault: close-within");
    row("close-after", Ok, "#1 fault: close-after");
    row("reset", "", "#1 fault: reset");
}

void TestRecorderFaults::endsConnections()
{
    QFETCH(QByteArray, received);
    QFETCH(QString, log);
    QStringList lines;
    connect(m_server.get(), &RecorderServer::logged, this, [&](const QString &line) { lines << line; });
    const QSignalSpy files(m_server.get(), &RecorderServer::fileReceived);
    RawClient client(m_server->port());
    QVERIFY(client.logIn());
    setFault(QTest::currentDataTag());
    client.send("PUT NET CONFIG\r\nLENGTH=4\r\nA=2\nPUT NET CONFIG\r\nLENGTH=4\r\nA=3\n");
    QCOMPARE(client.receiveUntilClosed().first(received.size()), received);
    // The command was carried out, the one behind it was not.
    QCOMPARE(files.size(), 1);
    QCOMPARE(files.first().at(1).toByteArray(), QByteArray("A=2\n"));
    QVERIFY2(lines.contains(log), qPrintable(lines.join('\n')));
    AWAIT_COMPARE(m_server->clientCount(), 0);
}

void TestRecorderFaults::sendsPieces_data()
{
    const TestTable<int> row("least");
    row("bytewise", 20);
    row("pieces", 2);
    row("pieces=2", 2);
}

void TestRecorderFaults::sendsPieces()
{
    QFETCH(int, least);
    setFault(QTest::currentDataTag());
    QTcpSocket client;
    client.connectToHost(QHostAddress::LocalHost, m_server->port());
    int pieces = 0;
    QByteArray received;
    connect(&client, &QTcpSocket::readyRead, this, [&] {
        ++pieces;
        received += client.readAll();
    });
    client.write("\x04LOGIN=admin\r\nPASS=admin\r\n");
    AWAIT_COMPARE(received, Ok);
    QVERIFY2(pieces >= least, qPrintable(QString::number(pieces)));
}

void TestRecorderFaults::isLate()
{
    RawClient client(m_server->port());
    QVERIFY(client.logIn());
    setFault("late=50@GET NET CONFIG");
    QElapsedTimer timer;
    timer.start();
    client.ask("GET NET CONFIG\r\n");
    QVERIFY(timer.elapsed() >= 45);
    // Nothing is sent behind an answer that does not come.
    setFault("never@GET NET CONFIG");
    client.send("GET NET CONFIG\r\nGET SOFT CONFIG\r\n");
    RawClient other(m_server->port());
    QVERIFY(other.logIn());
    QVERIFY(client.isConnected());
    QCOMPARE(client.receive(0), QByteArray());
}

void TestRecorderFaults::refusesLogins()
{
    setFault("refuse=2");
    const QByteArray login = "\x04LOGIN=admin\r\nPASS=admin\r\n";
    RawClient first(m_server->port());
    QCOMPARE(first.ask(login), Refused);
    RawClient second(m_server->port());
    QCOMPARE(second.ask(login), Refused);
    QVERIFY(m_server->loggedInUsers().isEmpty());
    QCOMPARE(second.ask(login), Ok);
}

void TestRecorderFaults::replacesTheDescription_data()
{
    const TestTable<qint64, QByteArray> row("least", "holds");
    row("truncated", -1, "<pvsetup");
    row("no-xml", 20, "described nowhere");
    row("no-gzip", -1, "");
    row("bomb", 64 * 1024 * 1024, "      ");
    row("deep", 1'300'000, "<item><item>");
    row("entities", 500, "<!DOCTYPE pvsetup [");
    row("controls", 11'000'000, "</item>\n<item type");
}

void TestRecorderFaults::replacesTheDescription()
{
    QFETCH(qint64, least);
    QFETCH(QByteArray, holds);
    setFault(QTest::currentDataTag());
    RawClient client(m_server->port());
    QVERIFY(client.logIn());
    QByteArray answer = client.ask("GET SETUP\r\n");
    QVERIFY(answer.endsWith("VORN_ANSWER=OK\r\n"));
    answer.chop(16);
    const Unpacked unpacked = unpack(answer.mid(answer.indexOf("\r\n") + 2));
    QCOMPARE(unpacked.size < 0, least < 0); // damaged
    QVERIFY2(unpacked.size >= least, qPrintable(QString::number(unpacked.size)));
    QVERIFY2(unpacked.start.contains(holds), unpacked.start.constData());
}

QTEST_GUILESS_MAIN(TestRecorderFaults)
#include "tst_recorder_faults.moc"
