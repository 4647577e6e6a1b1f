#include "controls/LiveView.h"
#include "controls/PictureView.h"
#include "controls/ScaledPicture.h"
#include "support/TestTable.h"

#include <QImage>

using namespace paravue;
using namespace paravue::test;

namespace
{

/// Columns of which every fourth is white.
QPixmap stripes(const QSize &size)
{
    QImage image(size, QImage::Format_RGB32);
    for (int x = 0; x < size.width(); ++x) {
        for (int y = 0; y < size.height(); ++y)
            image.setPixel(x, y, x % 4 == 0 ? 0xffffffff : 0xff000000);
    }
    return QPixmap::fromImage(image);
}

} // namespace

class TestScaledPicture : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void leavesOutNoPixel();
    void halvesAPictureThatIsNearlyTwiceAsLarge();
    void scalesToThePixelsOfTheScreen_data();
    void scalesToThePixelsOfTheScreen();
    void scalesOnce();
    void scalesOneAfterTheOther_data();
    void scalesOneAfterTheOther();
    void viewsKeepThePicture();
};

void TestScaledPicture::leavesOutNoPixel()
{
    ScaledPicture scaled;
    const QImage image = scaled.of(stripes({64, 600}), {16, 150}, 1).toImage();
    QCOMPARE(image.size(), QSize(16, 150));
    for (int y = 0; y < image.height(); ++y) {
        for (int x = 0; x < image.width(); ++x) {
            const int grey = qGray(image.pixel(x, y));
            QVERIFY2(qAbs(grey - 64) <= 2, qPrintable(QString::number(grey)));
        }
    }
}

/// A control of half the size has a frame. Scaled once more, each column would be mixed in another way.
void TestScaledPicture::halvesAPictureThatIsNearlyTwiceAsLarge()
{
    ScaledPicture scaled;
    const QImage image = scaled.of(stripes({640, 480}), {318, 238}, 1).toImage();
    QCOMPARE(image.size(), QSize(318, 238));
    for (int x = 2; x < image.width(); ++x)
        QCOMPARE(image.pixel(x, 100), image.pixel(x - 2, 100));
    QVERIFY(image.pixel(0, 100) != image.pixel(1, 100));
}

void TestScaledPicture::scalesToThePixelsOfTheScreen_data()
{
    const TestTable<QSize, QSize, double, QSize> row("picture", "size", "ratio", "pixels");
    row("smaller", {640, 480}, {160, 120}, 1.0, {160, 120});
    row("much smaller in one direction", {640, 48}, {16, 40}, 1.0, {16, 40});
    row("larger", {64, 48}, {160, 120}, 1.0, {160, 120});
    row("high resolution", {640, 480}, {160, 120}, 2.0, {320, 240});
    row("between", {640, 480}, {100, 75}, 1.5, {150, 113});
    row("nothing", {640, 480}, {0, 120}, 1.0, {0, 0});
    row("one pixel", {640, 480}, {1, 1}, 1.0, {1, 1});
}

void TestScaledPicture::scalesToThePixelsOfTheScreen()
{
    QFETCH(QSize, picture);
    QFETCH(QSize, size);
    QFETCH(double, ratio);
    ScaledPicture scaled;
    const QPixmap &pixmap = scaled.of(stripes(picture), size, ratio);
    QTEST(pixmap.size(), "pixels");
    QVERIFY(pixmap.isNull() || pixmap.devicePixelRatio() == ratio);
}

void TestScaledPicture::scalesOnce()
{
    ScaledPicture scaled;
    const QPixmap first = stripes({64, 32});
    const QPixmap second = stripes({64, 32});
    const qint64 key = scaled.of(first, {16, 8}, 1).cacheKey();
    QCOMPARE(scaled.of(first, {16, 8}, 1).cacheKey(), key);
    QVERIFY(scaled.of(first, {32, 8}, 1).cacheKey() != key);
    const qint64 wide = scaled.of(first, {32, 8}, 1).cacheKey();
    QVERIFY(scaled.of(second, {32, 8}, 1).cacheKey() != wide);
    const QPixmap kept = scaled.of(second, {32, 8}, 1);
    const QImage before = kept.toImage().copy();
    scaled.of(stripes({16, 8}), {32, 8}, 1);
    QCOMPARE(kept.toImage(), before);
}

void TestScaledPicture::scalesOneAfterTheOther_data()
{
    const TestTable<QSize, double, QColor> row("size", "ratio", "colour");
    row("the same", {16, 8}, 1.0, Qt::red);
    row("high resolution", {16, 8}, 2.0, Qt::red);
    row("larger in one direction", {64, 4}, 1.0, Qt::red);
    row("transparent", {16, 8}, 2.0, QColor(255, 0, 0, 0));
}

/// The memory of the first one is used for the second one.
void TestScaledPicture::scalesOneAfterTheOther()
{
    QFETCH(QSize, size);
    QFETCH(double, ratio);
    QFETCH(QColor, colour);
    QImage picture({64, 48}, QImage::Format_ARGB32);
    picture.fill(colour);
    picture.setPixelColor(32, 24, Qt::blue);
    const QPixmap second = QPixmap::fromImage(picture);
    ScaledPicture alone;
    ScaledPicture both;
    both.of(stripes({64, 48}), size, ratio);
    QCOMPARE(both.of(second, size, ratio).toImage(), alone.of(second, size, ratio).toImage());
    QCOMPARE(both.of(second, size, ratio).size(), (QSizeF(size) * ratio).toSize());
}

void TestScaledPicture::viewsKeepThePicture()
{
    QPixmap red(64, 48);
    red.fill(Qt::red);
    LiveView live;
    live.resize(32, 24);
    live.setPixmap(red);
    QCOMPARE(live.grab().toImage().pixelColor(16, 12), QColor(Qt::red));
    QCOMPARE(static_cast<QLabel &>(live).pixmap().size(), red.size());
    live.setNotice("gone"); // dims
    QVERIFY(live.grab().toImage().pixelColor(4, 4) != QColor(Qt::red));
    PictureView view;
    view.resize(32, 24);
    view.setPixmap(red);
    QCOMPARE(view.grab().toImage().pixelColor(view.pictureRect().center()), QColor(Qt::red));
    QCOMPARE(view.pixmap().size(), red.size());
}

QTEST_MAIN(TestScaledPicture)
#include "tst_scaled_picture.moc"
