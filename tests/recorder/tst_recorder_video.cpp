#include "RawClient.h"

#include "recorder/RecorderServer.h"
#include "recorder/video/VideoService.h"
#include "support/TestTable.h"
#include "support/Waiting.h"

#include <QCryptographicHash>
#include <QElapsedTimer>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QtEndian>

using namespace recorder;
using paravue::test::TestTable;

namespace
{

const QByteArray Ok = "LENGTH=16\r\nVORN_ANSWER=OK\r\n";
const QByteArray Refused = "LENGTH=19\r\nVORN_ANSWER=ERROR\r\n";
const QByteArray Login = "\x01LOGIN=admin\r\nPASS=admin\r\n";
const QByteArray HeaderMark = "\xB5\xB5\x05\xB5";

QByteArray md5(const QByteArray &text)
{
    return QCryptographicHash::hash(text, QCryptographicHash::Md5).toHex();
}

/// Receives the stream without a network.
class TestSink : public VideoSink
{
public:
    bool isReady() const override { return ready; }
    void write(const QByteArray &piece) override
    {
        if (++pieces <= maxPieces)
            bytes += piece;
    }
    void end() override { isOver = true; }

    bool ready = true;
    bool isOver = false;
    QByteArray bytes;
    int pieces = 0;
    int maxPieces = std::numeric_limits<int>::max(); ///< further ones are dropped
};

/// Small pictures at the highest rate, and a clock that advances by 100 ms with each.
void makeFast(VideoService &video)
{
    VideoSettings settings = video.settings();
    settings.codec = VideoCodec::Mpeg4;
    settings.size = {160, 120};
    settings.rate = VideoSettings::MaxRate;
    QVERIFY(video.setSettings(settings));
    video.setClock([now = qint64(1700000000000)]() mutable { return now += 100; });
}

constexpr int FragmentSize = 50;

/// The first pictures of a stream in which each fault occurs once.
QByteArray streamWith(VideoFaults faults, int fragmentSize = FragmentSize, QStringList *log = nullptr)
{
    constexpr int Pictures = 25;
    faults.every = Pictures - 5;
    VideoService service;
    makeFast(service);
    VideoSettings settings = service.settings();
    settings.fragmentSize = fragmentSize;
    service.setSettings(settings);
    service.setFaults(faults);
    if (log)
        QObject::connect(&service, &VideoService::logged, [log](const QString &line) { *log << line; });
    const auto sink = std::make_shared<TestSink>();
    sink->maxPieces = Pictures;
    service.watch(sink);
    const bool isWhole = paravue::test::waitUntil([&] { return sink->pieces >= Pictures; });
    return isWhole ? sink->bytes : QByteArray();
}

} // namespace

class TestRecorderVideo : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void cleanup() { m_server.reset(); }

    void writesRecords_data();
    void writesRecords();
    void checksLogins_data();
    void checksLogins();
    void executesLinesSentWithTheLogin();
    void detectsProtocols_data();
    void detectsProtocols();
    void beginsWithHeaderIndexAndTexts();
    void splitsFramesIntoFragments();
    void encodesOnceForAllWatchers();
    void continuesWithAKeyPicture();
    void limitsUnsentVideo();
    void repeatsFaultsOfTheSameSeed();
    void dropsOneFragment();
    void repeatsTheHeader();
    void stallsWithinARecord();
    void slowsDown();
    void jumpsInTime();
    void recordsTheStream();
    void refusesInvalidSettings();
    void disconnectsWatchersForARestart();
    void showsNoPasswordInTheLog();

private:
    std::unique_ptr<QTemporaryDir> m_folder;
    std::unique_ptr<RecorderServer> m_server;
};

void TestRecorderVideo::init()
{
    m_folder = std::make_unique<QTemporaryDir>();
    m_server = std::make_unique<RecorderServer>(m_folder->path());
    makeFast(m_server->video());
    QVERIFY(m_server->listen());
}

