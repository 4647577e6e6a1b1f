#include "RawClient.h"
#include "support/TemporaryPlace.h"
#include "support/TestTable.h"
#include "support/Waiting.h"

#include <QDir>
#include <QFileInfo>
#include <QProcess>
#include <QRegularExpression>
#include <QTcpServer>
#include <QTcpSocket>
#include <QTemporaryDir>
#include <QTest>

using paravue::test::setTemporaryPlace;
using paravue::test::TestTable;

class TestRecorderProgram : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void checksArguments_data();
    void checksArguments();
    void servesUntilItIsStopped();
    void endsWithItsInput();
    void endsAtOnceWithoutInput();
    void leavesNoFilesBehind();
    void recordsOnlyWhenItListens();
    void reportsFailedRecordings();
};

void TestRecorderProgram::checksArguments_data()
{
    const TestTable<QStringList, int, QString> row("arguments", "exitCode", "says");
    row("help", QStringList("--help"), 0, "--data <DIR>");
    row("version", QStringList("--version"), 0, "paravue-recorder ");
    row("unknown option", QStringList("--speed=3"), 2, "Unknown option 'speed'");
    row("port is no number", QStringList("--port=http"), 2, "--port takes a number");
    row("port too large", QStringList("--port=65536"), 2, "--port takes a number");
    row("negative delay", QStringList("--delay=-1"), 2, "--delay takes a number");
    row("port without value", QStringList("--port"), 2, "--port");
    row("empty folder name", QStringList("--data="), 2, "--data takes a folder");
    row("surplus word", QStringList("5049"), 2, "unexpected argument \"5049\"");
    row("no such codec", QStringList("--video-codec=h265"), 2,
        "--video-codec takes h264, mpeg4, mjpeg, not \"h265\"");
    row("size without height", QStringList("--video-size=640"), 2,
        "--video-size takes a size such as 640x360, not \"640\"");
    row("odd size", QStringList("--video-size=641x360"), 2, "--video-size: a picture has an even size");
    row("no pictures", QStringList("--video-rate=0"), 2, "--video-rate takes a number from 1 to 200");
    row("no such fault", QStringList("--video-fault=lost,fire"), 2,
        "--video-fault: there is no fault \"fire\", only garbage, lost, header");
    row("endless stall", QStringList("--video-fault=stall=20001"), 2,
        "--video-fault: a stall lasts 1 to 20000 milliseconds");
    row("every what", QStringList("--video-fault-every=5"), 2,
        "--video-fault-every says nothing without --video-fault");
    row("first of two lists", QStringList{"--video-fault=fire", "--video-fault=lost"}, 2,
        "there is no fault \"fire\"");
    row("clients", QStringList("--help"), 0, "32 clients");
    row("size of a file", QStringList{"--video=a.mp4", "--video-fault=size"}, 2,
        "size and codec change with the test picture only");
    row("no path in the usage", QStringList("--help"), 0, "Usage: paravue-recorder [options]");
    row("no such model", QStringList("--model=other"), 2, "there is no model \"other\", only: standard");
    row("no such file", QStringList("--video=/no/such/file.mp4"), 6,
        "cannot show /no/such/file.mp4: No such file or directory");
    row("no such folder", QStringList("--record=/no/such/file"), 6, "cannot record to /no/such/file: ");
    row("recording that exists", QStringList{"--port=0", "--record", RECORDER_PROGRAM}, 6,
        RECORDER_PROGRAM ": it exists already");
    row("recording of itself",
        QStringList{"--video", RECORDER_PROGRAM, "--record",
                    RECORDER_PROGRAM "/../" + QFileInfo(RECORDER_PROGRAM).fileName()},
        2, "--record: that is the file that --video shows");
    row("no such login", QStringList("--snapshot-login=none"), 2,
        "--snapshot-login takes basic, digest, both");
    row("no such answer fault", QStringList("--fault=fire"), 2,
        "--fault: there is no fault \"fire\", only bytewise, pieces[=SEED], late[=MS], never,");
    row("no such place", QStringList("--fault=never@GET LUNCH"), 2,
        "--fault: @ takes login, a command such as \"GET NET CONFIG\", the number of an answer or all, not "
        "\"GET LUNCH\"");
    row("second of two faults", QStringList{"--fault=never@1", "--fault=late=soon"}, 2,
        "--fault: late takes a number from 0 to 3600000, not \"soon\"");
    row("faults", QStringList("--help"), 0, "late[=MS]");
    row("no such address", QStringList("--address=here"), 2, "--address takes an IP address");
}

void TestRecorderProgram::checksArguments()
{
    QFETCH(QStringList, arguments);
    QFETCH(int, exitCode);
    QFETCH(QString, says);
    QProcess program;
    program.setProcessChannelMode(QProcess::MergedChannels);
    program.start(RECORDER_PROGRAM, arguments);
    QVERIFY(program.waitForFinished());
    QCOMPARE(program.exitCode(), exitCode);
    const QString output = QString::fromUtf8(program.readAll());
    QVERIFY2(output.contains(says), qPrintable(output));
}

