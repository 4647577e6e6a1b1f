#include "ModalWatcher.h"
#include "controls/DialogFrame.h"
#include "controls/OrbDlgQuestion.h"
#include "support/TestTable.h"

#include <QCheckBox>
#include <QLabel>
#include <QPushButton>
#include <QScreen>
#include <QStyle>
#include <QTest>
#include <QToolButton>

#include <functional>
#include <memory>

namespace
{

using Button = QMessageBox::StandardButton;

using Act = std::function<void(QMessageBox &)>;

/// Runs \a act on each message box as soon as it is on the screen, and closes it when \a act did not.
class OnBox : public paravue::test::ModalWatcher
{
public:
    explicit OnBox(const Act &act)
        : ModalWatcher([act](QWidget &box) { act(static_cast<QMessageBox &>(box)); })
    {
    }
};

QLabel *textLabel(QMessageBox &box)
{
    for (QLabel *label : box.findChildren<QLabel *>()) {
        if (label->text() == box.text())
            return label;
    }
    return nullptr;
}

Button ask(const QString &text, QMessageBox::StandardButtons buttons = QMessageBox::Ok,
           Button defaultButton = QMessageBox::NoButton, bool *flag = nullptr, QWidget *parent = nullptr)
{
    return OrbDlgQuestion::Do(parent, QMessageBox::Critical, QStringLiteral("Paravue Setup"), text, buttons,
                              defaultButton, flag);
}

} // namespace

class TestQuestion : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void standsInTheMiddle_data();
    void standsInTheMiddle();
    void looksLikeTheWindow_data();
    void looksLikeTheWindow();
    void showsWhatItWasGiven();
    void returnsTheButton_data();
    void returnsTheButton();
    void textIsNeverMarkup_data();
    void textIsNeverMarkup();
    void explainsAShortText();
    void longTextStaysOnTheScreen_data();
    void longTextStaysOnTheScreen();
    void remembersNotToAskAgain();
    void survivesTheDestructionOfItsParent();
};

void TestQuestion::standsInTheMiddle_data()
{
    const QRect screen = QGuiApplication::primaryScreen()->availableGeometry();
    const paravue::test::TestTable<QRect, bool> row("window", "isInTheMiddle");
    row("of its window", QRect(40, 60, 500, 400), true);
    row("of the screen", QRect(), true);
    row("never beyond the left", QRect(screen.left() - 400, 200, 450, 400), false);
    row("never beyond the corner", QRect(screen.bottomRight() - QPoint(20, 20), QSize(500, 400)), false);
}

void TestQuestion::standsInTheMiddle()
{
    QFETCH(QRect, window);
    QFETCH(bool, isInTheMiddle);
    const QRect screen = QGuiApplication::primaryScreen()->availableGeometry();
    QWidget parent;
    parent.resize(window.size());
    const bool hasParent = window.isValid();
    parent.setVisible(hasParent);
    const OnBox boxes([&](QMessageBox &box) {
        // The window learns only now where the window manager has put it.
        if (hasParent)
            parent.move(window.topLeft());
        const QRect around = hasParent ? window : screen;
        const QPoint distance = box.geometry().center() - around.center();
        QCOMPARE(distance.manhattanLength() <= 8, isInTheMiddle);
        QVERIFY(screen.contains(box.frameGeometry()));
    });
    ask("Short", QMessageBox::Ok, QMessageBox::NoButton, nullptr, hasParent ? &parent : nullptr);
    QVERIFY(boxes.hasSeen());
}

void TestQuestion::looksLikeTheWindow_data()
{
    const paravue::test::TestTable<QMessageBox::Icon, QMessageBox::StandardButtons> row("icon", "buttons");
    row("error", QMessageBox::Critical, QMessageBox::Ok);
    row("question", QMessageBox::Question, QMessageBox::Yes | QMessageBox::No);
    row("warning", QMessageBox::Warning, QMessageBox::Ok | QMessageBox::Cancel);
    row("information", QMessageBox::Information, QMessageBox::Close | QMessageBox::Retry);
}