void TestRecorderVideo::writesRecords_data()
{
    const TestTable<QList<QByteArray>, QByteArray> row("written", "hex");
    row("header",
        {headerRecord("R", {{0, 1, "H264", "C", ""}, {7, 4, "t", "E", "-utf8"}}, {{1, "-utf8"}, {8, ""}})},
        "b5b505b5 2000 0900 5200"
        "00 01 4832363400 4300 00"
        "07 04 7400 4500 2d7574663800"
        "01 2d7574663800 08 00");
    row("index", {indexRecord(0x12345678, 2, "ab")}, "05b5b5b5 78563412 02000000 02 6162");
    row("text", dataRecords(1, "Ja", 65535), "0200 c0 01 4a61");
    row("empty", dataRecords(1, "", 10), "0000 c0 01");
    row("whole picture", videoRecords(0, "abc", 3, 999), "0300 c0 00 e703 0000 616263");
    row("fragments", videoRecords(0, "abcde", 2, 1),
        "0200 80 00 0100 0000 6162|0200 00 00 6364|0100 40 00 65");
}

void TestRecorderVideo::writesRecords()
{
    QFETCH(QList<QByteArray>, written);
    QFETCH(QByteArray, hex);
    QList<QByteArray> wanted;
    for (const QByteArray &record : hex.split('|'))
        wanted << QByteArray::fromHex(record);
    QCOMPARE(written, wanted);
}

void TestRecorderVideo::checksLogins_data()
{
    const TestTable<QByteArray, QByteArray> row("login", "answer");
    row("typed password", "\x01LOGIN=admin\r\nPASS=admin\r\n", Ok);
    row("digest", "\x01LOGIN=admin\r\nPASS=" + md5("admin") + "\r\n", Ok);
    row("wrong password", "\x01LOGIN=admin\r\nPASS=root\r\n", Refused);
    row("no password line", "\x01LOGIN=admin\r\nadmin\r\n", Refused);
    row("endless line", "\x01LOGIN=" + QByteArray(200000, 'x'),
        "LENGTH=48\r\nVORN_ANSWER=ERROR:the request line is too long\r\n");
    row("no user name", "\x01PASS=admin\r\n",
        "LENGTH=46\r\nVORN_ANSWER=ERROR:the login has no user name\r\n");
}

void TestRecorderVideo::checksLogins()
{
    QFETCH(QByteArray, login);
    QFETCH(QByteArray, answer);
    RawClient client(m_server->port());
    client.send(login);
    if (answer == Ok) {
        QVERIFY(client.receive(Ok.size() + 4).startsWith(Ok + HeaderMark));
        QCOMPARE(m_server->loggedInUsers(), QStringList("admin"));
    } else {
        QCOMPARE(client.receiveUntilClosed(), answer);
        QCOMPARE(m_server->video().watcherCount(), 0);
    }
}

void TestRecorderVideo::executesLinesSentWithTheLogin()
{
    QList<QByteArray> lines;
    m_server->setReplyDelay(20);
    m_server->video().setCommandHandler([&](const QByteArray &line) {
        lines << line;
        return QString();
    });
    RawClient client(m_server->port());
    client.send(Login + "PTZ GOTO 1\r\nPTZ GOTO ");
    AWAIT_COMPARE(lines, QList<QByteArray>{"PTZ GOTO 1"});
    client.send("2\r\n");
    AWAIT_COMPARE(lines, (QList<QByteArray>{"PTZ GOTO 1", "PTZ GOTO 2"}));
}

void TestRecorderVideo::detectsProtocols_data()
{
    const TestTable<QByteArray, QByteArray> row("request", "answer");
    row("video", Login, Ok + HeaderMark);
    row("configuration", "\x04LOGIN=admin\r\nPASS=admin\r\n", Ok);
    row("HTTP", "DELETE /snapshot.jpg HTTP/1.1\r\nHost: r\r\n\r\n", "HTTP/1.1 405 ");
    row("a command that looks like HTTP", "GET NET CONFIG\r\n",
        "LENGTH=32\r\nVORN_ANSWER=ERROR:log in first\r\n");
    row("a long word", "GETTINGNOWHERE\r\n", "LENGTH=32\r\nVORN_ANSWER=ERROR:log in first\r\n");
}

void TestRecorderVideo::detectsProtocols()
{
    QFETCH(QByteArray, request);
    QFETCH(QByteArray, answer);
    RawClient client(m_server->port());
    client.sendByteByByte(request);
    QVERIFY(client.receive(answer.size()).startsWith(answer));
}

