#include "DescribedWindow.h"
#include "controls/DialogFrame.h"

#include <QCheckBox>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QSignalSpy>

using namespace paravue::test;

namespace
{

QByteArray opener(const QByteArray &tag, const QByteArray &content = {})
{
    return "<item type='pushbutton'><text>Open</text><action type='call' slot='showDialog' param='" + tag +
           "'>self</action>" + content + "</item>";
}

QByteArray dialog(const QByteArray &head, const QByteArray &cells)
{
    return "<anything>" + head + "<item type='gridlayout'>" + cells + "</item></anything>";
}

template <class Widget>
Widget *in(QWidget &dialog, int index = 0)
{
    return dialog.findChildren<Widget *>().value(index);
}

QPushButton *button(QWidget &dialog, const QString &text)
{
    for (QPushButton *button : dialog.findChildren<QPushButton *>()) {
        if (button->text() == text)
            return button;
    }
    return nullptr;
}

const DescribedWindow::Files Files{{"net", "NAME=Gate\nON=off\n"}};

} // namespace

class TestDialogs : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void opensTheSameWayAgain();
    void sharesValuesWithTheWindow();
    void opensTheFirstOfItsTag();
    void reportsAnUnknownTag();
    void opensOnce();
    void handlesKeys_data();
    void handlesKeys();
    void closesWithTheWindow();
    void isNotShownWithoutTheWindow();
    void isNotShownOfAnOldDescription();
    void outlivesWhatItsFieldsHaveOpened();
    void staysUsableAfterAnEndlessChain();
    void showsErrorsWhileItIsOpen();
};

void TestDialogs::opensTheSameWayAgain()
{
    DescribedWindow window(
        describePage(opener("setup"),
                     dialog("<title>@t</title><setup/><action type='call' param='opened'>line</action>"
                            "<action state='on' type='disable'>line</action>",
                            "<item type='label'><line/></item>"
                            "<item type='edit' row='1'><key>net/untitled/NAME</key><field/></item>"
                            "<item type='checkbox' row='2'><key>net/untitled/ON</key>"
                            "<action state='off' type='disable'>field</action>"
                            "<action type='call' param='changed'>line</action></item>"
                            "<item type='knob' row='3'/>") +
                         "<translations><ru><t>Имя</t></ru></translations>"),
        Files);
    QStringList seen;
    ModalWatcher dialogs(
        [&](QWidget &dialog) {
            seen << in<QLabel>(dialog)->text() << in<QLineEdit>(dialog)->text()
                 << (in<QLineEdit>(dialog)->isEnabled() ? "enabled" : "disabled");
            QCOMPARE(dialog.parentWidget(), window.window.get());
            QTest::keyClick(in<QCheckBox>(dialog), Qt::Key_Space);
            QTest::keyClick(in<QCheckBox>(dialog), Qt::Key_Space);
            seen << in<QLabel>(dialog)->text();
        },
        "QDialog");
    for (int round = 0; round < 2; ++round)
        QTest::mouseClick(window.widget<QPushButton>(), Qt::LeftButton);
    const QStringList once{"opened", "Gate", "disabled", "changed"};
    QCOMPARE(seen, once + once);
    QCOMPARE(dialogs.title(), "Имя");
    QCOMPARE(window.messages.texts(),
             (QStringList{"Unknown control type \"knob\"", "Unknown control type \"knob\""}));
    window.settle();
    QVERIFY(window.window->findChildren<QDialog *>().isEmpty());
}

void TestDialogs::sharesValuesWithTheWindow()
{
    DescribedWindow window(
        describePage(opener("setup") +
                         "<item type='label' row='1'><text>{net/untitled/NAME}</text></item>"
                         "<item type='edit' row='2'><key>net/untitled/NAME</key><other/></item>",
                     dialog("<setup/>", "<item type='edit'><key>net/untitled/NAME</key>"
                                        "<action state='empty' type='disable'>other</action>"
                                        "<action state='filled' type='enable'>other</action></item>")),
        Files);
    ModalWatcher dialogs(
        [&](QWidget &dialog) {
            QVERIFY(in<paravue::DialogFrame>(dialog));
            QCOMPARE(dialog.focusWidget(), in<QLineEdit>(dialog));
            in<QLineEdit>(dialog)->clear();
            QVERIFY(!window.widget<QLineEdit>()->isEnabled());
            QTest::keyClicks(in<QLineEdit>(dialog), "New");
            window.window->setValue("net/untitled/NAME/" + in<QLineEdit>(dialog)->text() + "er");
            QCOMPARE(in<QLineEdit>(dialog)->text(), "Newer");
        },
        "QDialog");
    QTest::mouseClick(window.widget<QPushButton>(), Qt::LeftButton);
    QCOMPARE(dialogs.count(), 1);
    QCOMPARE(window.widget<QLabel>()->text(), "Newer");
    QCOMPARE(window.widget<QLineEdit>()->text(), "Newer");
    QVERIFY(window.widget<QLineEdit>()->isEnabled());
    // The closed dialog follows no values and takes no calls.
    window.settle();
    window.window->setValue("net/untitled/NAME/Last");
    QCOMPARE(window.widget<QLineEdit>()->text(), "Last");
}

