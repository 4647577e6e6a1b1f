#include "RawClient.h"

#include "recorder/RecorderServer.h"
#include "recorder/video/VideoService.h"
#include "support/TestTable.h"
#include "support/Waiting.h"

#include <QFile>
#include <QRegularExpression>
#include <QTcpSocket>
#include <QTemporaryDir>
#include <QTest>

using paravue::test::TestTable;
using recorder::RecorderServer;

namespace
{

const QByteArray Login = "\x01LOGIN=admin\r\nPASS=admin\r\n";

/// Receives the video and extracts the positions of the camera from it.
class Watcher
{
public:
    explicit Watcher(quint16 port, const QByteArray &login = Login)
    {
        QObject::connect(&m_socket, &QTcpSocket::readyRead, &m_socket, [this] { find(m_socket.readAll()); });
        m_socket.connectToHost("127.0.0.1", port);
        m_socket.write(login);
    }

    void send(const QByteArray &bytes) { m_socket.write(bytes); }
    bool isConnected() const { return m_socket.state() == QAbstractSocket::ConnectedState; }
    QByteArray last() const { return positions.isEmpty() ? QByteArray() : positions.constLast(); }

    QByteArrayList positions;

private:
    void find(const QByteArray &bytes)
    {
        m_bytes += bytes;
        // A record of stream 2 with the whole text.
        static const QRegularExpression record(
            "[\\x11-\\x13]\\x00\\xC0\\x02(-?\\d\\.\\d{3},-?\\d\\.\\d{3},\\d\\.\\d{3})",
            QRegularExpression::DotMatchesEverythingOption);
        auto found = record.globalMatch(QString::fromLatin1(m_bytes));
        qsizetype end = 0;
        while (found.hasNext()) {
            const QRegularExpressionMatch match = found.next();
            positions << match.captured(1).toLatin1();
            end = match.capturedEnd();
        }
        // The last record may be incomplete.
        m_bytes = m_bytes.mid(std::max(end, m_bytes.size() - 64));
    }

    QTcpSocket m_socket;
    QByteArray m_bytes;
};

} // namespace

/// The PTZ camera of the simulator, over TCP.
class TestRecorderPtz : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void turnsStepByStep();
    void ignoresInvalidCommands_data();
    void ignoresInvalidCommands();
    void turnsForAllowedUsersOnly_data();
    void turnsForAllowedUsersOnly();
    void limitsInvalidCommandsInTheLog();
    void readsSavedFiles();

private:
    void save(const QByteArray &streams);

    std::unique_ptr<QTemporaryDir> m_folder;
    std::unique_ptr<RecorderServer> m_server;
    QStringList m_log;
};

void TestRecorderPtz::init()
{
    m_folder = std::make_unique<QTemporaryDir>();
    m_server = std::make_unique<RecorderServer>(m_folder->path());
    // Positions are sent with pictures.
    recorder::VideoSettings fast = m_server->video().settings();
    fast.size = {160, 120};
    fast.rate = recorder::VideoSettings::MaxRate;
    QVERIFY(m_server->video().setSettings(fast));
    m_log.clear();
    connect(m_server.get(), &RecorderServer::logged, this, [this](const QString &line) { m_log << line; });
    QFile streams(m_server->filePath("streams"));
    QVERIFY(streams.open(QIODevice::WriteOnly));
    streams.write("[ ptz ]\nPAN='0.3'\nTILT='-0.9'\nZOOM='0.5'\nPOINT2='0.7,0.5,0.4,-0.96,0.44'\n"
                  "POINT3='0.5,0.8'\n");
    streams.close();
    QVERIFY2(m_server->listen(), qPrintable(m_server->errorString()));
}

void TestRecorderPtz::turnsStepByStep()
{
    Watcher watcher(m_server->port());
    AWAIT_COMPARE(watcher.positions, QByteArrayList{"0.300,-0.900,0.500"});
    watcher.send("PTZ GOTO 2\r\n");
    AWAIT_COMPARE(watcher.last(), "0.400,-0.960,0.440");
    double before = 0.3;
    for (const QByteArray &position : watcher.positions) {
        const double pan = position.split(',').constFirst().toDouble();
        QVERIFY2(pan >= before && pan < before + 0.1, watcher.positions.join(' ').constData());
        before = pan;
    }

    // Later clients get the position too, and all clients see the turns of others.
    Watcher other(m_server->port());
    AWAIT_COMPARE(other.positions, QByteArrayList{"0.400,-0.960,0.440"});
    other.send("PTZ POINT 9 0.1,0.1,0.35,-2,0.44,mine\r\nPTZ MOVE 0.5,-0.96,0.44\nPTZ GOTO 9\r\n");
    AWAIT_COMPARE(watcher.last(), "0.350,-1.000,0.440");
    QCOMPARE(m_server->ptz().point(9), "0.1,0.1,0.35,-2,0.44,mine");
}