void TestRecorderVideo::beginsWithHeaderIndexAndTexts()
{
    VideoService &video = m_server->video();
    video.setClock([] { return qint64(1700000001250); });
    video.setPose({0.3, -0.25, 0.5});
    video.setStateText(VideoService::EventStream, QStringLiteral("Ночь"));
    RawClient client(m_server->port());
    client.send(Login);
    const QByteArray clock = QByteArray::fromHex("e26ce5cf8b010000");
    const QByteArray wanted = Ok +
                              headerRecord("Paravue recorder",
                                           {{0, 1, "mp4v", "Camera 1", ""},
                                            {1, 4, "text", "Events", "-utf8"},
                                            {2, 4, "text", "PTZ", "-utf8"},
                                            {3, 2, "time", "Clock", ""}},
                                           {{1, "-utf8"}, {2, "UTC"}}) +
                              indexRecord(1700000001, 0, clock) + dataRecords(3, clock, 9).first() +
                              dataRecords(1, "Ночь", 99).first() +
                              dataRecords(2, "0.300,-0.250,0.500", 99).first();
    const QByteArray got = client.receive(wanted.size() + 8);
    QCOMPARE(got.left(wanted.size()), wanted);
    QCOMPARE(got.mid(wanted.size() + 4, 2), QByteArray::fromHex("fa00")); // 250 ms
}

void TestRecorderVideo::splitsFramesIntoFragments()
{
    VideoService service;
    makeFast(service);
    VideoSettings settings = service.settings();
    settings.fragmentSize = 100;
    QVERIFY(service.setSettings(settings));
    const auto sink = std::make_shared<TestSink>();
    service.watch(sink);
    AWAIT_VERIFY(sink->pieces >= 3);
    const QByteArray first = QByteArray::fromHex("64008000");
    const QByteArray middle = QByteArray::fromHex("64000000");
    const qsizetype at = sink->bytes.indexOf(first);
    QVERIFY(at > 0);
    QCOMPARE(sink->bytes.mid(at + 8 + 100, 4), middle);
}

void TestRecorderVideo::encodesOnceForAllWatchers()
{
    VideoService &video = m_server->video();
    QCOMPARE(video.encodedPictures(), 0);
    auto one = std::make_shared<TestSink>();
    auto other = std::make_shared<TestSink>();
    video.watch(one);
    video.watch(other);
    AWAIT_VERIFY(one->pieces >= 12);
    QCOMPARE(one->bytes, other->bytes);
    QCOMPARE(video.encodedPictures(), one->pieces);
    other.reset();
    QCOMPARE(video.watcherCount(), 1);

    RawClient client(m_server->port());
    client.send(Login);
    client.receive(1000);
    client.abort();
    AWAIT_COMPARE(m_server->clientCount(), 0);
    QVERIFY(video.isStreaming());
    one.reset();
    QCOMPARE(video.watcherCount(), 0);
    AWAIT_VERIFY(!video.isStreaming());
}

void TestRecorderVideo::continuesWithAKeyPicture()
{
    VideoService &video = m_server->video();
    const auto slow = std::make_shared<TestSink>();
    const auto other = std::make_shared<TestSink>();
    video.watch(slow);
    video.watch(other);
    AWAIT_VERIFY(slow->pieces >= 3);
    slow->ready = false;
    slow->bytes.clear();
    const int before = other->pieces;
    AWAIT_VERIFY(other->pieces >= before + 3);
    QVERIFY(slow->bytes.isEmpty());
    slow->ready = true;
    AWAIT_VERIFY(!slow->bytes.isEmpty());
    QVERIFY(slow->bytes.startsWith(HeaderMark));
}

void TestRecorderVideo::limitsUnsentVideo()
{
    VideoService &video = m_server->video();
    RawClient client(m_server->port());
    client.send(Login);
    client.receive(1);
    client.stopReading();
    const QTcpSocket *socket = nullptr;
    AWAIT_VERIFY((socket = m_server->findChild<QTcpSocket *>()));
    const auto sink = std::make_shared<TestSink>();
    video.watch(sink);
    // More than the limit and the buffers of the system together.
    const QString text(256 * 1024, QLatin1Char('x'));
    while (sink->bytes.size() < 16 * 1024 * 1024) {
        const int before = sink->pieces;
        video.sendText(VideoService::EventStream, text);
        AWAIT_VERIFY(sink->pieces > before);
    }
    QVERIFY(socket->bytesToWrite() > 1024 * 1024);
    QVERIFY2(socket->bytesToWrite() < 3 * 1024 * 1024, "what is not read piles up");
}

