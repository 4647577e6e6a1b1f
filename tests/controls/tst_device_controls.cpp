#include "controls/K9mButton.h"
#include "ui/DescribedWindow.h"

#include <QAccessible>
#include <QLabel>
#include <QLineEdit>
#include <QProgressBar>

using namespace paravue::test;

namespace
{

/// A report of a disk that is worn by its \a hours only.
QByteArray report(const char *hours)
{
    const QByteArray filled = QByteArray("0x0033   100   100   036    Old_age   Always       -       ");
    return "'ID#\\n  5 Reallocated_Sector_Ct   " + filled + "0\\n  9 Power_On_Hours          " + filled +
           hours + "\\n'\n";
}

const QByteArray Disk =
    "GOOD=" + report("1500") + "FAIR=" + report("10500") + "BAD=" + report("10650") + "LIGHT=on\nWIPER=off\n";

QString readOut(QWidget *widget, QAccessible::Text kind)
{
    return QAccessible::queryAccessibleInterface(widget)->text(kind);
}

} // namespace

class TestDeviceControls : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void showsTheHealthOfADisk_data();
    void showsTheHealthOfADisk();
    void buttonSwitches_data();
    void buttonSwitches();
    void buttonFollowsItsKey();
    void lampShowsTheState();
    void pictureSaysWhyItIsEmpty();
};

void TestDeviceControls::showsTheHealthOfADisk_data()
{
    QTest::addColumn<QByteArray>("attributes");
    QTest::addColumn<QString>("key");
    QTest::addColumn<int>("value");
    QTest::addColumn<QColor>("color");
    QTest::addColumn<QString>("tip"); // a part of it

    const QByteArray range = "minvalue='0' maxvalue='100'";
    const QColor green("#32CD32");
    const QColor red("#FF0000");
    const auto row = [](const char *name, const QByteArray &attributes, const char *key, int value,
                        const QColor &color, const char *tip) {
        QTest::newRow(name) << attributes << key << value << color << tip;
    };
    row("good", range, "GOOD", 90, green, "90%");
    row("just good", range, "FAIR", 30, green, "30%");
    row("bad", range, "BAD", 29, red, "10650");
    row("no report", range, "NONE", 0, {}, "No report");
    row("no range", {}, "FAIR", 30, green, "30%");
    row("range that ends lower", "maxvalue='50'", "GOOD", 50, green, "90%");
}

void TestDeviceControls::showsTheHealthOfADisk()
{
    QFETCH(QByteArray, attributes);
    QFETCH(QString, key);
    QFETCH(QColor, color);
    QFETCH(QString, tip);
    DescribedWindow window(describePage("<item type='diskfitness' width='120' height='14' " + attributes +
                                        "><key>disk/untitled/" + key.toUtf8() + "</key></item>"),
                           {{"disk", Disk}});
    auto *bar = window.widget<QProgressBar>();
    QTEST(bar->value(), "value");
    const auto filled = [&] { return bar->grab().toImage().pixelColor(10, bar->height() / 2); };
    if (color.isValid()) // a bar that is not empty
        QCOMPARE(filled(), color);
    QVERIFY2(bar->toolTip().contains(tip), qPrintable(bar->toolTip()));
    QCOMPARE(bar->size(), QSize(120, 14));
    QCOMPARE(bar->maximumSize(), QSize(120, 14));
    QVERIFY(!bar->isTextVisible());

    const QString other = window.value(key == "BAD" ? "disk/untitled/GOOD" : "disk/untitled/BAD");
    window.window->setValue("disk/untitled/" + key + '/' + other);
    QCOMPARE(filled(), QColor(key == "BAD" ? "#32CD32" : "#FF0000"));
    QCOMPARE(window.messages.texts(), QStringList());
}

void TestDeviceControls::buttonSwitches_data()
{
    QTest::addColumn<Qt::Key>("key"); // none: the mouse
    QTest::newRow("mouse") << Qt::Key(0);
    QTest::newRow("space") << Qt::Key_Space;
    QTest::newRow("enter") << Qt::Key_Return;
}