void TestRecorderProgram::servesUntilItIsStopped()
{
    QTemporaryDir folder;
    const QString data = folder.filePath("new/data");
    QProcess program;
    program.start(RECORDER_PROGRAM, {"--port", "0", "--log", "--data", data});
    QVERIFY(paravue::test::waitUntil([&] { return program.canReadLine(); }));
    const QString line = QString::fromUtf8(program.readLine());
    const auto match = QRegularExpression("^Listening on 127\\.0\\.0\\.1:(\\d+)\r?\n$").match(line);
    QVERIFY2(match.hasMatch(), qPrintable(line));

    RawClient client(match.captured(1).toUShort());
    QVERIFY(client.logIn());
    const QByteArray ok = "LENGTH=16\r\nVORN_ANSWER=OK\r\n";
    QCOMPARE(client.ask("PUT NET CONFIG\r\nLENGTH=4\r\nA=1\n"), ok);
    QFile net(data + "/net");
    QVERIFY(net.open(QIODevice::ReadOnly));
    QCOMPARE(net.readAll(), QByteArray("A=1\n"));
    AWAIT_VERIFY(program.peek(100000).contains("#1 < PUT NET CONFIG"));

    program.terminate();
    QVERIFY(program.waitForFinished());
    QCOMPARE(program.exitStatus(), QProcess::NormalExit);
    QCOMPARE(program.exitCode(), 0);
    QCOMPARE(QDir(data).entryList(QDir::Files).size(), 10);
}

void TestRecorderProgram::endsWithItsInput()
{
    QTemporaryDir local;
    QProcess program;
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    setTemporaryPlace(environment, local.path());
    program.setProcessEnvironment(environment);
    program.start(RECORDER_PROGRAM, {"--port=0", "--until-input-ends"});
    AWAIT_VERIFY(program.canReadLine());
    program.write("ignored\n");
    QVERIFY(program.waitForBytesWritten());
    // It serves after it has read the line, so that was not taken for the end.
    const quint16 port = program.readLine().trimmed().split(':').last().toUShort();
    for (int client = 0; client < 3; ++client) {
        QTcpSocket socket;
        socket.connectToHost(QHostAddress::LocalHost, port);
        QVERIFY(socket.waitForConnected());
        socket.write("GET / HTTP/1.0\r\n\r\n");
        QVERIFY(socket.waitForReadyRead());
    }
    QVERIFY(!program.waitForFinished(0));
    QCOMPARE(program.state(), QProcess::Running);
    program.closeWriteChannel();
    QVERIFY(program.waitForFinished());
    QCOMPARE(program.exitStatus(), QProcess::NormalExit);
    QCOMPARE(program.exitCode(), 0);
    QVERIFY(QDir(local.path()).isEmpty());
}

void TestRecorderProgram::endsAtOnceWithoutInput()
{
#ifdef Q_OS_UNIX
    QProcess program;
    program.start("sh", {"-c", "exec \"$0\" --port=0 --until-input-ends <&-", RECORDER_PROGRAM});
    QVERIFY(program.waitForFinished());
    QCOMPARE(program.exitStatus(), QProcess::NormalExit);
    QCOMPARE(program.exitCode(), 0);
#else
    QSKIP("QProcess gives each process an input.");
#endif
}

/// What a killed one could not remove goes when the next one starts. The files of one that runs stay.
void TestRecorderProgram::leavesNoFilesBehind()
{
    QTemporaryDir local;
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    setTemporaryPlace(environment, local.path());
    const auto folders = [&local] { return QDir(local.path()).entryList(QDir::Dirs | QDir::NoDotAndDotDot); };
    const auto start = [&environment](QProcess &program) {
        program.setProcessEnvironment(environment);
        program.start(RECORDER_PROGRAM, {"--port=0"});
        return paravue::test::waitUntil([&] { return program.canReadLine(); });
    };
    QProcess killed;
    QProcess running;
    QVERIFY(start(killed));
    QVERIFY(start(running));
    const QStringList both = folders();
    QCOMPARE(both.size(), 2);
    killed.kill();
    QVERIFY(killed.waitForFinished());
    QCOMPARE(folders(), both);

    QProcess next;
    QVERIFY(start(next));
    QCOMPARE(folders().size(), 2);
    const QStringList kept = folders();
    QCOMPARE(
        std::count_if(kept.begin(), kept.end(), [&](const QString &name) { return both.contains(name); }), 1);
    for (QProcess *program : {&running, &next}) {
        program->terminate();
        QVERIFY(program->waitForFinished());
    }
    QCOMPARE(folders(), QStringList());
}

void TestRecorderProgram::recordsOnlyWhenItListens()
{
    QTemporaryDir folder;
    QTcpServer other;
    QVERIFY(other.listen(QHostAddress::LocalHost));
    QProcess program;
    program.start(RECORDER_PROGRAM,
                  {"--port", QString::number(other.serverPort()), "--record", folder.filePath("video.hvx3")});
    QVERIFY(program.waitForFinished());
    QCOMPARE(program.exitCode(), 3);
    QVERIFY(program.readAllStandardError().contains("cannot listen"));
    QVERIFY(QDir(folder.path()).isEmpty());
}

void TestRecorderProgram::reportsFailedRecordings()
{
#ifdef Q_OS_WIN
    QSKIP("needs a limit for files");
#else
    QTemporaryDir folder;
    const QString path = folder.filePath("video.hvx3");
    QProcess program;
    const QString limited = "trap '' XFSZ; ulimit -f 1024; exec \"$0\" \"$@\"";
    program.start("sh", {"-c", limited, RECORDER_PROGRAM, "--port=0", "--record", path, "--video-codec=mjpeg",
                         "--video-rate=200", "--video-size=1280x720"});
    const QByteArray wanted = "the recording ends: cannot write " + path.toUtf8() + ": File too large\n";
    QByteArray said;
    const bool isSaid = paravue::test::waitUntil(
        [&] { return (said += program.readAllStandardError()).contains(wanted); }, 20'000);
    QVERIFY2(isSaid, said.constData());
    program.terminate();
    QVERIFY(program.waitForFinished());
#endif
}

QTEST_GUILESS_MAIN(TestRecorderProgram)
#include "tst_recorder_program.moc"
