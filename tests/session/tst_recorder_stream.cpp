#include "support/PictureClock.h"
#include "support/TestTable.h"
#include "support/VideoViewer.h"

#include "recorder/RecorderServer.h"
#include "recorder/video/VideoService.h"

#include <QTemporaryDir>

using namespace paravue::test;
using recorder::RecorderServer;
using recorder::VideoSettings;

namespace
{

constexpr qint64 Noon = 20000LL * 86400 * 1000 + 43200 * 1000;

} // namespace

/// The simulator's video, read by the library.
class TestRecorderStream : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() { QVERIFY2(m_folder.isValid(), "no temporary folder"); }
    void showsTheClockInEveryPicture_data();
    void showsTheClockInEveryPicture();

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
    QTRY_VERIFY(viewer.pictures.size() >= 25);
    for (qsizetype i = 0; i < viewer.pictures.size(); ++i) {
        QCOMPARE(viewer.pictures[i].size(), size);
        QCOMPARE(shownTenths(viewer.pictures[i]).value_or(-1), 432000 + 1 + i);
    }
    if (const QByteArray path = qgetenv("PARAVUE_PICTURES"); !path.isEmpty())
        viewer.pictures.constLast().save(path + '/' + codec + QString::number(size.width()) + ".png");
    QCOMPARE(viewer.losses().bytes, 0);
    QCOMPARE(viewer.losses().frames, 0);
}

QTEST_GUILESS_MAIN(TestRecorderStream)
#include "tst_recorder_stream.moc"
