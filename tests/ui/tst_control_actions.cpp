#include "DescribedControls.h"
#include "entry/cSetupWidget.h"
#include "support/Waiting.h"
#include "ui/types/RunningTime.h"

#include <QCheckBox>
#include <QComboBox>
#include <QDateTimeEdit>
#include <QFile>
#include <QLineEdit>
#include <QPushButton>
#include <QScrollBar>
#include <QSignalSpy>
#include <QTemporaryDir>

using namespace paravue::test;

namespace
{

/// A store with one function, which sends the time.
class ClockStore : public OrbSetup
{
public:
    ClockStore()
    {
        setProperty("offline", true);
        setFunctionUse([](const QString &, const QString &) {
            return FunctionUse{false, {"net/untitled/TIME"}};
        });
    }

    void load() override { Q_EMIT loadDone(); }
    void function(const QString &, const QString &) override { sent << value("net/untitled/TIME"); }

    QStringList sent;
};

} // namespace

class TestControlActions : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void enablesAndDisables();
    void callsInStates();
    void callsInTheStatesOfButtonsAndChoices();
    void writesKeysetsInTheActiveWindowOnly();
    void writesKeysetsOfDialogs();
    void letsAClockRunUntilItIsEdited();
    void passesCommandsToTheStore();
};

void TestControlActions::initTestCase()
{
    // An hour that is missing here when the clocks change; the recorder's clock may well show it.
    qputenv("TZ", "Europe/Berlin");
}

void TestControlActions::enablesAndDisables()
{
    DescribedWindow window(
        describePage(
            "<item type='checkbox'><key>net/untitled/ON</key>"
            "<action state='on' type='enable'>field</action><action state='off' type='disable'>field</action>"
            "</item>"
            "<item type='edit' row='1' enabled='no'><key>net/untitled/NAME</key><field/>"
            "<action state='filled' type='enable'>button</action>"
            "<action state='empty' type='disable'>button</action><action state='empty' "
            "type='hide'>field</action>"
            "</item>"
            "<item type='pushbutton' row='2' enabled='no'><button/></item>"
            "<item type='edit' row='3' enabled='no'/>"),
        {{"net", Net}});
    auto *box = window.widget<QCheckBox>();
    auto *field = window.widget<QLineEdit>();
    const auto *button = window.widget<QPushButton>();
    // What was loaded has enabled both already.
    QVERIFY(field->isEnabled());
    QVERIFY(button->isEnabled());
    QTest::keyClick(box, Qt::Key_Space);
    QVERIFY(!field->isEnabled());
    QTest::keyClick(box, Qt::Key_Space);
    QVERIFY(field->isEnabled());
    field->selectAll();
    QTest::keyClick(field, Qt::Key_Delete);
    QVERIFY(!button->isEnabled());
    QVERIFY(field->isVisible());
    QTest::keyClicks(field, "x");
    QVERIFY(button->isEnabled());
    // A value that comes from elsewhere counts as well.
    window.window->setValue("net/untitled/NAME/");
    QVERIFY(!button->isEnabled());
    QVERIFY(!window.widget<QLineEdit>(1)->isEnabled());
}