void TestDeviceControls::buttonSwitches()
{
    QFETCH(Qt::Key, key);
    const QByteArray calls =
        "<action type='call' state='on' slot='setValue' param='disk/untitled/X/on'>self</action>"
        "<action type='call' state='off' slot='setValue' param='disk/untitled/X/off'>self</action>"
        "<action type='call' slot='setValue' param='disk/untitled/LIGHT/off'>self</action>";
    DescribedWindow window(
        describePage("<item type='k9m_button' checkable='true' color='blue'><text>Wiper</text>" + calls +
                     "<action type='enable' state='on'>field</action>"
                     "<action type='disable' state='off'>field</action></item>"
                     "<item type='k9m_button' row='1'><text>Go</text>" +
                     calls + "</item><item type='edit' row='2'><field/></item>"),
        {{"disk", Disk}});
    auto *wiper = window.widget<paravue::K9mButton>(0);
    auto *go = window.widget<paravue::K9mButton>(1);
    const auto press = [&](QWidget *button) {
        button->setFocus();
        if (key)
            QTest::keyClick(button, key);
        else
            QTest::mouseClick(button, Qt::LeftButton);
    };
    QCOMPARE(wiper->text(), "Wiper");
    QCOMPARE(wiper->palette().color(QPalette::Button), QColor(Qt::blue));
    QCOMPARE(window.value("disk/untitled/LIGHT"), "on"); // opening the window calls nothing
    QWidget *field = window.page()->findChild<QLineEdit *>();
    for (const QString state : {"on", "off", "on"}) {
        QVERIFY(field->isEnabled() != (state == "on"));
        press(wiper);
        QCOMPARE(window.value("disk/untitled/X"), state);
        QCOMPARE(wiper->isOn(), state == "on");
        QCOMPARE(wiper->isChecked(), state == "on");
        QCOMPARE(field->isEnabled(), state == "on");
    }
    QCOMPARE(window.value("disk/untitled/LIGHT"), "off");
    window.window->setValue("disk/untitled/X/");
    window.window->setValue("disk/untitled/LIGHT/on");
    press(go); // has no state
    QVERIFY(!go->isOn());
    QCOMPARE(window.value("disk/untitled/X"), "");
    QCOMPARE(window.value("disk/untitled/LIGHT"), "off");
}

void TestDeviceControls::buttonFollowsItsKey()
{
    DescribedWindow window(
        describePage("<item type='k9m_button' checkable='true'><key>disk/untitled/LIGHT</key></item>"
                     "<item type='k9m_button' row='1'><text>Lamp</text><key>disk/untitled/LIGHT</key></item>"
                     "<item type='k9m_button' row='2' checkable='true'><key>disk/untitled/WIPER</key></item>"
                     "<item type='pushbutton' row='3'>"
                     "<action type='call' slot='setState' param='on'>wiper</action></item>"
                     "<item type='k9m_button' row='4'><wiper/></item>"),
        {{"disk", Disk}});
    auto *light = window.widget<paravue::K9mButton>(0);
    auto *lamp = window.widget<paravue::K9mButton>(1);
    QVERIFY(light->isOn() && lamp->isOn() && !window.widget<paravue::K9mButton>(2)->isOn());
    QCOMPARE(readOut(lamp, QAccessible::Value), "On");
    QVERIFY(QAccessible::queryAccessibleInterface(light)->state().checked);
    window.window->setValue("disk/untitled/LIGHT/1");
    QVERIFY(!light->isOn() && !lamp->isOn());
    QCOMPARE(readOut(lamp, QAccessible::Value), "Off");
    QTest::mouseClick(light, Qt::LeftButton);
    QCOMPARE(window.value("disk/untitled/LIGHT"), "1"); // writing is left to its actions
    QTest::mouseClick(window.widget<QPushButton>(3), Qt::LeftButton);
    QVERIFY(window.widget<paravue::K9mButton>(3)->isOn());
}

void TestDeviceControls::lampShowsTheState()
{
    const auto look = [](paravue::K9mButton &button) { return button.icon().pixmap(32, 32).toImage(); };
    paravue::K9mButton button;
    const QImage off = look(button);
    QTest::mousePress(&button, Qt::LeftButton);
    const QImage lit = look(button);
    QVERIFY(lit != off);
    QTest::mouseRelease(&button, Qt::LeftButton);
    QCOMPARE(look(button), off);
    button.setOn(true);
    QCOMPARE(look(button), lit);
    button.setPalette(QPalette(Qt::black));
    QVERIFY(look(button) != lit);

    paravue::K9mButton toggle;
    toggle.setCheckable(true);
    QTest::mouseClick(&toggle, Qt::LeftButton);
    QCOMPARE(look(toggle), lit);
    QTest::mouseClick(&toggle, Qt::LeftButton);
    QCOMPARE(look(toggle), off);
}

void TestDeviceControls::pictureSaysWhyItIsEmpty()
{
    DescribedWindow window(
        describePage("<item type='label'><text>Yard</text></item>"
                     "<item type='online' column='1' width='160' height='90'/>"
                     "<item type='edit' column='2'/><item type='online' row='1' width='99999999'/>"));
    auto *picture = window.widget<QLabel>(1);
    QCOMPARE(picture->text(), "No signal");
    QCOMPARE(picture->size(), QSize(160, 90));
    QVERIFY(picture->hasScaledContents());
    QVERIFY(picture->frameStyle() != QFrame::NoFrame);
    QVERIFY(window.widget<QLabel>(2)->width() < 99999999);
    QCOMPARE(readOut(picture, QAccessible::Name), "Yard");
    QCOMPARE(readOut(picture, QAccessible::Value), "No signal");
    QCOMPARE(readOut(window.page()->findChild<QLineEdit *>(), QAccessible::Name), "");

    QPixmap frame(704, 576);
    frame.fill(Qt::red);
    picture->setPixmap(frame);
    QCOMPARE(picture->size(), QSize(160, 90));
    QCOMPARE(picture->grab().toImage().pixelColor(5, 80), QColor(Qt::red));
    QCOMPARE(readOut(picture, QAccessible::Value), "");
}

QTEST_MAIN(TestDeviceControls)
#include "tst_device_controls.moc"
