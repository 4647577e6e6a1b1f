#include "MovieFile.h"
#include "support/PictureClock.h"
#include "support/TestTable.h"
#include "support/VideoViewer.h"

#include "recorder/RecorderServer.h"
#include "recorder/video/VideoService.h"
#include "support/Waiting.h"

#include <QSet>
#include <QSignalSpy>
#include <QTemporaryDir>

using namespace paravue::test;
using recorder::RecorderServer;
using recorder::VideoFaults;
using recorder::VideoSettings;

namespace
{

constexpr qint64 Noon = 20000LL * 86400 * 1000 + 43200 * 1000;

/// Pictures come fast, and the clock goes on by a tenth of a second with each.
void makeFast(recorder::VideoService &video)
{
    VideoSettings settings;
    settings.codec = recorder::VideoCodec::Mpeg4;
    settings.size = {320, 240};
    settings.rate = VideoSettings::MaxRate;
    QVERIFY(video.setSettings(settings));
    video.setClock([now = Noon]() mutable { return now += 100; });
}

QSet<QByteArray> videoLabels(const VideoViewer &viewer)
{
    QSet<QByteArray> labels;
    for (const HDR_T &header : viewer.headers)
        labels << QList<STREAM_T>(header.streams).constFirst().label1;
    return labels;
}

QList<QByteArray> framesOf(const VideoViewer &viewer, int streamId)
{
    QList<QByteArray> frames;
    for (const DATA_T &frame : viewer.frames) {
        if (frame.streamId == streamId)
            frames << frame.payload;
    }
    return frames;
}

/// Of MPEG-4: the two bits behind the mark of a picture are 0.
bool isKeyPicture(const QByteArray &picture)
{
    const QByteArray mark = QByteArray::fromHex("000001b6");
    return (picture.at(picture.indexOf(mark) + mark.size()) & 0xC0) == 0;
}

} // namespace

/// The simulator's video, read by the library.
class TestRecorderStream : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() { QVERIFY2(m_folder.isValid(), "no temporary folder"); }
    void showsTheClockInEveryPicture_data();
    void showsTheClockInEveryPicture();
    void showsTheClockInASnapshot();
    void tellsTimesAndTexts();
    void turnsTheCamera();
    void survivesFaults_data();
    void survivesFaults();
    void playsFiles_data();
    void playsFiles();
    void saysWhenAFileIsGone();

private:
    QTemporaryDir m_folder;
};

void TestRecorderStream::showsTheClockInEveryPicture_data()
{
    const TestTable<QString, QSize> row("codec", "size");
    row("H.264", "h264", {640, 360});
    row("MPEG-4", "mpeg4", {640, 360});
    row("motion JPEG", "mjpeg", {640, 360});
    row("small", "h264", {160, 120});
    row("no multiple of a block", "mpeg4", {354, 290});
}

void TestRecorderStream::showsTheClockInEveryPicture()
{
    QFETCH(QString, codec);
    QFETCH(QSize, size);
    RecorderServer server(m_folder.filePath("data"));
    VideoSettings settings;
    settings.codec = *recorder::videoCodecNamed(codec);
    settings.size = size;
    settings.rate = 50;
    if (!recorder::VideoService::canEncode(settings.codec))
        QSKIP("this FFmpeg has no encoder");
    QVERIFY(server.video().setSettings(settings));
    qint64 now = Noon;
    server.video().setClock([&] { return now += 100; });
    QVERIFY(server.listen());

    VideoViewer viewer(server.port());
    AWAIT_VERIFY(viewer.pictures.size() >= 25);
    for (qsizetype i = 0; i < viewer.pictures.size(); ++i) {
        QCOMPARE(viewer.pictures[i].size(), size);
        QCOMPARE(shownTenths(viewer.pictures[i]).value_or(-1), 432000 + 1 + i);
    }
    if (const QByteArray path = qgetenv("PARAVUE_PICTURES"); !path.isEmpty())
        viewer.pictures.constLast().save(path + '/' + codec + QString::number(size.width()) + ".png");
    QCOMPARE(viewer.losses().bytes, 0);
    QCOMPARE(viewer.losses().frames, 0);
}