void TestControlActions::callsInStates()
{
    QByteArray targets = "<item type='edit' row='12'><a/></item><item type='pushbutton' row='13'><a/></item>";
    for (char tag = 'a'; tag <= 'g'; ++tag)
        targets +=
            QByteArray("<item type='label' row='") + QByteArray::number(tag) + "'><" + tag + "/></item>";
    DescribedWindow window(
        describePage(
            "<item type='checkbox'><key>net/untitled/ON</key><action type='call' param='any'>a</action>"
            "<action state='off' type='call' param='off'>b</action></item>"
            "<item type='edit' row='1'><key>net/untitled/NAME</key><action type='call' param='any'>c</action>"
            "<action state='filled' type='call' param='{net/untitled/NAME}'>d</action></item>"
            "<item type='scroll' row='2' maxvalue='9'><action type='call' param='@name'>e</action></item>"
            "<item type='dropdown' row='3'>" +
                Modes +
                "<action type='call' param='any'>f</action></item>"
                "<item type='datetime' row='4'><action type='call' param='any'>g</action></item>" +
                targets,
            "<translations><ru><name>Имя</name></ru></translations>"),
        {{"net", Net}});
    const auto texts = [&] {
        QStringList texts;
        for (int number = 6; number <= 14; ++number)
            texts << shown(window, number);
        return texts.join(u'|');
    };
    QCOMPARE(texts(), "||||||||"); // opening the window calls nothing
    QTest::keyClick(window.widget<QCheckBox>(), Qt::Key_Space);
    QCOMPARE(texts(), "any|any|any|off|||||");
    QTest::keyClick(window.widget<QCheckBox>(), Qt::Key_Space);
    QTest::keyClicks(window.widget<QLineEdit>(), "!");
    QTest::keyClick(window.widget<QScrollBar>(), Qt::Key_Down);
    QTest::keyClick(window.widget<QComboBox>(), Qt::Key_Up);
    QTest::keyClick(window.widget<QDateTimeEdit>(), Qt::Key_Up);
    QCOMPARE(texts(), "any|any|any|off||Gate 1!|Имя|any|");
}

/// Those of buttons and drop-down lists are for calls only.
void TestControlActions::callsInTheStatesOfButtonsAndChoices()
{
    const auto calls = [](const QByteArray &state, char name) {
        return "<action state='" + state + "' type='call' slot='setValue' param='net/untitled/X/" + name +
               "'>self</action><action state='" + state + "' type='disable'>field</action>";
    };
    const QByteArray states = calls("on", '1') + calls("off", '0');
    DescribedWindow window(
        describePage("<item type='pushbutton' checkable='true'>" + states +
                     "</item><item type='pushbutton' row='1'>" + states +
                     "</item><item type='dropdown' row='2'>" + Modes + calls("net/untitled/MODE/a", 'a') +
                     calls("net/untitled/MODE/b", 'b') + "</item><item type='edit' row='3'><field/></item>"),
        {{"net", Net}});
    const auto written = [&](QWidget *control, Qt::Key key) {
        window.window->setValue("net/untitled/X/");
        QTest::keyClick(control, key);
        return window.value("net/untitled/X");
    };
    QCOMPARE(window.value("net/untitled/X"), "");
    QCOMPARE(written(window.widget<QPushButton>(), Qt::Key_Space), "1");
    QCOMPARE(written(window.widget<QPushButton>(), Qt::Key_Space), "0");
    QCOMPARE(written(window.widget<QPushButton>(1), Qt::Key_Space), "");
    QCOMPARE(written(window.widget<QComboBox>(), Qt::Key_Up), "a");
    QCOMPARE(written(window.widget<QComboBox>(), Qt::Key_Down), "b");
    QVERIFY(window.widget<QLineEdit>()->isEnabled());
}

void TestControlActions::writesKeysetsInTheActiveWindowOnly()
{
    DescribedWindow window(describePage("<item type='dropdown'>" + Modes +
                                        "<keyset>net/untitled/X/1 , net/untitled/Y/a b</keyset>"
                                        "<keyset>net/untitled/X/2,net/untitled/NAME/New</keyset></item>"
                                        "<item type='edit' row='1'><key>net/untitled/NAME</key></item>"),
                           {{"net", Net}});
    auto *box = window.widget<QComboBox>();
    QTest::keyClick(box, Qt::Key_Up);
    QCOMPARE(window.value("net/untitled/X"), "1");
    QCOMPARE(window.value("net/untitled/Y"), "a b");

    QWidget other;
    other.show();
    other.activateWindow();
    QVERIFY(QTest::qWaitForWindowActive(&other));
    QVERIFY(!window.window->isActiveWindow());
    QTest::keyClick(box, Qt::Key_Down);
    QCOMPARE(window.value("net/untitled/MODE"), "b");
    QCOMPARE(window.value("net/untitled/X"), "1");
    other.close();
    window.window->activateWindow();
    QVERIFY(QTest::qWaitForWindowActive(window.window.get()));
    QTest::keyClick(box, Qt::Key_Up);
    QTest::keyClick(box, Qt::Key_Down);
    QCOMPARE(window.value("net/untitled/X"), "2");
    QCOMPARE(window.widget<QLineEdit>()->text(), "New");
}