void TestDialogs::opensTheFirstOfItsTag()
{
    DescribedWindow window(describePage(opener("twice"), dialog("<title>One</title><twice/>", "") +
                                                             dialog("<title>Two</title><twice/>", "")));
    ModalWatcher dialogs({}, "QDialog");
    QTest::mouseClick(window.widget<QPushButton>(), Qt::LeftButton);
    QCOMPARE(dialogs.title(), "One");
}

void TestDialogs::reportsAnUnknownTag()
{
    DescribedWindow window(describePage(opener("nowhere")));
    ModalWatcher dialogs({}, "QDialog");
    QTest::mouseClick(window.widget<QPushButton>(), Qt::LeftButton);
    window.settle();                      // the next message is no part of the burst
    window.window->showDialog("pvsetup"); // has no element around it
    QCOMPARE(window.messages.texts(),
             (QStringList{"Unknown dialog tag \"nowhere\"", "Unknown dialog tag \"pvsetup\""}));
    QVERIFY(!dialogs.hasSeen());
}

void TestDialogs::opensOnce()
{
    // "one" opens itself and "two"; "two" opens "one".
    DescribedWindow window(describePage(
        opener("one"),
        dialog("<title>1</title><one/><action type='call' slot='showDialog' param='one'>self</action>",
               opener("one") + opener("two")) +
            dialog("<title>2</title><two/>", opener("one"))));
    QStringList titles;
    const auto pressAll = [&](QWidget &dialog) {
        titles << dialog.windowTitle();
        for (QPushButton *button : dialog.findChildren<QPushButton *>())
            QTest::mouseClick(button, Qt::LeftButton);
    };
    const ModalWatcher outer(pressAll, "QDialog");
    const ModalWatcher inner(pressAll, "QDialog"); // the outer one is still pressing
    QTest::mouseClick(window.widget<QPushButton>(), Qt::LeftButton);
    QCOMPARE(titles, (QStringList{"1", "2"}));
    window.settle();
    QVERIFY(window.window->findChildren<QDialog *>().isEmpty());
    QCOMPARE(window.messages.texts(), QStringList());
}

void TestDialogs::handlesKeys_data()
{
    QTest::addColumn<QString>("focus");
    QTest::addColumn<int>("key");
    QTest::addColumn<QString>("written");
    QTest::addColumn<bool>("open");
    QTest::newRow("Enter in a field") << "" << int(Qt::Key_Return) << "" << true;
    QTest::newRow("Enter on a button") << "Format" << int(Qt::Key_Return) << "format" << true;
    QTest::newRow("Enter on the button that closes") << "Close" << int(Qt::Key_Enter) << "" << false;
    QTest::newRow("Escape") << "" << int(Qt::Key_Escape) << "" << false;
}

void TestDialogs::handlesKeys()
{
    QFETCH(QString, focus);
    QFETCH(int, key);
    QFETCH(QString, written);
    QFETCH(bool, open);
    DescribedWindow window(
        describePage(
            opener("box"),
            dialog("<box/>",
                   "<item type='pushbutton'><text>Format</text>"
                   "<action type='call' slot='setValue' param='net/untitled/DONE/format'>self</action></item>"
                   "<item type='edit' row='1'/><item type='pushbutton' row='2'><text>Close</text>"
                   "<action type='call' slot='accept'>box</action></item>")),
        Files);
    ModalWatcher dialogs(
        [&](QWidget &dialog) {
            QWidget *target =
                focus.isEmpty() ? static_cast<QWidget *>(in<QLineEdit>(dialog)) : button(dialog, focus);
            target->setFocus();
            QTest::keyClick(target, Qt::Key(key));
            QCOMPARE(dialog.isVisible(), open);
        },
        "QDialog");
    QTest::mouseClick(window.widget<QPushButton>(), Qt::LeftButton);
    QCOMPARE(dialogs.count(), 1);
    QCOMPARE(window.value("net/untitled/DONE"), written);
    QVERIFY(window.window->isVisible());
}

void TestDialogs::closesWithTheWindow()
{
    DescribedWindow window(describePage(
        opener("box"),
        dialog("<box/>", "<item type='pushbutton'><action type='call' slot='accept'>self</action></item>")));
    bool dialogIsVisible = true;
    ModalWatcher dialogs(
        [&](QWidget &dialog) {
            QTest::mouseClick(in<QPushButton>(dialog), Qt::LeftButton);
            dialogIsVisible = dialog.isVisible();
        },
        "QDialog");
    QTimer::singleShot(0, window.window.get(),
                       [&] { QTest::mouseClick(window.widget<QPushButton>(), Qt::LeftButton); });
    QCOMPARE(window.window->exec(), int(QDialog::Accepted));
    QVERIFY(!dialogIsVisible);
}