void TestQuestion::looksLikeTheWindow()
{
    QFETCH(QMessageBox::Icon, icon);
    QFETCH(QMessageBox::StandardButtons, buttons);
    const auto look = [](const QIcon &picture) { return picture.pixmap(32, 32).toImage(); };
    const OnBox boxes([&](QMessageBox &box) {
        QVERIFY(box.windowFlags().testFlag(Qt::FramelessWindowHint));
        QCOMPARE(box.icon(), icon);
        const auto *picture = box.findChild<QLabel *>("qt_msgboxex_icon_label");
        const QPixmap shown = picture->pixmap(Qt::ReturnByValue);
        QVERIFY(!shown.isNull() && shown.toImage() != QMessageBox(icon, {}, {}).iconPixmap().toImage());
        for (QAbstractButton *button : box.buttons())
            QCOMPARE(button->icon().isNull(), box.standardButton(button) == QMessageBox::Retry);
        QVERIFY(look(box.buttons().constFirst()->icon()) != look(box.buttons().constLast()->icon()) ||
                box.buttons().size() == 1);
        QVERIFY(qobject_cast<QPushButton *>(box.focusWidget()));
        auto *frame = box.findChild<paravue::DialogFrame *>();
        QCOMPARE(frame->width(), box.width() - 2);
        QVERIFY(frame->geometry().bottom() < textLabel(box)->mapTo(&box, QPoint()).y());
        const QPoint before = box.pos();
        QTest::mousePress(frame, Qt::LeftButton, {}, QPoint(20, 10));
        QTest::mouseMove(frame, QPoint(30, 15));
        QTest::mouseRelease(frame, Qt::LeftButton);
        QCOMPARE(box.pos() - before, QPoint(10, 5));
        frame->findChild<QToolButton *>()->click();
        QVERIFY(!box.isVisible());
    });
    OrbDlgQuestion::Do(nullptr, icon, "Title", "Text", buttons, QMessageBox::NoButton);
    QVERIFY(boxes.hasSeen());
}

void TestQuestion::showsWhatItWasGiven()
{
    QWidget window;
    window.show();
    const OnBox boxes([&](QMessageBox &box) {
        QCOMPARE(box.windowTitle(), "Paravue Setup");
        QCOMPARE(box.text(), "Load file error");
        QCOMPARE(box.icon(), QMessageBox::Critical);
        QCOMPARE(box.parentWidget(), &window);
        QVERIFY(box.isModal());
        QVERIFY(!box.checkBox());
        QCOMPARE(box.buttons().size(), 1);
        QLabel *label = textLabel(box);
        label->setFocus();
        QTest::keyClick(label, Qt::Key_A, Qt::ControlModifier);
        QCOMPARE(label->selectedText(), "Load file error");
    });
    ask("Load file error", QMessageBox::Ok, QMessageBox::NoButton, nullptr, &window);
    QCOMPARE(boxes.count(), 1);
}

void TestQuestion::returnsTheButton_data()
{
    QTest::addColumn<QMessageBox::StandardButtons>("buttons");
    QTest::addColumn<Button>("defaultButton");
    QTest::addColumn<Act>("act");
    QTest::addColumn<Button>("result");

    const auto click = [](Button button) -> Act {
        return [button](QMessageBox &box) { QTest::mouseClick(box.button(button), Qt::LeftButton); };
    };
    const auto press = [](Qt::Key key) -> Act {
        return [key](QMessageBox &box) { QTest::keyClick(&box, key); };
    };
    const Act close = [](QMessageBox &box) { box.close(); };
    using Box = QMessageBox;
    const auto row = [](const char *name, Box::StandardButtons buttons, Button defaultButton, const Act &act,
                        Button result) { QTest::newRow(name) << buttons << defaultButton << act << result; };
    row("click on yes", Box::Yes | Box::No, Box::No, click(Box::Yes), Box::Yes);
    row("click on no", Box::Yes | Box::No, Box::Yes, click(Box::No), Box::No);
    row("enter takes the default", Box::Yes | Box::No, Box::No, press(Qt::Key_Return), Box::No);
    row("escape cancels", Box::Save | Box::Cancel, Box::Save, press(Qt::Key_Escape), Box::Cancel);
    row("closing is no", Box::Yes | Box::No, Box::Yes, close, Box::No);
    row("closing a lone OK is OK", Box::Ok, Box::NoButton, close, Box::Ok);
}

void TestQuestion::returnsTheButton()
{
    QFETCH(QMessageBox::StandardButtons, buttons);
    QFETCH(Button, defaultButton);
    QFETCH(Act, act);
    const OnBox boxes(act);
    QTEST(ask("Format the disk?", buttons, defaultButton), "result");
}

void TestQuestion::textIsNeverMarkup_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<QString>("shown");

    QTest::newRow("our own line break") << "Wrong network address \"x\"<br>Correct one is login:password"
                                        << "Wrong network address \"x\"\nCorrect one is login:password";
    for (const char *text : {"<img src=\"file://10.0.0.9/share/x.png\">", "<a href=\"http://x\">R&amp;D</a>",
                             "Tom & Jerry &Sons"})
        QTest::newRow(text) << text << text;
}