void TestRecorderPtz::ignoresInvalidCommands_data()
{
    const TestTable<QByteArray> row("line");
    row("unknown", "PTZ DANCE");
    row("no number", "PTZ GOTO two");
    row("negative number", "PTZ GOTO -2");
    row("number of 40 digits", "PTZ GOTO " + QByteArray(39, '0') + "2x");
    row("point without a camera", "PTZ GOTO 3");
    row("point that is not there", "PTZ GOTO 4");
    row("point beyond the last", "PTZ POINT 65 0.1,0.1");
    row("point too long", "PTZ POINT 2 " + QByteArray(257, '1'));
    row("point of letters", "PTZ POINT 2 here,there");
    row("point of four numbers", "PTZ POINT 2 0.1,0.1,0.2,0.2");
    row("point without end", "PTZ POINT 2 0.1,inf");
    row("point with bytes", "PTZ POINT 2 0.1,0.1,0,0,0,\x1b[2J");
    row("two numbers", "PTZ MOVE 1,1");
    row("no numbers", "PTZ MOVE nan,inf,1");
    row("bytes", QByteArray("\x00\xff\x80 PTZ GOTO 2", 14));
}

void TestRecorderPtz::ignoresInvalidCommands()
{
    QFETCH(QByteArray, line);
    Watcher watcher(m_server->port());
    AWAIT_COMPARE(watcher.positions.size(), 1);
    m_log.clear();
    watcher.send(line + "\r\nPTZ MOVE 0.32,-0.9,0.5\r\n");
    AWAIT_COMPARE(watcher.last(), "0.320,-0.900,0.500");
    QVERIFY(watcher.isConnected());
    QCOMPARE(watcher.positions.size(), 2);
    QCOMPARE(m_server->ptz().point(2), "0.7,0.5,0.4,-0.96,0.44");
    QVERIFY2(!m_log.filter("ignored").isEmpty(), qPrintable(m_log.join('\n')));
}

void TestRecorderPtz::turnsForAllowedUsersOnly_data()
{
    const TestTable<QByteArray, QByteArray, bool> row("name", "right", "isObeyed");
    row("operator", "operator", "on", true);
    row("operator without the right", "operator", "off", false);
    row("viewer", "viewer", "on", false);
    row("administrator", "admin", "off", true);
}

void TestRecorderPtz::turnsForAllowedUsersOnly()
{
    QFETCH(QByteArray, name);
    QFETCH(QByteArray, right);
    QFETCH(bool, isObeyed);
    QFile users(m_server->filePath("users"));
    QVERIFY(users.open(QIODevice::WriteOnly));
    users.write("CNT=3\nNAME0='admin'\nPASSWD0='admin'\nLEVEL0=2\nNAME1='operator'\nPASSWD1='p'\nLEVEL1=1\n"
                "NAME2='viewer'\nPASSWD2='p'\nLEVEL2=0\nOPERATOR_PTZ='" +
                right + "'\n");
    users.close();
    Watcher watcher(m_server->port(),
                    "\x01LOGIN=" + name + "\r\nPASS=" + (name == "admin" ? "admin" : "p") + "\r\n");
    AWAIT_COMPARE(watcher.positions.size(), 1);
    watcher.send("PTZ POINT 5 0.1,0.2\r\nTHE END\r\n");
    AWAIT_VERIFY(!m_log.filter("unknown command").isEmpty());
    QCOMPARE(m_server->ptz().point(5), isObeyed ? QByteArray("0.1,0.2") : QByteArray());
    QCOMPARE(m_log.filter("ignored: not allowed").size(), isObeyed ? 0 : 1);
}

void TestRecorderPtz::limitsInvalidCommandsInTheLog()
{
    {
        Watcher watcher(m_server->port());
        AWAIT_COMPARE(watcher.positions.size(), 1);
        watcher.send(QByteArray("PTZ DANCE\r\n").repeated(500) + "PTZ POINT 5 0.1,0.2\r\n");
        AWAIT_COMPARE(m_server->ptz().point(5), "0.1,0.2");
    }
    AWAIT_VERIFY(!m_log.filter("disconnected").isEmpty());
    QCOMPARE(m_log.filter("PTZ DANCE").size(), 5);
    QVERIFY2(!m_log.filter("ignored: 495 more lines").isEmpty(), qPrintable(m_log.join('\n')));
}

void TestRecorderPtz::save(const QByteArray &streams)
{
    RawClient client(m_server->port());
    QVERIFY(client.logIn());
    QVERIFY(client.ask("PUT CONFIG\r\nLENGTH=" + QByteArray::number(streams.size()) + "\r\n" + streams)
                .contains("ANSWER=OK"));
}

void TestRecorderPtz::readsSavedFiles()
{
    Watcher watcher(m_server->port());
    AWAIT_COMPARE(watcher.positions.size(), 1);
    watcher.send("PTZ MOVE 0.34,-0.9,0.5\r\n");
    AWAIT_COMPARE(watcher.last(), "0.340,-0.900,0.500");
    // A client that saves all files sends the old position without asking for a turn.
    save("[ ptz ]\nPAN='0.3'\nTILT='-0.9'\nZOOM='0.5'\nPOINT1='0,0,0.38,-0.9,0.5'\n");
    QVERIFY(!m_server->ptz().isTurning());
    QCOMPARE(m_server->ptz().point(2), "");
    watcher.send("PTZ GOTO 1\r\n");
    AWAIT_COMPARE(watcher.last(), "0.380,-0.900,0.500");
    save("[ ptz ]\nPAN='0.3'\nTILT='-0.88'\nZOOM='0.5'\n");
    AWAIT_COMPARE(watcher.last(), "0.300,-0.880,0.500");
}

QTEST_GUILESS_MAIN(TestRecorderPtz)
#include "tst_recorder_ptz.moc"
