#include "controls/OrbDlgQuestion.h"

#include <QApplication>
#include <QCheckBox>
#include <QLabel>
#include <QPushButton>
#include <QScreen>
#include <QTest>
#include <QTimer>

#include <functional>
#include <memory>

namespace
{

using Button = QMessageBox::StandardButton;

/// Runs \a act on the next message box as soon as it is on the screen, and closes it when \a act did not.
void onNextBox(std::function<void(QMessageBox &)> act)
{
    auto *timer = new QTimer(qApp);
    QObject::connect(timer, &QTimer::timeout, timer, [timer, act] {
        auto *box = qobject_cast<QMessageBox *>(QApplication::activeModalWidget());
        if (!box || !box->isVisible()) {
            return;
        }
        timer->deleteLater();
        timer->stop();
        const QPointer<QMessageBox> alive(box);
        act(*box);
        if (alive && alive->isVisible()) {
            alive->close();
        }
    });
    timer->start(5);
}

QLabel *textLabel(QMessageBox &box)
{
    for (QLabel *label : box.findChildren<QLabel *>()) {
        if (label->text() == box.text()) {
            return label;
        }
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
    void showsWhatItWasGiven();
    void returnsTheButton_data();
    void returnsTheButton();
    void textIsNeverMarkup_data();
    void textIsNeverMarkup();
    void textCanBeSelected();
    void longTextStaysOnTheScreen_data();
    void longTextStaysOnTheScreen();
    void remembersNotToAskAgain();
    void survivesTheDestructionOfItsParent();
};

void TestQuestion::showsWhatItWasGiven()
{
    QWidget window;
    window.show();
    bool seen = false;
    onNextBox([&](QMessageBox &box) {
        seen = true;
        QCOMPARE(box.windowTitle(), QStringLiteral("Paravue Setup"));
        QCOMPARE(box.text(), QStringLiteral("Load file error"));
        QCOMPARE(box.icon(), QMessageBox::Critical);
        QCOMPARE(box.parentWidget(), &window);
        QVERIFY(box.isModal());
        QVERIFY(!box.checkBox());
        QCOMPARE(box.buttons().size(), 1);
    });
    ask(QStringLiteral("Load file error"), QMessageBox::Ok, QMessageBox::NoButton, nullptr, &window);
    QVERIFY(seen);
}

void TestQuestion::returnsTheButton_data()
{
    using Act = std::function<void(QMessageBox &)>;
    QTest::addColumn<QMessageBox::StandardButtons>("buttons");
    QTest::addColumn<int>("defaultButton");
    QTest::addColumn<Act>("act");
    QTest::addColumn<int>("result");

    const auto click = [](Button button) -> Act {
        return [button](QMessageBox &box) { QTest::mouseClick(box.button(button), Qt::LeftButton); };
    };
    const auto press = [](Qt::Key key) -> Act {
        return [key](QMessageBox &box) { QTest::keyClick(&box, key); };
    };
    const Act close = [](QMessageBox &box) { box.close(); };
    const QMessageBox::StandardButtons yesNo = QMessageBox::Yes | QMessageBox::No;
    const QMessageBox::StandardButtons saveCancel = QMessageBox::Save | QMessageBox::Cancel;

    QTest::newRow("click on yes") << yesNo << int(QMessageBox::No) << click(QMessageBox::Yes)
                                  << int(QMessageBox::Yes);
    QTest::newRow("click on no") << yesNo << int(QMessageBox::Yes) << click(QMessageBox::No)
                                 << int(QMessageBox::No);
    QTest::newRow("enter takes the default")
        << yesNo << int(QMessageBox::No) << press(Qt::Key_Return) << int(QMessageBox::No);
    QTest::newRow("escape cancels") << saveCancel << int(QMessageBox::Save) << press(Qt::Key_Escape)
                                    << int(QMessageBox::Cancel);
    QTest::newRow("closing is no") << yesNo << int(QMessageBox::Yes) << close << int(QMessageBox::No);
    QTest::newRow("closing a lone OK is OK") << QMessageBox::StandardButtons(QMessageBox::Ok)
                                             << int(QMessageBox::NoButton) << close << int(QMessageBox::Ok);
}

void TestQuestion::returnsTheButton()
{
    QFETCH(QMessageBox::StandardButtons, buttons);
    QFETCH(int, defaultButton);
    QFETCH(std::function<void(QMessageBox &)>, act);
    QFETCH(int, result);

    onNextBox(act);
    QCOMPARE(int(ask(QStringLiteral("Format the disk?"), buttons, Button(defaultButton))), result);
}

void TestQuestion::textIsNeverMarkup_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<QString>("shown");

    QTest::newRow("our own line break")
        << "Wrong network address \"x\"<br>Correct one is login:password@address[:port]"
        << "Wrong network address \"x\"\nCorrect one is login:password@address[:port]";
    QTest::newRow("picture of another computer") << "<img src=\"file://10.0.0.9/share/x.png\">"
                                                 << "<img src=\"file://10.0.0.9/share/x.png\">";
    QTest::newRow("link and entity") << "<a href=\"http://x\">R&amp;D</a>"
                                     << "<a href=\"http://x\">R&amp;D</a>";
    QTest::newRow("ampersands are no mnemonics") << "Tom & Jerry &Sons"
                                                 << "Tom & Jerry &Sons";
}

void TestQuestion::textIsNeverMarkup()
{
    QFETCH(QString, text);
    QFETCH(QString, shown);

    bool seen = false;
    onNextBox([&](QMessageBox &box) {
        QLabel *label = textLabel(box);
        QVERIFY(label);
        QCOMPARE(label->text(), shown);
        QCOMPARE(label->textFormat(), Qt::PlainText);
        seen = true;
    });
    ask(text);
    QVERIFY(seen);
}

void TestQuestion::textCanBeSelected()
{
    QString selected;
    onNextBox([&](QMessageBox &box) {
        QLabel *label = textLabel(box);
        QVERIFY(label);
        QVERIFY(label->textInteractionFlags() & Qt::TextSelectableByKeyboard);
        label->setFocus();
        QTest::keyClick(label, Qt::Key_A, Qt::ControlModifier);
        selected = label->selectedText();
    });
    ask(QStringLiteral("Can't connect to 10.0.0.9"));
    QCOMPARE(selected, QStringLiteral("Can't connect to 10.0.0.9"));
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
    onNextBox([&](QMessageBox &box) {
        // The worst case: with the details open.
        for (QAbstractButton *button : box.buttons()) {
            if (button != box.button(QMessageBox::Ok)) {
                QTest::mouseClick(button, Qt::LeftButton);
            }
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
    bool flag = false;
    onNextBox([](QMessageBox &box) {
        QVERIFY(!box.checkBox()->isChecked());
        QTest::keyClick(box.checkBox(), Qt::Key_Space);
        QTest::mouseClick(box.button(QMessageBox::Yes), Qt::LeftButton);
    });
    QCOMPARE(ask(QStringLiteral("Restart now?"), QMessageBox::Yes | QMessageBox::No, QMessageBox::No, &flag),
             QMessageBox::Yes);
    QVERIFY(flag);

    // Would not return without anybody to answer.
    QCOMPARE(ask(QStringLiteral("Restart now?"), QMessageBox::Yes | QMessageBox::No, QMessageBox::No, &flag),
             QMessageBox::No);
    QVERIFY(flag);

    flag = false;
    onNextBox([](QMessageBox &box) { QTest::mouseClick(box.button(QMessageBox::No), Qt::LeftButton); });
    QCOMPARE(ask(QStringLiteral("Restart now?"), QMessageBox::Yes | QMessageBox::No, QMessageBox::No, &flag),
             QMessageBox::No);
    QVERIFY(!flag);
}

void TestQuestion::survivesTheDestructionOfItsParent()
{
    auto window = std::make_unique<QWidget>();
    window->show();
    onNextBox([&](QMessageBox &) { window.reset(); });
    QCOMPARE(ask(QStringLiteral("Lost"), QMessageBox::Ok, QMessageBox::NoButton, nullptr, window.get()),
             QMessageBox::NoButton);
}

QTEST_MAIN(TestQuestion)
#include "tst_question.moc"