void TestQuestion::textIsNeverMarkup()
{
    QFETCH(QString, text);
    QFETCH(QString, shown);
    const OnBox boxes([&](QMessageBox &box) {
        QLabel *label = textLabel(box);
        QVERIFY(label);
        QCOMPARE(label->text(), shown);
        QCOMPARE(label->textFormat(), Qt::PlainText);
    });
    ask(text);
    QCOMPARE(boxes.count(), 1);
}

void TestQuestion::explainsAShortText()
{
    const QString explanation = "The recorder <b>refuses</b> the connection";
    bool isExplained = false;
    const OnBox box([&](QMessageBox &box) {
        QCOMPARE(box.text(), "Short");
        for (const QLabel *label : box.findChildren<QLabel *>()) {
            if (label->text() != explanation)
                continue;
            isExplained = true;
            QCOMPARE(label->textFormat(), Qt::PlainText);
            QVERIFY2(label->contentsRect().width() >= label->fontMetrics().horizontalAdvance(explanation),
                     "on two lines");
        }
    });
    OrbDlgQuestion::DoExplained(nullptr, QMessageBox::Critical, "Paravue Setup", "Short", explanation,
                                QMessageBox::Ok, QMessageBox::NoButton);
    QVERIFY(isExplained);
}

void TestQuestion::longTextStaysOnTheScreen_data()
{
    QTest::addColumn<QString>("text");

    QTest::newRow("many words") << QStringLiteral("no such file ").repeated(20'000);
    QTest::newRow("one word") << QString(200'000, QLatin1Char('W'));
    QTest::newRow("many lines") << QStringLiteral("W\n").repeated(20'000);
    QTest::newRow("many breaks") << QStringLiteral("W<br>").repeated(20'000);
    QTest::newRow("long words in lines") << (QString(100, QLatin1Char('W')) + '\n').repeated(1'000);
}

void TestQuestion::longTextStaysOnTheScreen()
{
    QFETCH(QString, text);

    QSize size;
    QString details;
    const OnBox boxes([&](QMessageBox &box) {
        // The worst case: with the details open.
        for (QAbstractButton *button : box.buttons()) {
            if (button != box.button(QMessageBox::Ok))
                QTest::mouseClick(button, Qt::LeftButton);
        }
        QCoreApplication::processEvents();
        size = box.frameSize();
        details = box.detailedText();
    });
    QCOMPARE(ask(text), QMessageBox::Ok);
    const QSize screen = QGuiApplication::primaryScreen()->availableSize();
    QVERIFY2(size.width() <= screen.width() && size.height() <= screen.height(),
             qPrintable(QStringLiteral("%1 x %2").arg(size.width()).arg(size.height())));
    QVERIFY(details.size() > 10'000);
    QVERIFY(text.replace(QLatin1String("<br>"), QLatin1String("\n")).startsWith(details));
}

void TestQuestion::remembersNotToAskAgain()
{
    const auto asked = [](bool &flag) {
        return ask("Restart now?", QMessageBox::Yes | QMessageBox::No, QMessageBox::No, &flag);
    };
    bool flag = false;
    {
        const OnBox boxes([](QMessageBox &box) {
            QVERIFY(!box.checkBox()->isChecked());
            QTest::keyClick(box.checkBox(), Qt::Key_Space);
            QTest::mouseClick(box.button(QMessageBox::Yes), Qt::LeftButton);
        });
        QCOMPARE(asked(flag), QMessageBox::Yes);
        QVERIFY(flag);
    }
    // A box that opened again would wait for an answer for ever.
    QCOMPARE(asked(flag), QMessageBox::No);
    QVERIFY(flag);

    flag = false;
    const OnBox boxes([](QMessageBox &box) { box.button(QMessageBox::No)->click(); });
    QCOMPARE(asked(flag), QMessageBox::No);
    QVERIFY(!flag);
}

void TestQuestion::survivesTheDestructionOfItsParent()
{
    auto window = std::make_unique<QWidget>();
    window->show();
    const OnBox boxes([&](QMessageBox &) { window.reset(); });
    QCOMPARE(ask("Lost", QMessageBox::Ok, QMessageBox::NoButton, nullptr, window.get()),
             QMessageBox::NoButton);
}

QTEST_MAIN(TestQuestion)
#include "tst_question.moc"