void TestRecorderStream::showsTheClockInASnapshot()
{
    recorder::VideoService video;
    makeFast(video);
    const QImage picture = QImage::fromData(video.snapshot(), "JPEG");
    QCOMPARE(picture.size(), QSize(320, 240));
    QCOMPARE(shownTenths(picture).value_or(-1), 432001);
}

void TestRecorderStream::tellsTimesAndTexts()
{
    RecorderServer server(m_folder.filePath("data"));
    makeFast(server.video());
    QVERIFY(server.listen());
    VideoViewer viewer(server.port());
    AWAIT_VERIFY(viewer.pictures.size() >= 70);
    QCOMPARE(viewer.times.constFirst(), quint64(Noon / 1000 * 1000));
    QVERIFY(std::is_sorted(viewer.times.cbegin(), viewer.times.cend()));
    QVERIFY(viewer.times.contains(quint64(Noon + 1500)));
    const QList<QByteArray> events = framesOf(viewer, 1);
    QVERIFY(events.contains("Motion at the gate") || events.contains("The gate is open"));
    QVERIFY(events.contains("Движение у ворот") || events.contains("Ворота открыты"));
    const qsizetype seconds = framesOf(viewer, 3).size();
    QVERIFY(seconds >= 7);
    const QList<QByteArray> pictures = framesOf(viewer, 0);
    const qsizetype keyPictures = std::count_if(pictures.begin(), pictures.end(), isKeyPicture);
    QVERIFY2(std::abs(keyPictures - seconds) <= 1, qPrintable(QString::number(keyPictures)));
    QCOMPARE(framesOf(viewer, 3).at(2), QByteArray::fromHex("d0b5665792010000"));
}

void TestRecorderStream::turnsTheCamera()
{
    RecorderServer server(m_folder.filePath("data"));
    makeFast(server.video());
    QVERIFY(server.listen());
    const QByteArray whereItWas = server.ptz().pose().text();
    VideoViewer viewer(server.port());
    AWAIT_VERIFY(!viewer.pictures.isEmpty());
    const auto upperHalf = [&] {
        const QImage last = viewer.pictures.constLast();
        return last.copy(0, 0, last.width(), last.height() / 2);
    };
    const QImage before = upperHalf();
    viewer.send("PTZ MOVE -0.500,0.250,0.750\r\n");
    AWAIT_VERIFY(framesOf(viewer, 2).contains("-0.500,0.250,0.750"));
    QCOMPARE(framesOf(viewer, 2).constFirst(), whereItWas);
    AWAIT_VERIFY(upperHalf() != before);
    QVERIFY(shownTenths(viewer.pictures.constLast()));
}

void TestRecorderStream::survivesFaults_data()
{
    const TestTable<QString> row("faults");
    for (const QString &name : recorder::videoFaultNames())
        row(qPrintable(name), name == "stall" ? "stall=100" : name);
    row("all together", "garbage,lost,header,unknown,stall=50,size,codec");
}

void TestRecorderStream::survivesFaults()
{
    QFETCH(QString, faults);
    RecorderServer server(m_folder.filePath("data"));
    makeFast(server.video());
    QString reason;
    std::optional<VideoFaults> wanted = recorder::readVideoFaults(faults, reason);
    QVERIFY2(wanted, qPrintable(reason));
    wanted->every = 20;
    server.video().setFaults(*wanted);
    QVERIFY(server.listen());

    VideoViewer viewer(server.port());
    AWAIT_VERIFY(server.video().encodedPictures() >= 60);
    const qsizetype before = viewer.pictures.size();
    AWAIT_VERIFY(viewer.pictures.size() >= before + 20);
    int last = 0;
    int damaged = 0;
    QSet<int> widths;
    for (const QImage &picture : viewer.pictures) {
        widths << picture.width();
        const int shown = shownTenths(picture).value_or(0);
        damaged += shown <= last ? 1 : 0;
        last = std::max(last, shown);
    }
    // What misses a part of a picture shows it until the next key picture.
    QVERIFY2(damaged == 0 || faults.contains("lost"), "a picture was damaged");
    QVERIFY2(damaged < viewer.pictures.size() / 2, "the pictures stay damaged");
    const paravue::Hvx3Losses losses = viewer.losses();
    const bool isCut = faults.contains("garbage") || faults.contains("unknown");
    QCOMPARE(losses.bytes > 0, isCut);
    if (!isCut && !faults.contains("lost"))
        QCOMPARE(losses.frames + losses.fragments, 0);
    QCOMPARE(widths.size() > 1, faults.contains("size"));
    QCOMPARE(videoLabels(viewer).size() > 1, faults.contains("codec"));
    const bool beginsAnew = faults.contains("size") || faults.contains("codec");
    QCOMPARE(viewer.headers.size() > 1, beginsAnew || faults.contains("header"));
}