void TestDialogs::isNotShownWithoutTheWindow()
{
    DescribedWindow window(
        describePage("<item type='pushbutton'><action type='call' slot='reject'>self</action>"
                     "<action type='call' slot='showDialog' param='box'>self</action>"
                     "<action type='call' slot='fileDialog' param='open,,,net/untitled/NAME'>self</action>"
                     "</item>",
                     dialog("<box/>", "<item type='label'/>")),
        Files);
    const ModalWatcher dialogs({}, "QDialog");
    const ModalWatcher files({}, "QFileDialog");
    QTimer::singleShot(0, window.window.get(),
                       [&] { QTest::mouseClick(window.widget<QPushButton>(), Qt::LeftButton); });
    QCOMPARE(window.window->exec(), int(QDialog::Rejected));
    QVERIFY(!dialogs.hasSeen());
    QVERIFY(!files.hasSeen());
}

void TestDialogs::isNotShownOfAnOldDescription()
{
    // What opens the dialog brings a new description at once.
    DescribedWindow window(
        describePage(opener("box"), dialog("<box/><action type='call' slot='onLoadDone'>self</action>",
                                           "<item type='edit'/>")));
    window.fixture.setFile("interface", describePage("<item type='label'><text>New</text></item>"));
    ModalWatcher dialogs({}, "QDialog");
    QTimer::singleShot(0, window.window.get(), [&] {
        QTest::mouseClick(window.widget<QPushButton>(), Qt::LeftButton);
        window.window->close();
    });
    window.window->exec();
    QVERIFY(!dialogs.hasSeen());
    window.settle();
    QCOMPARE(window.widget<QLabel>()->text(), "New");
}

void TestDialogs::outlivesWhatItsFieldsHaveOpened()
{
    // Each field waits for the dialog that typing opens; in the last one a new description comes.
    const auto field = [](const QByteArray &tag) {
        return "<item type='edit'><action type='call' state='filled' slot='showDialog' param='" + tag +
               "'>self</action></item>";
    };
    DescribedWindow window(describePage(field("box"), dialog("<box/>", field("inner")) +
                                                          dialog("<inner/>", "<item type='label'/>")));
    bool isTyping = true;
    QStringList lost;
    const auto type = [&](QWidget &place, const QString &name) {
        connect(in<QLineEdit>(place), &QObject::destroyed, this, [&isTyping, &lost, name] {
            if (isTyping)
                lost << name;
        });
        QTest::keyClicks(in<QLineEdit>(place), "a");
    };
    bool isReplaced = false;
    const auto act = [&](QWidget &dialog) {
        if (in<QLineEdit>(dialog)) {
            type(dialog, "field of a dialog");
            return;
        }
        window.fixture.setFile("interface", describePage("<item type='label'><text>New</text></item>"));
        window.fixture.store().load();
        QTest::qWait(1);
        isReplaced = true;
    };
    const ModalWatcher outer(act, "QDialog");
    const ModalWatcher inner(act, "QDialog"); // the outer one is still typing
    type(*window.page(), "field of the page");
    isTyping = false;
    QVERIFY(isReplaced);
    QCOMPARE(lost, QStringList());
    window.settle();
    QVERIFY(window.window->findChildren<QLineEdit *>().isEmpty());
}

void TestDialogs::staysUsableAfterAnEndlessChain()
{
    DescribedWindow window(describePage(
        opener("box"), dialog("<box/>", "<item type='pushbutton'><text>Chain</text><chain/>"
                                        "<action type='call' slot='click'>chain</action></item>"
                                        "<item type='pushbutton' row='1'><text>Close</text>"
                                        "<action type='call' slot='reject'>box</action></item>")));
    ModalWatcher dialogs(
        [&](QWidget &dialog) {
            QTest::mouseClick(button(dialog, "Chain"), Qt::LeftButton);
            QTest::mouseClick(button(dialog, "Close"), Qt::LeftButton);
            QVERIFY(!dialog.isVisible());
        },
        "QDialog");
    QTest::mouseClick(window.widget<QPushButton>(), Qt::LeftButton);
    QCOMPARE(dialogs.count(), 1);
    QCOMPARE(window.messages.texts(),
             QStringList("The actions of the interface description do not come to an end"));
}

void TestDialogs::showsErrorsWhileItIsOpen()
{
    DescribedWindow window(
        describePage(opener("box"),
                     dialog("<box/>", "<item type='label'><text>{net}</text></item>"
                                      "<item type='edit' row='1'><key>net/untitled</key></item>")),
        Files);
    ModalWatcher dialogs(
        [&](QWidget &dialog) {
            // The one of the building came before the dialog.
            QCOMPARE(window.messages.texts(), QStringList("Wrong key \"net\""));
            QTest::keyClicks(in<QLineEdit>(dialog), "a");
            QCOMPARE(window.messages.count(), 2);
            QVERIFY(dialog.isVisible());
        },
        "QDialog");
    QTest::mouseClick(window.widget<QPushButton>(), Qt::LeftButton);
    QCOMPARE(dialogs.count(), 1);
    QCOMPARE(window.messages.texts().value(1), "Wrong value \"net/untitled/a\"");
}

QTEST_MAIN(TestDialogs)
#include "tst_dialogs.moc"
