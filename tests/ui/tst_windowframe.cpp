#include "ui/LoadingView.h"
#include "ui/WindowHeader.h"
#include "ui/WindowLook.h"

#include <QLabel>
#include <QProgressBar>
#include <QPushButton>
#include <QSignalSpy>
#include <QTest>
#include <QToolButton>

namespace
{

QPalette darkPalette()
{
    QPalette palette(QColor(0x35, 0x35, 0x35), QColor(0x2d, 0x2d, 0x2d));
    palette.setColor(QPalette::Highlight, QColor(0x2a, 0x82, 0xda));
    return palette;
}

/// The most contrasting pixel of \a image against its most frequent colour: how the text in it reads.
double textContrast(const QImage &image)
{
    QHash<QRgb, int> counts;
    for (int y = 0; y < image.height(); ++y) {
        for (int x = 0; x < image.width(); ++x) {
            ++counts[image.pixel(x, y)];
        }
    }
    QRgb ground = 0;
    for (auto it = counts.cbegin(); it != counts.cend(); ++it) {
        ground = it.value() > counts.value(ground) ? it.key() : ground;
    }
    double best = 1;
    for (auto it = counts.cbegin(); it != counts.cend(); ++it) {
        best = qMax(best, paravue::contrastRatio(QColor(ground), QColor(it.key())));
    }
    return best;
}

/// The visible texts of \a view, one per line.
QString visibleTexts(const QWidget &view)
{
    QStringList texts;
    for (const QLabel *label : view.findChildren<QLabel *>()) {
        if (label->isVisibleTo(&view)) {
            texts << label->text();
        }
    }
    return texts.join(QLatin1Char('\n'));
}

} // namespace

class TestWindowFrame : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void cleanup();
    void contrastFollowsTheFormula();
    void colouredButtonsAreReadable_data();
    void colouredButtonsAreReadable();
    void otherColourWordsChangeNothing();
    void picturesAreThere();
    void headerKeepsItsWholeText();
    void headerCloses_data();
    void headerCloses();
    void loadingViewShowsProgress();
    void loadingViewExplainsAFailure();
    void loadingViewStaysSmall();

private:
    QPalette m_palette;
};

void TestWindowFrame::init()
{
    m_palette = QApplication::palette();
}

void TestWindowFrame::cleanup()
{
    QApplication::setPalette(m_palette);
}

void TestWindowFrame::contrastFollowsTheFormula()
{
    // Published figures of the guidelines' formula.
    QVERIFY(qAbs(paravue::contrastRatio(Qt::black, Qt::white) - 21.0) < 0.001);
    QVERIFY(qAbs(paravue::contrastRatio(QColor("#767676"), Qt::white) - 4.54) < 0.005);
    QVERIFY(qAbs(paravue::contrastRatio(Qt::red, Qt::white) - 4.00) < 0.005);
    QCOMPARE(paravue::readableTextOn(Qt::darkCyan), QColor(Qt::white));
    QCOMPARE(paravue::readableTextOn(Qt::red), QColor(Qt::black));
}

void TestWindowFrame::colouredButtonsAreReadable_data()
{
    QTest::addColumn<QString>("word");
    QTest::addColumn<QColor>("color");
    QTest::addColumn<bool>("dark");
    for (const bool dark : {false, true}) {
        const char *ground = dark ? "dark" : "light";
        QTest::addRow("green on %s", ground) << "green" << QColor(Qt::green) << dark;
        QTest::addRow("blue on %s", ground) << "blue" << QColor(Qt::blue) << dark;
        QTest::addRow("dark cyan on %s", ground) << "darkCyan" << QColor(Qt::darkCyan) << dark;
        QTest::addRow("red on %s", ground) << "red" << QColor(Qt::red) << dark;
    }
}

void TestWindowFrame::colouredButtonsAreReadable()
{
    QFETCH(QString, word);
    QFETCH(QColor, color);
    QFETCH(bool, dark);

    if (dark) {
        QApplication::setPalette(darkPalette());
    }
    QPushButton button(QStringLiteral("MMMM"));
    paravue::colourButton(button, word);
    QCOMPARE(button.palette().button().color(), color);

    // Without the frame, whose lines are no text.
    const auto contrast = [&button] {
        const QImage image = button.grab().toImage();
        return textContrast(image.copy(image.rect().adjusted(4, 4, -4, -4)));
    };
    button.resize(button.sizeHint());
    QVERIFY2(contrast() >= 4.5, qPrintable(QString::number(contrast())));
    const QImage enabled = button.grab().toImage();
    button.setDown(true);
    QVERIFY2(contrast() >= 4.5, qPrintable(QString::number(contrast())));
    button.setDown(false);
    button.setEnabled(false);
    QVERIFY2(contrast() >= 4.5, qPrintable(QString::number(contrast())));
    QVERIFY(button.grab().toImage() != enabled);
}

void TestWindowFrame::otherColourWordsChangeNothing()
{
    for (const char *word : {"", "yellow", "Green", "darkcyan", "#ff0000"}) {
        QPushButton button;
        const QPalette before = button.palette();
        paravue::colourButton(button, QLatin1String(word));
        QCOMPARE(button.palette(), before);
    }
}

