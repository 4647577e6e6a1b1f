#include "DescribedWindow.h"

#include <QLineEdit>
#include <QPushButton>
#include <QRegularExpression>

using namespace paravue::test;

namespace
{

const QString Endless = "The actions of the interface description do not come to an end";
const QString BeyondGrid =
    "A control at row -?\\d+, column -?\\d+ is beyond the limits of a grid and was left out";

QByteArray caller(const QByteArray &content)
{
    return "<item type='pushbutton' row='1'>" + content + "</item>";
}

QByteArray call(const QByteArray &slot, const QByteArray &target, const QByteArray &param = {})
{
    return "<action type='call' slot='" + slot + '\'' + (param.isNull() ? "" : " param='" + param + '\'') +
           '>' + target + "</action>";
}

} // namespace

/// Whatever a recorder describes: at most one message, and a window that still works.
class TestHostileDescription : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void staysUsable_data();
    void staysUsable();
    void boundsTheWholeDescription_data();
    void boundsTheWholeDescription();
};

void TestHostileDescription::staysUsable_data()
{
    QTest::addColumn<QByteArray>("cells");
    QTest::addColumn<QByteArray>("rest");
    QTest::addColumn<QString>("message"); // a pattern; empty: none
    QTest::addColumn<QByteArray>("windowTag");

    const auto row = [](const char *name, const QByteArray &cells, const QString &message = {},
                        const QByteArray &rest = {}, const QByteArray &windowTag = "<window>") {
        QTest::newRow(name) << cells << rest << message << windowTag;
    };
    row("far row", "<item type='label' row='20000000'/>", BeyondGrid);
    row("far column", "<item type='spacer' column='2147483647'/>", BeyondGrid);
    row("row before the first", "<item type='edit' row='-1'/>", BeyondGrid);
    row("endless span",
        "<item type='label' rowSpan='2147483647'/><item type='label' row='1' columnSpan='1001'/>",
        BeyondGrid);
    row("negative span", "<item type='label' row='2' rowSpan='-2147483648' columnSpan='-7'/>");
    row("far stretch", "<stretch column='2147483647'>1</stretch>",
        "A stretch of row or column 2147483647 is beyond the limits of a grid and was left out");
    row("large stretch",
        "<stretch row='0'>2147483647</stretch><stretch row='1'>-5</stretch><stretch>1</stretch>");
    row("large sizes", "<item type='edit' row='2' width='2147483647' height='2147483647'/>"
                       "<item type='list' row='3'><column width='2147483647'/></item>");
    row("negative sizes", "<item type='edit' row='2' width='-5' height='-2147483648'/>");
    row("ranges",
        "<item type='scroll' row='2' minvalue='-2147483648' maxvalue='2147483647'/>"
        "<item type='scroll' row='3' minvalue='5' maxvalue='-5'/>"
        "<item type='progressbar' row='4' minvalue='-2147483648' maxvalue='2147483647' value='99999999999'/>"
        "<item type='orbpie' row='5' value='-2147483648'/>");
    row("many rows",
        "<item type='list' row='2'><column/><row_count>net/untitled/MANY</row_count>"
        "<column_source>net/untitled/A</column_source></item>",
        "A list has 2000000000 rows; only the first 10000 are shown");
    row("negative rows", "<item type='list' row='2'><row_count>net/untitled/LESS</row_count></item>");
    row("many columns",
        "<item type='list' row='2'>" + QByteArray("<column>c</column>").repeated(10'000) + "</item>");
    row("many controls", QByteArray("<item type='spacer' row='2'/>").repeated(12'001),
        "The interface description is too large; a part of it is not shown");
    row("many lists", QByteArray("<item type='list' row='2'/>").repeated(301),
        "The interface description is too large; a part of it is not shown");
    row("text that refers to itself", "<item type='label' row='2'><text>@self</text></item>",
        "A text of the interface description is too large: \"@self\"",
        "<translations><ru><self>a@self</self></ru></translations>");
    row("circle of clicks",
        caller("<a/>" + call("click", "b")) + caller("<b/>" + call("click", "a") + call("click", "b")),
        Endless);
    row("circle through the window", caller("<a/>" + call("saveSettings", "self")), Endless,
        "<buttonOK>" + call("click", "a") + "</buttonOK>");
    row("dialog that opens itself", caller(call("onCtrlChanged", "self") + call("showDialog", "self", "d")),
        Endless, "<x><d/>" + call("showDialog", "self", "d") + "</x>");
    row("many time tasks", caller(call("showDialog", "self", "d")),
        "The interface description has more than 1000 time tasks",
        "<x><d/>" + QByteArray("<timetask period='1'/>").repeated(1001) + "</x>");
    QByteArray fan = caller(call("click", "a"));
    for (char level = 'a'; level < 'm'; ++level)
        fan += QByteArray("<item type='checkbox' visible='no'><") + level + "/>" +
               call("click", QByteArray(1, level + 1)).repeated(10) + "</item>";
    row("fan of clicks", fan + "<item type='checkbox' row='2'><m/></item>", Endless);
    row("slots that are none",
        caller(call("none", "self") + call("none", "self", "x") + call("setValue", "self") +
               call("saveSettings", "self", "x") + call("", "self") + call("click()", "a") +
               call("setText", "nobody", "x") + "<a/>"));
    row("slots that are not for descriptions",
        caller("<a/>" + call("deleteLater", "self") + call("deleteLater", "a") +
               call("_q_dialogFinished", "self")));
    row("windows that cannot be hidden", "<item type='label' row='2'/>", {}, {},
        "<window enabled='no' visible='no'>");
    row("window beyond every screen", "<item type='label' row='2'/>", {}, {},
        "<window width='2147483647' height='2147483647'><width>2147483647</width>"
        "<height>2147483647</height>");
    row("disabled window", "<item type='checkbox' row='2'><action state='on' type='disable'>self</action>"
                           "<action state='off' type='disable'>self</action></item>");
    row("decorations of its own",
        "<item type='label' row='2'><controlWidget address='2' "
        "id='link2'/><link2/><text>{net/untitled/A}</text></item>" +
            caller(call("clear", "link2") + call("clear", "far")),
        {}, "<x><far/><controlWidget address='1' id='link1'/></x>");
    row("addresses that are none",
        "<item type='edit' row='2'><key>net</key></item>"
        "<item type='label' row='3'><text>{//}{ }</text></item>",
        "Wrong key \"net\"");
    row("selections that are none",
        "<item type='tabwidget' row='2'><selection>-5</selection></item>"
        "<item type='tabwidget' row='3'><tab/><selection>2147483647</selection></item>");
    row("mask and pattern that are none", "<item type='edit' row='2' inputMask='[[[]]]' validator='((((['/>");
}

void TestHostileDescription::staysUsable()
{
    QFETCH(QByteArray, cells);
    QFETCH(QByteArray, rest);
    QFETCH(QString, message);
    QFETCH(QByteArray, windowTag);
    const QByteArray field = "<item type='edit'><key>net/untitled/NAME</key></item>";
    DescribedWindow window(describePage(field + cells, rest).replace("<window>", windowTag),
                           {{"net", "MANY=2000000000\nLESS=-5\n"}});
    {
        ModalWatcher dialogs({}, "QDialog");
        for (int index = 0; QPushButton *button = window.widget<QPushButton>(index); ++index)
            QTest::mouseClick(button, Qt::LeftButton);
        window.settle();
    }
    const QStringList shown = window.messages.texts();
    if (message.isEmpty()) {
        QCOMPARE(shown, QStringList());
    } else {
        QVERIFY(!shown.isEmpty());
        for (const QString &text : shown)
            QVERIFY2(QRegularExpression(QRegularExpression::anchoredPattern(message)).match(text).hasMatch(),
                     qPrintable(text));
        QVERIFY(shown.size() <= qMax(1, int(window.page()->findChildren<QPushButton *>().size())));
    }
    QVERIFY(window.window->isVisible());
    QVERIFY(window.window->isEnabled());
    QVERIFY(window.window->width() * window.window->height() * 4 <=
            64 * 1024 * 1024); // what it is painted on
    QTest::keyClicks(window.widget<QLineEdit>(), "ok");
    QCOMPARE(window.value("net/untitled/NAME"), "ok");
    window.fixture.store().load();
    QTest::keyClick(window.window.get(), Qt::Key_Escape);
    QVERIFY(!window.window->isVisible());
}

void TestHostileDescription::boundsTheWholeDescription_data()
{
    QTest::addColumn<QByteArray>("cells");
    // Each of these is within the limits; all of them together are not.
    QTest::newRow("lists") << QByteArray("<item type='list'><column/><row_count>net/untitled/ROWS</row_count>"
                                         "<column_source>net/untitled/A</column_source></item>")
                                  .repeated(100);
    QTest::newRow("texts")
        << QByteArray("<item type='label' visible='no'><text>@long</text></item>").repeated(100);
    QTest::newRow("grids")
        << QByteArray("<item type='gridlayout'><item type='spacer' row='999' column='999'/></item>")
               .repeated(2000);
}

void TestHostileDescription::boundsTheWholeDescription()
{
    QFETCH(QByteArray, cells);
    DescribedWindow window(
        describePage("<item type='edit'><key>net/untitled/NAME</key></item>" + cells,
                     "<translations><ru><long>" + QByteArray(1'000'000, 'x') + "</long></ru></translations>"),
        {{"net", "ROWS=10000\n"}});
    QCOMPARE(window.messages.count(), 1);
    window.fixture.store().load();
    QCOMPARE(window.messages.count(), 1);
    QTest::keyClicks(window.widget<QLineEdit>(), "ok");
    QCOMPARE(window.value("net/untitled/NAME"), "ok");
}

QTEST_MAIN(TestHostileDescription)
#include "tst_hostiledescription.moc"
