#include "support/Waiting.h"
#include "ui/base/WindowStyle.h"
#include "ui/window/LoadingView.h"
#include "ui/window/WindowHeader.h"

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
        for (int x = 0; x < image.width(); ++x)
            ++counts[image.pixel(x, y)];
    }
    const QRgb ground = counts.key(*std::max_element(counts.cbegin(), counts.cend()));
    double best = 1;
    for (auto it = counts.cbegin(); it != counts.cend(); ++it)
        best = qMax(best, paravue::contrastRatio(QColor(ground), QColor(it.key())));
    return best;
}

/// The visible texts of \a view, one per line.
QString visibleTexts(const QWidget &view)
{
    QStringList texts;
    for (const QLabel *label : view.findChildren<QLabel *>()) {
        if (label->isVisibleTo(&view))
            texts << label->text();
    }
    return texts.join(QLatin1Char('\n'));
}

} // namespace

class TestWindowFrame : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void contrastFollowsTheFormula();
    void colouredButtonsAreReadable_data();
    void colouredButtonsAreReadable();
    void picturesAreThere();
    void headerKeepsItsWholeText();
    void headerCloses();
    void loadingViewShowsProgressAndFailure();
    void loadingViewStaysSmall();
};

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
    const QPair<const char *, Qt::GlobalColor> colors[] = {
        {"green", Qt::green}, {"blue", Qt::blue}, {"darkCyan", Qt::darkCyan}, {"red", Qt::red}};
    for (const auto &[word, color] : colors) {
        QTest::addRow("%s on light", word) << word << QColor(color) << false;
        QTest::addRow("%s on dark", word) << word << QColor(color) << true;
    }
}

void TestWindowFrame::colouredButtonsAreReadable()
{
    QFETCH(QString, word);
    QFETCH(QColor, color);
    QFETCH(bool, dark);
    QPushButton button("MMMM");
    if (dark)
        button.setPalette(darkPalette());
    const QPalette before = button.palette();
    for (const char *other : {"", "yellow", "Green", "darkcyan", "#ff0000"})
        paravue::colourButton(button, other);
    QCOMPARE(button.palette(), before);
    paravue::colourButton(button, word);
    QCOMPARE(button.palette().button().color(), color);

    // Without the frame, whose lines are no text.
    const auto contrast = [&button] {
        const QImage image = button.grab().toImage();
        return textContrast(image.copy(image.rect().adjusted(4, 4, -4, -4)));
    };
    button.resize(button.sizeHint());
    const QImage enabled = button.grab().toImage();
    const auto lightness = [&button] {
        return button.grab().toImage().pixelColor(8, button.height() / 2).lightnessF();
    };
    const double raised = lightness();
    for (const bool down : {false, true}) {
        button.setDown(down);
        QVERIFY2(contrast() >= 4.5, qPrintable(QString::number(contrast())));
    }
    QVERIFY2(lightness() < raised, "pressed");
    button.setDown(false);
    button.setCheckable(true);
    button.setChecked(true);
    QVERIFY2(lightness() < raised, "checked");
    button.setChecked(false);
    // A calm tone of the colour, not the pure one.
    const QColor painted = enabled.pixelColor(8, enabled.height() / 2);
    QVERIFY(painted != color && qAbs(painted.hueF() - color.hueF()) < 0.09);
    button.setEnabled(false);
    QVERIFY2(contrast() >= 4.5, qPrintable(QString::number(contrast())));
    QVERIFY(button.grab().toImage() != enabled);
}

void TestWindowFrame::picturesAreThere()
{
    paravue::registerPictures();
    const QPair<QString, int> pictures[] = {
        {":/resources/ok", 16}, {":/resources/cancel", 16}, {":/icons/resources/settings", 32}};
    for (const auto &[name, size] : pictures) {
        QCOMPARE(QImage(name + QLatin1String(".png")).size(), QSize(size, size));
        QCOMPARE(QImage(name + QLatin1String("@2x.png")).size(), QSize(size, size) * 2);
    }
}

void TestWindowFrame::headerKeepsItsWholeText()
{
    const QString name = QStringLiteral("<b>Warehouse</b> recorder ").repeated(20).trimmed();
    paravue::WindowHeader header;
    for (const QString &text : {QString("Gate"), name, QString("Gate")}) {
        header.label()->setText(text);
        header.resize(320, header.sizeHint().height());
        QCOMPARE(header.width(), 320);
        header.grab();
        QCOMPARE(header.label()->text(), text);
        // Shown to the letter, not as bold text.
        QCOMPARE(header.label()->toolTip().contains("&lt;b&gt;Warehouse"), text == name);
        QCOMPARE(header.label()->toolTip().isEmpty(), text != name);
    }
}

void TestWindowFrame::headerCloses()
{
    paravue::WindowHeader header;
    header.complete();
    header.show();
    QVERIFY(QTest::qWaitForWindowActive(&header));
    QToolButton *button = header.closeButton();
    QCOMPARE(button->accessibleName(), "Close");
    QSignalSpy closed(&header, &paravue::WindowHeader::closeRequested);
    QTest::keyClick(&header, Qt::Key_Tab);
    AWAIT_VERIFY(button->hasFocus());
    QTest::keyClick(button, Qt::Key_Space);
    QTest::mouseClick(button, Qt::LeftButton);
    QCOMPARE(closed.size(), 2);
}

void TestWindowFrame::loadingViewShowsProgressAndFailure()
{
    paravue::LoadingView view;
    view.setRecorder("10.0.0.9");
    view.setProgress(42, "Fetching network");
    const auto *bar = view.findChild<QProgressBar *>();
    QVERIFY(bar->isVisibleTo(&view));
    QCOMPARE(bar->text(), "42%");
    QCOMPARE(visibleTexts(view), "Connecting to 10.0.0.9\nFetching network");
    view.setProgress(1000, QString());
    QCOMPARE(bar->value(), 100);

    view.showFailure("Wrong answer <img src=\"http://x\"><br>Second line");
    QVERIFY(!bar->isVisibleTo(&view));
    const QString texts = visibleTexts(view);
    for (const char *part : {"10.0.0.9 could not be loaded", "close this window",
                             "Wrong answer <img src=\"http://x\">\nSecond line"})
        QVERIFY2(texts.contains(part), qPrintable(texts));
    QVERIFY(!texts.contains("Connecting"));
    for (const QLabel *label : view.findChildren<QLabel *>())
        QCOMPARE(label->textFormat(), Qt::PlainText);
    view.setProgress(1, "Again");
    QVERIFY(visibleTexts(view).startsWith("Connecting to 10.0.0.9\nAgain"));
}

void TestWindowFrame::loadingViewStaysSmall()
{
    paravue::LoadingView view;
    const QString words = QStringLiteral("no such file ").repeated(100'000);
    view.setRecorder(words);
    view.setProgress(1, words);
    QVERIFY(view.heightForWidth(600) < 600);
    view.setRecorder(QString(100'000, u'W'));
    view.setProgress(1, QString(100'000, u'W'));
    QVERIFY(view.minimumSizeHint().width() < 600);
    for (const QString &failure : {QStringLiteral("W<br>").repeated(100'000), words}) {
        view.showFailure(failure);
        QVERIFY(view.heightForWidth(600) < 600);
    }
}

QTEST_MAIN(TestWindowFrame)
#include "tst_windowframe.moc"
