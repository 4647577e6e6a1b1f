#include "OwnUserFolders.h"
#include "ProgramRun.h"
#include "recorder/files/Gzip.h"

#include <algorithm>

using namespace paravue;
using namespace paravue::test;

namespace
{

/// The share of the pixels that are far from grey, as those of a camera's picture are.
double colouredShare(const QImage &image)
{
    int coloured = 0;
    for (int y = 0; y < image.height(); ++y) {
        for (int x = 0; x < image.width(); ++x) {
            const QRgb pixel = image.pixel(x, y);
            const auto [least, most] = std::minmax({qRed(pixel), qGreen(pixel), qBlue(pixel)});
            coloured += most - least > 40;
        }
    }
    return double(coloured) / (image.width() * image.height());
}

} // namespace

class TestSetupPictures : public ProgramTest
{
    Q_OBJECT

private Q_SLOTS:
    void init() { startRecorder(); }
    void takesPicturesOfAPreview();
    void takesPicturesOfTheDemo();
    void takesPicturesOfWholePages();

private:
    OwnUserFolders m_user;
};

void TestSetupPictures::takesPicturesOfAPreview()
{
    const QDir pictures(m_folder->filePath("pictures"));
    QFile plain(m_recorder->filePath("interface"));
    QFile packed(m_folder->filePath("interface.gz")); // as the recorder sends it
    QVERIFY(plain.open(QIODevice::ReadOnly) && packed.open(QIODevice::WriteOnly));
    packed.write(recorder::gzip(plain.readAll()));
    packed.close();
    const Run run =
        runProgram({"--preview", packed.fileName(), "--language", "en", "--screenshot", pictures.path()});
    QVERIFY2(run.exitCode == 0, qPrintable(run.err));
    const QStringList names = pictures.entryList({"*.png"}, QDir::Files, QDir::Name);
    QCOMPARE(names.value(0), "01-overview.png");
    QCOMPARE(runProgram({"--preview", "nosuch", "--screenshot", pictures.path()}).exitCode, 6);
}

void TestSetupPictures::takesPicturesOfTheDemo()
{
    const QDir pictures(m_folder->filePath("pictures"));
    const QString data = m_folder->filePath("demo");
    const Run run =
        runProgram({"--demo", "--demo-data", data, "--language", "en", "--screenshot", pictures.path()});
    QVERIFY2(run.exitCode == 0, qPrintable(run.err));
    QVERIFY(QFile::exists(data + "/streams"));

    const QStringList names = pictures.entryList({"*.png"}, QDir::Files, QDir::Name);
    QVERIFY2(names.size() >= 8, qPrintable(names.join(' ')));
    QCOMPARE(run.out.split('\n', Qt::SkipEmptyParts).size(), names.size());
    QCOMPARE(names.first(), "01-overview.png");
    QVERIFY2(names.contains("02-cameras-02-camera-2.png"), qPrintable(names.join(' ')));
    QList<QImage> seen;
    for (const QString &name : names) {
        const QImage picture(pictures.filePath(name));
        QVERIFY(picture.width() > 300 && picture.height() > 200);
        QVERIFY2(!seen.contains(picture), qPrintable(name + " shows the same as another one"));
        seen += picture;
    }
    const QImage live(pictures.filePath("03-live.png"));
    QVERIFY2(colouredShare(live) > 0.1, "the page with video shows none");
}

void TestSetupPictures::takesPicturesOfWholePages()
{
    QByteArray rows;
    for (int i = 0; i < 60; ++i)
        rows += "<item type='label' row='" + QByteArray::number(i) + "'><text>line</text></item>";
    // The last row is the only thing with a colour.
    rows += "<item type='pushbutton' row='60'><text>end</text><color>red</color></item>";
    QFile description(m_folder->filePath("long.xml"));
    QVERIFY(description.open(QIODevice::WriteOnly));
    description.write("<pvsetup version='1.0'><tabwidget><tab><name>long</name><item type='gridlayout'>" +
                      rows +
                      "</item></tab><tab><name>short</name><item type='gridlayout'><item "
                      "type='label'><text>x</text></item></item></tab>"
                      "</tabwidget></pvsetup>");
    description.close();
    const QDir pictures(m_folder->filePath("pictures"));
    const Run run = runProgram({"--preview", description.fileName(), "--screenshot", pictures.path()});
    QVERIFY2(run.exitCode == 0, qPrintable(run.err));
    const QImage whole(pictures.filePath("01-long.png"));
    const QImage other(pictures.filePath("02-short.png"));
    QVERIFY2(whole.height() > 1000, qPrintable(QString::number(whole.height())));
    // Each picture has the size of its own page.
    QVERIFY2(other.height() <= 600, qPrintable(QString::number(other.height())));
}

QTEST_MAIN(TestSetupPictures)
#include "tst_setup_pictures.moc"
