#include "recorder/RecorderServer.h"
#include "recorder/video/VideoService.h"
#include "support/MovieFile.h"

#include <QTemporaryDir>
#include <QTest>

extern "C" {
#include <libavcodec/bsf.h>
}

/// FFmpeg's own is not linked: this stands for an FFmpeg that was built without filters.
extern "C" const AVBitStreamFilter *av_bsf_get_by_name(const char *)
{
    return nullptr;
}

class TestMissingFilter : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void refusesTheFile();
};

void TestMissingFilter::refusesTheFile()
{
    const QTemporaryDir folder;
    paravue::test::writeMovie(folder.filePath("movie.avi"), {"mjpeg", {64, 48}, 1});
    recorder::RecorderServer server(folder.filePath("data"));
    QString fault;
    QVERIFY(!server.video().setFile(folder.filePath("movie.avi"), &fault));
    QVERIFY2(fault.contains("lacks the filter null"), qPrintable(fault));
}

QTEST_GUILESS_MAIN(TestMissingFilter)
#include "tst_missing_filter.moc"