void TestRecorderStream::playsFiles_data()
{
    const TestTable<QByteArray, QString, QByteArray, int> row("encoder", "file", "label", "pictures");
    row("H.264 in MP4", "libx264", "a.mp4", "H264", 6);
    row("H.264 with nothing around", "libx264", "a.h264", "H264", 6);
    row("MPEG-4 in MP4", "mpeg4", "b.mp4", "mp4v", 6);
    row("motion JPEG in AVI", "mjpeg", "c.avi", "mjpeg", 6);
    row("a single picture", "mjpeg", "c.jpg", "mjpeg", 1);
    row("a codec that recorders do not send", "mpeg2video", "d.avi", "mp4v", 6);
}

void TestRecorderStream::playsFiles()
{
    QFETCH(QByteArray, encoder);
    QFETCH(QString, file);
    QFETCH(QByteArray, label);
    QFETCH(int, pictures);
    if (!canEncode(encoder))
        QSKIP("this FFmpeg has no encoder");
    ClipFormat format;
    format.encoder = encoder;
    format.size = {352, 288};
    format.pictures = pictures;
    const QString path = m_folder.filePath(file);
    writeMovie(path, format);
    RecorderServer server(m_folder.filePath("data"));
    makeFast(server.video());
    QString fault;
    QVERIFY2(server.video().setFile(path, &fault), qPrintable(fault));
    QVERIFY(server.listen());

    const auto snapshot = [&] { return QImage::fromData(server.video().snapshot(), "JPEG"); };
    QCOMPARE(snapshot().size(), format.size);
    QCOMPARE(shownNumber(snapshot()), 0);
    VideoViewer viewer(server.port());
    AWAIT_VERIFY(viewer.pictures.size() >= 3 * format.pictures);
    QCOMPARE_LE(shownNumber(snapshot()), format.pictures - 1);
    QCOMPARE(videoLabels(viewer), QSet<QByteArray>{label + '\0'});
    for (qsizetype i = 0; i < viewer.pictures.size(); ++i)
        QCOMPARE(shownNumber(viewer.pictures[i]), i % format.pictures);
    QCOMPARE(viewer.losses().bytes, 0);
}

void TestRecorderStream::saysWhenAFileIsGone()
{
    const QString path = m_folder.filePath("gone.jpg");
    writeMovie(path, {"mjpeg", {352, 288}, 1});
    RecorderServer server(m_folder.filePath("data"));
    QVERIFY(server.video().setFile(path) && server.listen());
    VideoViewer viewer(server.port());
    AWAIT_VERIFY(viewer.pictures.size() >= 2);
    QSignalSpy failed(&server, &RecorderServer::failed);
    QVERIFY(QFile::resize(path, 0) && QFile::remove(path)); // the recorder has it open
    AWAIT_COMPARE(failed.size(), 1);
    QCOMPARE(failed[0][0].toString(), "cannot go on with " + path + ": No such file or directory");
    writeMovie(path, {"mjpeg", {352, 288}, 1});
    const qsizetype before = viewer.pictures.size();
    AWAIT_VERIFY(viewer.pictures.size() > before);
}

QTEST_GUILESS_MAIN(TestRecorderStream)
#include "tst_recorder_stream.moc"