void TestRecorderVideo::repeatsFaultsOfTheSameSeed()
{
    VideoFaults faults;
    faults.kinds = VideoFaults::Garbage | VideoFaults::LostFragments | VideoFaults::HeaderTwice |
                   VideoFaults::UnknownStreams;
    const QByteArray first = streamWith(faults);
    QVERIFY(!first.isEmpty());
    QCOMPARE(streamWith(faults), first);
    faults.seed = 2;
    QVERIFY(streamWith(faults) != first);
}

void TestRecorderVideo::dropsOneFragment()
{
    VideoFaults faults;
    faults.kinds = VideoFaults::LostFragments;
    QStringList log;
    QCOMPARE(streamWith(faults, VideoSettings::MaxFragment, &log),
             streamWith({}, VideoSettings::MaxFragment));
    QCOMPARE(log, QStringList()); // frames without fragments lose nothing
    const QByteArray damaged = streamWith(faults, FragmentSize, &log);
    QVERIFY2(log.value(0).startsWith("video fault: lost: fragment "), qPrintable(log.join('\n')));
    const QByteArray whole = streamWith({});
    const qsizetype missing = whole.size() - damaged.size();
    QVERIFY2(missing > 4 && missing <= FragmentSize + 8, qPrintable(QString::number(missing)));
    qsizetype at = 0;
    while (damaged[at] == whole[at])
        ++at;
    QVERIFY2(whole.endsWith(damaged.mid(at)), "more than one piece is missing");
}

void TestRecorderVideo::stallsWithinARecord()
{
    VideoService service;
    makeFast(service);
    const auto whole = std::make_shared<TestSink>();
    service.watch(whole);
    AWAIT_VERIFY(whole->pieces >= 5);
    VideoFaults faults;
    faults.kinds = VideoFaults::Stall;
    faults.stall = 100;
    faults.every = 4;
    service.setFaults(faults);
    QSignalSpy logged(&service, &VideoService::logged);
    QVERIFY(logged.wait());
    QElapsedTimer sinceStall;
    sinceStall.start();
    const int before = whole->pieces; // the last one is half a picture
    AWAIT_VERIFY(whole->pieces > before);
    QVERIFY(sinceStall.elapsed() >= faults.stall / 2);

    faults.stall = 1;
    const QByteArray stalled = streamWith(faults);
    QVERIFY(!stalled.isEmpty());
    QVERIFY2(streamWith({}).startsWith(stalled), "a stall changes what comes");
}

void TestRecorderVideo::slowsDown()
{
    VideoService service;
    makeFast(service);
    const auto sink = std::make_shared<TestSink>();
    VideoFaults faults;
    faults.kinds = VideoFaults::Slow;
    faults.every = 100;
    service.setFaults(faults);
    QSignalSpy logged(&service, &VideoService::logged);
    service.watch(sink);
    const auto picturesAt = [&](qint64 pictures) {
        return paravue::test::waitUntil([&] { return service.encodedPictures() >= pictures; });
    };
    QVERIFY(picturesAt(50) && logged.size() == 1);
    QElapsedTimer clock;
    clock.start();
    QVERIFY(picturesAt(60));
    const double interval = 1000.0 / VideoSettings::MaxRate;
    QVERIFY2(clock.elapsed() >= 9 * 9 * interval, qPrintable(QString::number(clock.elapsed())));
    QVERIFY(picturesAt(150));
    QCOMPARE(logged.at(1).at(0).toString(), "video fault: slow: no more");
}

void TestRecorderVideo::jumpsInTime()
{
    VideoFaults faults;
    faults.kinds = VideoFaults::TimeJump;
    QStringList log;
    const QByteArray jumping = streamWith(faults, FragmentSize, &log);
    QCOMPARE(log.value(0), "video fault: jump: the time shifts by 3600000 ms");
    const QByteArray mark = QByteArray::fromHex("05b5b5b5");
    QList<qint64> steps;
    qint64 last = 1700000000;
    for (qsizetype at = jumping.indexOf(mark); at >= 0; at = jumping.indexOf(mark, at + 1)) {
        const qint64 second = qFromLittleEndian<quint32>(jumping.constData() + at + mark.size());
        steps << second - last;
        last = second;
    }
    QVERIFY2(steps.contains(3600) || steps.contains(3601), qPrintable(QString::number(steps.size())));
}