void TestWindowFrame::picturesAreThere()
{
    paravue::registerPictures();
    const QPair<QString, int> pictures[] = {{QStringLiteral(":/resources/ok"), 16},
                                            {QStringLiteral(":/resources/cancel"), 16},
                                            {QStringLiteral(":/icons/resources/settings"), 32}};
    for (const auto &[name, size] : pictures) {
        QCOMPARE(QImage(name + QLatin1String(".png")).size(), QSize(size, size));
        QCOMPARE(QImage(name + QLatin1String("@2x.png")).size(), QSize(size, size) * 2);
    }
}

void TestWindowFrame::headerKeepsItsWholeText()
{
    const QString name = QStringLiteral("<b>Warehouse</b> recorder ").repeated(20).trimmed();
    paravue::WindowHeader header;
    header.resize(320, header.sizeHint().height());
    header.label()->setText(QStringLiteral("Gate"));
    header.grab();
    QVERIFY(header.label()->toolTip().isEmpty());

    header.label()->setText(name);
    header.resize(320, header.sizeHint().height());
    QCOMPARE(header.width(), 320);
    header.grab();
    QCOMPARE(header.label()->text(), name);
    // Shown to the letter, not as bold text.
    QVERIFY(header.label()->toolTip().contains(QLatin1String("&lt;b&gt;Warehouse")));

    header.label()->setText(QStringLiteral("Gate"));
    header.grab();
    QVERIFY(header.label()->toolTip().isEmpty());
}

void TestWindowFrame::headerCloses_data()
{
    QTest::addColumn<bool>("byKey");
    QTest::newRow("click") << false;
    QTest::newRow("space") << true;
}

void TestWindowFrame::headerCloses()
{
    QFETCH(bool, byKey);
    paravue::WindowHeader header;
    header.show();
    QVERIFY(QTest::qWaitForWindowActive(&header));
    QToolButton *button = header.closeButton();
    QCOMPARE(button->accessibleName(), QStringLiteral("Close"));
    QSignalSpy closed(&header, &paravue::WindowHeader::closeRequested);
    if (byKey) {
        QTest::keyClick(&header, Qt::Key_Tab);
        QTRY_VERIFY(button->hasFocus());
        QTest::keyClick(button, Qt::Key_Space);
    } else {
        QTest::mouseClick(button, Qt::LeftButton);
    }
    QCOMPARE(closed.size(), 1);
}

void TestWindowFrame::loadingViewShowsProgress()
{
    paravue::LoadingView view;
    view.setRecorder(QStringLiteral("10.0.0.9"));
    view.setProgress(42, QStringLiteral("Fetching network"));
    const auto *bar = view.findChild<QProgressBar *>();
    QVERIFY(bar && bar->isVisibleTo(&view));
    QCOMPARE(bar->text(), QStringLiteral("42%"));
    QCOMPARE(visibleTexts(view), QStringLiteral("Connecting to 10.0.0.9\nFetching network"));
    view.setProgress(1000, QString());
    QCOMPARE(bar->value(), 100);
}

void TestWindowFrame::loadingViewExplainsAFailure()
{
    paravue::LoadingView view;
    view.setRecorder(QStringLiteral("10.0.0.9"));
    view.setProgress(42, QStringLiteral("Fetching network"));
    view.showFailure(QStringLiteral("Wrong answer <img src=\"http://x\"><br>Second line"));
    QVERIFY(!view.findChild<QProgressBar *>()->isVisibleTo(&view));
    const QString texts = visibleTexts(view);
    QVERIFY(texts.contains(QStringLiteral("10.0.0.9 could not be loaded")));
    QVERIFY(texts.contains(QStringLiteral("Wrong answer <img src=\"http://x\">\nSecond line")));
    QVERIFY(texts.contains(QStringLiteral("close this window")));
    QVERIFY(!texts.contains(QStringLiteral("Connecting")));
    for (const QLabel *label : view.findChildren<QLabel *>()) {
        QCOMPARE(label->textFormat(), Qt::PlainText);
    }

    view.setProgress(1, QStringLiteral("Again"));
    QVERIFY(visibleTexts(view).startsWith(QStringLiteral("Connecting to 10.0.0.9\nAgain")));
}

void TestWindowFrame::loadingViewStaysSmall()
{
    paravue::LoadingView view;
    const QString words = QStringLiteral("no such file ").repeated(100'000);
    view.setRecorder(words);
    view.setProgress(1, words);
    QVERIFY(view.heightForWidth(600) < 600);
    view.setRecorder(QString(100'000, QLatin1Char('W')));
    view.setProgress(1, QString(100'000, QLatin1Char('W')));
    QVERIFY(view.minimumSizeHint().width() < 600);
    view.showFailure(QStringLiteral("W<br>").repeated(100'000));
    QVERIFY(view.heightForWidth(600) < 600);
    view.showFailure(words);
    QVERIFY(view.heightForWidth(600) < 600);
}

QTEST_MAIN(TestWindowFrame)
#include "tst_windowframe.moc"