/// The active window is then the dialog and not the one that opened it.
void TestControlActions::writesKeysetsOfDialogs()
{
    DescribedWindow window(describePage({}, "<ask><choose/><item type='gridlayout'><item type='dropdown'>" +
                                                Modes +
                                                "<keyset>net/untitled/X/1</keyset></item></item></ask>"),
                           {{"net", Net}});
    const ModalWatcher dialogs(
        [](QWidget &dialog) {
            dialog.activateWindow();
            QVERIFY(QTest::qWaitForWindowActive(&dialog));
            QTest::keyClick(dialog.findChild<QComboBox *>(), Qt::Key_Up);
        },
        "QDialog");
    window.window->showDialog("choose");
    QCOMPARE(dialogs.count(), 1);
    QCOMPARE(window.value("net/untitled/MODE"), "a");
    QCOMPARE(window.value("net/untitled/X"), "1");
}

void TestControlActions::letsAClockRunUntilItIsEdited()
{
    const QString loaded = "20240331235959";
    QTemporaryDir folder;
    ClockStore store;
    const QMap<QString, QByteArray> files{
        {"net", "TIME=" + loaded.toLatin1() + '\n'},
        {"interface",
         describePage("<item type='datetime' ticks='yes' format='yyyyMMddHHmmss'><key>net/untitled/TIME</key>"
                      "</item><item type='datetime' row='1'><key>net/untitled/TIME</key></item>"
                      "<item type='setup' row='2'><device/></item><item type='pushbutton' row='3'>"
                      "<action type='call' slot='callSetup' param='set_time'>device</action></item>")}};
    for (auto file = files.cbegin(); file != files.cend(); ++file) {
        QFile written(folder.filePath(file.key()));
        QVERIFY(written.open(QIODevice::WriteOnly) && written.write(file.value()) == file.value().size());
        store.setFilePath(file.key(), written.fileName());
    }
    CWinMain window(&store, nullptr);
    auto *clock = window.findChild<QDateTimeEdit *>();
    QCOMPARE(clock->text(), loaded);
    AWAIT_VERIFY(clock->text() >= "20240401000000");
    QVERIFY(clock->text() < "20240401000030");
    // Nobody has edited anything.
    QCOMPARE(store.value("net/untitled/TIME"), loaded);
    window.onLoadDone();
    QVERIFY(clock->text() >= "20240401000000");

    auto *button = window.findChildren<QPushButton *>().first();
    const QString shown = clock->text();
    button->click();
    QVERIFY(store.sent.constLast() >= shown);
    AWAIT_VERIFY(clock->text() > store.sent.constLast());

    // The hours; what is half typed stays.
    clock->setFocus();
    clock->setSelectedSection(QDateTimeEdit::HourSection);
    QTest::keyClicks(clock, "12");
    const QString edited = clock->text();
    QCOMPARE(edited.mid(8, 2), "12");
    QCOMPARE(store.value("net/untitled/TIME"), edited);
    QVERIFY(!paravue::RunningTime::of(*clock)->isRunning());
    button->click();
    QCOMPARE(store.sent.constLast(), edited);
    window.setValue("net/untitled/TIME/20250101000000");
    AWAIT_VERIFY(clock->text() > "20250101000000");
}

void TestControlActions::passesCommandsToTheStore()
{
    DescribedWindow window(
        describePage("<item type='setup'><device/></item><item type='pushbutton' row='1'>"
                     "<action type='call' slot='callSetup' param='save_settings'>device</action>"
                     "<action type='call' slot='nothing' param='x'>device</action>"
                     "<action type='call'>nobody</action></item>"));
    QVERIFY(window.widget<cSetupWidget>());
    QSignalSpy stored(&window.fixture.store(), &OrbSetup::storeDone);
    QTest::mouseClick(window.widget<QPushButton>(), Qt::LeftButton);
    QCOMPARE(stored.size(), 1);
    QCOMPARE(window.messages.texts(), QStringList());
}

QTEST_MAIN(TestControlActions)
#include "tst_control_actions.moc"
