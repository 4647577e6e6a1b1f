#include "controls/OrbProgressPie.h"
#include "controls/ReadableColors.h"

#include <QImage>
#include <QTest>

#include <cmath>

namespace
{

QPalette palette(bool dark)
{
    QPalette palette = dark ? QPalette(QColor(0x35, 0x35, 0x35), QColor(0x2d, 0x2d, 0x2d))
                            : QPalette(QColor(0xef, 0xef, 0xef));
    palette.setColor(QPalette::Highlight, dark ? QColor(0x2a, 0x82, 0xda) : QColor(0x30, 0x8c, 0xc6));
    return palette;
}

QImage render(OrbProgressPie &pie, double scale = 1)
{
    QImage image(pie.size() * scale, QImage::Format_RGB32);
    image.setDevicePixelRatio(scale);
    image.fill(pie.palette().color(QPalette::Window));
    pie.render(&image, QPoint(), QRegion(), QWidget::RenderFlags());
    return image;
}

/// The colour at \a turn (0 to 1, clockwise from the top), on a circle outside of the digits.
QColor colorAt(const QImage &image, double turn)
{
    const double radius = 0.44 * qMin(image.width(), image.height());
    const double angle = 6.283185307179586 * turn;
    return image.pixelColor(qRound(image.width() / 2.0 + radius * std::sin(angle)),
                            qRound(image.height() / 2.0 - radius * std::cos(angle)));
}

/// How much of that circle has \a color, in percent.
double share(const QImage &image, const QColor &color)
{
    constexpr int Steps = 720;
    int hits = 0;
    for (int i = 0; i < Steps; ++i)
        hits += colorAt(image, (i + 0.5) / Steps) == color;
    return 100.0 * hits / Steps;
}

} // namespace

class TestProgressPie : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void fillsItsShare_data();
    void fillsItsShare();
    void clamps();
    void marksItsLimit();
    void looksDisabled();
    void paintsAtAnySize();
};

void TestProgressPie::fillsItsShare_data()
{
    QTest::addColumn<bool>("dark");
    QTest::addColumn<QSize>("size");
    QTest::addColumn<double>("scale");
    QTest::addColumn<int>("percent");
    for (const int percent : {0, 1, 25, 50, 99, 100}) {
        QTest::addRow("light %d", percent) << false << QSize(200, 200) << 1.0 << percent;
        QTest::addRow("dark %d", percent) << true << QSize(200, 200) << 1.0 << percent;
    }
    QTest::newRow("200 %") << false << QSize(80, 80) << 2.0 << 25;
    QTest::newRow("wide") << false << QSize(300, 90) << 1.0 << 60;
    QTest::newRow("high") << true << QSize(90, 300) << 1.0 << 60;
}

void TestProgressPie::fillsItsShare()
{
    QFETCH(bool, dark);
    QFETCH(QSize, size);
    QFETCH(double, scale);
    QFETCH(int, percent);

    OrbProgressPie pie;
    pie.setPalette(palette(dark));
    pie.resize(size);
    pie.setProgress(100);
    const QColor filledColor = colorAt(render(pie, scale), 0.125);
    pie.setProgress(0);
    QVERIFY(paravue::contrastRatio(filledColor, colorAt(render(pie, scale), 0.125)) > 1.5);

    pie.setProgress(percent);
    const QImage image = render(pie, scale);
    // Antialiased borders count as neither part.
    const double seen = share(image, filledColor);
    QVERIFY2(qAbs(seen - percent) <= 1.0, qPrintable(QString::number(seen)));
    // Clockwise from the top: the middle of the filled part and the middle of the rest.
    QVERIFY(percent == 0 || colorAt(image, percent / 200.0) == filledColor);
    QVERIFY(percent == 100 || colorAt(image, (100 + percent) / 200.0) != filledColor);

    // The digits can be read where they stand on one colour.
    double best = 1;
    for (int x = image.width() / 5; x < image.width() * 4 / 5; ++x) {
        for (int y = image.height() * 7 / 20; y < image.height() * 13 / 20; ++y)
            best = qMax(best, paravue::contrastRatio(colorAt(image, 0.125), image.pixelColor(x, y)));
    }
    QVERIFY2(percent % 100 != 0 || best >= 4.5, qPrintable(QString::number(best)));
}

void TestProgressPie::clamps()
{
    OrbProgressPie pie;
    QCOMPARE(pie.progress(), 0);
    pie.setProgress(1000);
    QCOMPARE(pie.progress(), 100);
    pie.setProgress(-1);
    QCOMPARE(pie.progress(), 0);
    QVERIFY(QMetaObject::invokeMethod(&pie, "setProgress", Q_ARG(int, 42)));
    QCOMPARE(pie.progress(), 42);
}

void TestProgressPie::marksItsLimit()
{
    OrbProgressPie pie;
    pie.resize(200, 200);
    const QImage without = render(pie);
    pie.setLimit(75);
    const QImage image = render(pie);
    QVERIFY(paravue::contrastRatio(colorAt(image, 0.75), colorAt(without, 0.75)) >= 4.5);
    QCOMPARE(colorAt(image, 0.7), colorAt(without, 0.7));
    pie.setLimit(1000); // clamped to the whole, which has no mark
    QCOMPARE(render(pie), without);
}

void TestProgressPie::looksDisabled()
{
    for (const bool dark : {false, true}) {
        OrbProgressPie pie;
        pie.setPalette(palette(dark));
        pie.resize(100, 100);
        pie.setProgress(70);
        const QImage enabled = render(pie);
        pie.setEnabled(false);
        const QImage disabled = render(pie);
        QVERIFY(colorAt(enabled, 0.3) != colorAt(disabled, 0.3));
        QVERIFY(colorAt(disabled, 0.3) != colorAt(disabled, 0.9));
    }
}

void TestProgressPie::paintsAtAnySize()
{
    OrbProgressPie pie;
    pie.setProgress(50);
    for (const QSize size : {QSize(1, 1), QSize(1, 40), QSize(3, 3), QSize(16, 16), QSize(1500, 1200)}) {
        pie.resize(size);
        render(pie);
    }
    QVERIFY(pie.minimumSizeHint().width() <= pie.sizeHint().width());
}

QTEST_MAIN(TestProgressPie)
#include "tst_progress_pie.moc"