void TestRecorderVideo::repeatsTheHeader()
{
    VideoFaults faults;
    faults.kinds = VideoFaults::HeaderTwice;
    const QByteArray stream = streamWith(faults);
    const QByteArray header = stream.left(stream.indexOf(QByteArray::fromHex("05b5b5b5")));
    QCOMPARE(stream.count(header), 3);
    QVERIFY(stream.contains(header + header + QByteArray::fromHex("05b5b5b5")));
}

void TestRecorderVideo::recordsTheStream()
{
    VideoService service;
    makeFast(service);
    const QString path = m_folder->filePath("video.hvx3");
    QVERIFY(service.record(path));
    AWAIT_VERIFY(service.encodedPictures() >= 3); // without other watchers
    service.stopRecording();
    AWAIT_VERIFY(!service.isStreaming());
    const auto sink = std::make_shared<TestSink>();
    QString fault;
    QVERIFY(!service.record(path, &fault)); // an existing file is not overwritten
    QCOMPARE(fault, "it exists already, and is not overwritten");
    QVERIFY(QFile::remove(path));
    QVERIFY(service.record(path));
    service.watch(sink);
    AWAIT_VERIFY(sink->pieces >= 10);
    service.stopRecording();
    QFile file(path);
    QVERIFY(file.open(QIODevice::ReadOnly));
    QCOMPARE(file.readAll(), sink->bytes);
    QVERIFY(sink->bytes.startsWith(HeaderMark));
}

void TestRecorderVideo::refusesInvalidSettings()
{
    VideoService service;
    const VideoSettings before = service.settings();
    QString fault;
    VideoSettings odd = before;
    odd.size = {161, 120};
    QVERIFY(!service.setSettings(odd, &fault));
    QCOMPARE(fault, "a picture has an even size from 64x48 to 4096x4096");
    QCOMPARE(service.settings(), before);
    QVERIFY(!service.setFile(m_folder->filePath("users"), &fault));
    QVERIFY2(!fault.isEmpty(), "no reason");
    QVERIFY(!service.setFile(m_folder->filePath("missing.mp4"), &fault));
    QCOMPARE(fault, "No such file or directory");
    QVERIFY(!service.record(m_folder->filePath("missing/file"), &fault));
    QVERIFY2(!fault.isEmpty(), "no reason");
    QCOMPARE(service.watcherCount(), 0);
}

void TestRecorderVideo::disconnectsWatchersForARestart()
{
    m_server->setRebootTime(50);
    RawClient viewer(m_server->port());
    viewer.send(Login);
    viewer.receive(1000);
    RawClient client(m_server->port());
    QVERIFY(client.logIn());
    QSignalSpy back(m_server.get(), &RecorderServer::cameBack);
    client.ask("DO REBOOT\r\n");
    QVERIFY(viewer.receiveUntilClosed() != "still open");
    QVERIFY(back.size() > 0 || back.wait());
    RawClient again(m_server->port());
    again.send(Login);
    QVERIFY(again.receive(Ok.size() + 4).startsWith(Ok + HeaderMark));
}

void TestRecorderVideo::showsNoPasswordInTheLog()
{
    QString log;
    connect(m_server.get(), &RecorderServer::logged, this, [&](const QString &line) { log += line + '\n'; });
    RawClient viewer(m_server->port());
    viewer.send("\x01LOGIN=admin\r\nPASS=opensesame\r\n");
    viewer.receiveUntilClosed();
    RawClient client(m_server->port());
    client.send(
        "GET /snapshot.jpg?PASS=opensesame HTTP/1.1\r\nHost: r\r\nAuthorization: Basic opensesame\r\n\r\n");
    client.receiveUntilClosed();
    client.abort();
    RawClient known(m_server->port());
    known.send("GET /snapshot.jpg HTTP/1.0\r\nAuthorization: Basic " + QByteArray("admin:admin").toBase64() +
               "\r\n\r\n");
    known.receiveUntilClosed();
    QVERIFY2(log.contains("> 200 OK for admin\n"), qPrintable(log));
    QVERIFY(log.contains("< video LOGIN=admin\n") && log.contains("401 Unauthorized"));
    QVERIFY2(!log.contains("sesame"), qPrintable(log));
}

QTEST_GUILESS_MAIN(TestRecorderVideo)
#include "tst_recorder_video.moc"
