#include "DescribedControls.h"
#include "support/TestTable.h"

#include <QCheckBox>
#include <QComboBox>
#include <QLabel>
#include <QLineEdit>
#include <QRegularExpression>
#include <QScrollArea>

using namespace paravue::test;

namespace
{

// What this program does not know, in the same file.
const QByteArray Foreign =
    "; by hand\r\nNAME2 = '  x '\r\nodd line\r\n\r\n[ other ]\r\nNEW = 'it is'\r\n# NAME\r\n";

/// The lines of a file, to the byte, without those that hold one of \a values.
QByteArrayList linesExcept(const QByteArray &file, const QStringList &values)
{
    QByteArrayList lines = file.split('\n');
    const qsizetype end = lines.indexOf("[ other ]\r");
    for (const QString &value : values) {
        const QByteArray key = value.section(u'/', 2, 2).toUtf8() + " =";
        for (qsizetype line = end; line-- > 0;) {
            if (lines[line].startsWith(key))
                lines.removeAt(line);
        }
    }
    return lines;
}

} // namespace

class TestControlValues : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void load_data();
    void load();
    void write_data();
    void write();
    void marksWhatAFieldCannotShow_data();
    void marksWhatAFieldCannotShow();
    void staysQuietWhileLoading();
};

void TestControlValues::initTestCase()
{
    // An hour that is missing here when the clocks change; the recorder's clock may well show it.
    qputenv("TZ", "Europe/Berlin");
}

void TestControlValues::load_data()
{
    QTest::addColumn<QByteArray>("cell");
    QTest::addColumn<QString>("loaded");
    QTest::addColumn<QString>("assignment");
    QTest::addColumn<QString>("reloaded");

    const auto row = [](const char *name, const QByteArray &cell, const QString &loaded,
                        const QString &assignment = {}, const QString &reloaded = {}) {
        QTest::newRow(name) << cell << loaded << assignment << reloaded;
    };
    row("label", "type='label'><text>Name: {net/untitled/NAME}</text>", "Name: Gate 1",
        "net/untitled/NAME/x/y", "Name: x/y");
    row("label with a value",
        "type='label'><text>not this</text><value>net/untitled/MODE</value><choice value='b'>High "
        "{net/untitled/LEVEL}</choice><choice value='a'>Low</choice>",
        "High 7", "net/untitled/MODE/a", "Low");
    row("label with a value that has no words",
        "type='label'><value>net/untitled/MODE</value><choice value='x'>High</choice>", "b");
    row("label with a date", "type='label' format='dd.MM.yyyy'><value>net/untitled/TIME</value>",
        "31.03.2024", "net/untitled/TIME/soon", "soon");
    row("label with a unit",
        "type='label'><value>net/untitled/LEVEL</value><unit>m{net/untitled/MODE}</unit>", "7 mb",
        "net/untitled/LEVEL/", "");
    row("label with a tag", "type='label'><text>Name</text><value/>", "Name");
    row("edit", "type='edit'><key>net/untitled/NAME</key><key>net/untitled/MODE</key>", "Gate 1",
        "net/untitled/NAME/New", "New");
    row("edit, missing key with a default", "type='edit'><key>net/untitled/NONE/none</key>", "none",
        "net/untitled/NONE/", "");
    row("edit with a mask", "type='edit' inputMask='999-99;_'><key>net/untitled/MASKED</key>", "123-45",
        "net/untitled/MASKED/9", "9-");
    row("edit with a value that its validator rejects",
        "type='edit' validator='[0-9]+'><key>net/untitled/NAME</key>", "Gate 1");
    row("drop-down", "type='dropdown'>" + Modes, "High", "net/untitled/MODE/a", "Low");
    row("drop-down with keys beside its texts",
        "type='dropdown'><text>Low</text><key>net/untitled/MODE/a</key><text>High</text><key>net/untitled/"
        "MODE/b"
        "</key><text>None</text>",
        "High", "net/untitled/MODE/a", "Low");
    row("drop-down, value not among the choices", "type='dropdown'>" + Modes, "High", "net/untitled/MODE/c",
        "High");
    row("drop-down, the last that fits",
        "type='dropdown'>" + Modes + "<text>Also<key>net/untitled/LEVEL/7</key></text>", "Also");
    row("drop-down that shows a value", "type='dropdown'><text>{net/untitled/NAME}</text>", "Gate 1",
        "net/untitled/NAME/New", "New");
    row("check box", "type='checkbox'><text>{net/untitled/MODE}</text><key>net/untitled/ON</key>", "[x] b",
        "net/untitled/ON/off", "[ ] b");
    row("check box, missing value", "type='checkbox'><key>net/untitled/NONE</key>", "[x] ",
        "net/untitled/NONE/0", "[x] ");
    row("check box without a key", "type='checkbox'>", "[x] ");
    row("check box without a key, off by default", "type='checkbox' default='off'>", "[ ] ");
    row("check box, off by default", "type='checkbox' default='off'><key>net/untitled/NONE</key>", "[ ] ",
        "net/untitled/NONE/on", "[x] ");
    row("check box, off by default, other word",
        "type='checkbox' default='off'><key>net/untitled/LEVEL</key>", "[ ] ");
    row("scroll", "type='scroll' minvalue='2' maxvalue='9' value='3'><key>net/untitled/LEVEL</key>", "7",
        "net/untitled/LEVEL/100", "9");
    row("scroll without a key", "type='scroll' minvalue='2' maxvalue='9' value='3'>", "3");
    row("date and time", "type='datetime' format='dd.MM.yyyy HH:mm:ss'><key>net/untitled/TIME</key>",
        "31.03.2024 02:30:00", "net/untitled/TIME/20231231235959", "31.12.2023 23:59:59");
    row("date and time, no time", "type='datetime' format='yyyy'><key>net/untitled/TIME</key>", "2024",
        "net/untitled/TIME/soon", "2024");
    row("button", "type='pushbutton'><text>{net/untitled/NAME}</text>", "Gate 1", "net/untitled/NAME/x", "x");
    row("tabs",
        "type='tabwidget'><tab><name>A</name></tab><tab><name>B "
        "{net/untitled/MODE}</name></tab><selection>1</selection>",
        "B b");
    row("progress bar",
        "type='progressbar' minvalue='0' maxvalue='10' value='3'><key>net/untitled/LEVEL</key>", "7",
        "net/untitled/LEVEL/11", "10");
    row("progress bar without a key", "type='progressbar' maxvalue='10' value='3'>", "3");
    row("pie",
        "type='orbpie' "
        "value='5'><size>{net/untitled/SIZE}</size><used>{net/untitled/USED}</used><limit>3G</limit>",
        "25", "net/untitled/USED/1536M", "75");
    row("pie with a limit", "type='orbpie'><size>4G</size><used>1G</used><limit>{net/untitled/LIMIT}</limit>",
        "25", "net/untitled/LIMIT/3G", "25 of 75");
    row("pie of nothing", "type='orbpie'><size>{net/untitled/NONE}</size><used>{net/untitled/USED}</used>",
        "0");
    row("pie without a size", "type='orbpie' value='5'>", "5");
    row("pie in the largest sizes", "type='orbpie'><size>8000000T</size><used>4000000T</used>", "50");
    row("list",
        "type='list'><column "
        "width='90'>User</column><column>Number</column><row_count>net/untitled/ROWS</row_count>"
        "<column_source>net/untitled/USER</column_source><column_source>net/untitled/NR</column_source>"
        "<text>All {net/untitled/MODE}</text>",
        "All b|/ann|/bob|", "net/untitled/USER1/eve", "All b|/ann|/eve|");
    row("list that shrinks",
        "type='list'><column/><row_count>net/untitled/ROWS</row_count><column_source>net/untitled/USER</"
        "column_source>",
        "ann/bob", "net/untitled/ROWS/1", "ann");
}

void TestControlValues::load()
{
    QFETCH(QByteArray, cell);
    QFETCH(QString, loaded);
    QFETCH(QString, assignment);
    QFETCH(QString, reloaded);
    DescribedWindow window(describePage("<item " + cell + "</item>"), {{"net", Net}});
    QCOMPARE(shown(window), loaded);
    if (!assignment.isEmpty()) {
        window.window->setValue(assignment);
        QCOMPARE(shown(window), reloaded);
    }
    QCOMPARE(window.messages.texts(), QStringList());
}

void TestControlValues::write_data()
{
    QTest::addColumn<QByteArray>("cell");
    QTest::addColumn<QString>("keys"); // typed into the control; "+" is the space bar, "^" the key Up
    QTest::addColumn<QStringList>("values");

    const auto row = [](const char *name, const QByteArray &cell, const QString &keys,
                        const QStringList &values) { QTest::newRow(name) << cell << keys << values; };
    row("edit", "type='edit'><key>net/untitled/NAME</key>", "a/b", {"net/untitled/NAME/Gate 1a/b"});
    row("edit with two keys", "type='edit'><key>net/untitled/NAME</key><key>net/untitled/NEW/default</key>",
        "!", {"net/untitled/NAME/Gate 1!", "net/untitled/NEW/Gate 1!"});
    row("edit with a validator", "type='edit' validator='[0-9]{1,3}'><key>net/untitled/NEW</key>", "1x2y34",
        {"net/untitled/NEW/123"});
    row("edit without a key", "type='edit'>", "a", {});
    row("check box", "type='checkbox'><key>net/untitled/ON</key><key>net/untitled/NEW</key>", "+",
        {"net/untitled/ON/off", "net/untitled/NEW/off"});
    row("check box, back", "type='checkbox'><key>net/untitled/OFF</key>", "+", {"net/untitled/OFF/on"});
    row("scroll", "type='scroll' maxvalue='9'><key>net/untitled/LEVEL</key><key>net/untitled/NEW</key>", "^",
        {"net/untitled/LEVEL/6", "net/untitled/NEW/"});
    row("drop-down", "type='dropdown'>" + Modes, "^", {"net/untitled/MODE/a"});
    row("drop-down, choice without a key",
        "type='dropdown'><text>None</text><text>High<key>net/untitled/MODE/b</key></text>", "^",
        {"net/untitled/MODE/b"});
    row("drop-down with keys beside its texts",
        "type='dropdown'><text>Low</text><key>net/untitled/MODE/a</key><text>High</text><key>net/untitled/"
        "MODE/b"
        "</key>",
        "^", {"net/untitled/MODE/a"});
    row("date and time", "type='datetime' format='HH:mm'><key>net/untitled/TIME</key>", "^",
        {"net/untitled/TIME/20240331033000"});
    row("date and time in the afternoon", "type='datetime' format='HH'><key>net/untitled/TIME</key>", "15",
        {"net/untitled/TIME/20240331153000"});
    row("button", "type='pushbutton'><key>net/untitled/NAME</key>", "+", {"net/untitled/NAME/Gate 1"});
}

void TestControlValues::write()
{
    QFETCH(QByteArray, cell);
    QFETCH(QString, keys);
    QFETCH(QStringList, values);
    const QByteArray reader =
        "<item type='label' row='1'><text>{net/untitled/NAME}{net/untitled/ON}</text></item>";
    DescribedWindow window(describePage("<item " + cell + "</item>" + reader),
                           {{"net", "[ untitled ]\n" + Net + Foreign}});
    window.fixture.store().flush(); // this quotes values in its own way
    const QByteArray file = window.fixture.content("net");
    QVERIFY(file.endsWith(Foreign));
    QWidget *target = control(window, 1);
    target->setFocus();
    for (const QChar key : keys) {
        if (key == u'^')
            QTest::keyClick(target, Qt::Key_Up);
        else
            QTest::keyClick(target, key == u'+' ? ' ' : key.toLatin1());
    }
    for (const QString &value : values)
        QCOMPARE(window.value(OrbSetup::path(value)), OrbSetup::defValue(value));
    window.fixture.store().flush();
    QCOMPARE(linesExcept(window.fixture.content("net"), values), linesExcept(file, values));
    QCOMPARE(shown(window, 2), window.value("net/untitled/NAME") + window.value("net/untitled/ON"));
    QCOMPARE(window.messages.texts(), QStringList());
}

void TestControlValues::marksWhatAFieldCannotShow_data()
{
    const TestTable<QByteArray, QByteArray, QString, int, QString> row("attributes", "content", "mark", "key",
                                                                       "edited");
    const auto key = [](const QByteArray &name) { return "<key>net/untitled/" + name + "</key>"; };
    const QByteArray choices = "<text>A<key>net/untitled/V/a</key></text><text>B<key>net/untitled/V/b</key>"
                               "</text><text>without a key</text>";
    const QByteArray empty = "<text>A<key>net/untitled/EMPTY/a</key></text>"
                             "<text>B<key>net/untitled/EMPTY/b</key></text>";
    const QString longText = "0123456789012345…";
    row("no such choice", "type='dropdown'", choices, "Stored: other", Qt::Key_Down, "V/b");
    row("secret choice", "type='dropdown' secret='yes'", choices, "Another value stored", Qt::Key_Down,
        "V/b");
    row("no choice is stored", "type='dropdown'", empty, "Nothing stored", Qt::Key_Down, "EMPTY/b");
    row("stored choice", "type='dropdown'", "<text>A<key>net/untitled/V/other</key></text>", "", 0, "");
    row("choices without keys", "type='dropdown'", "<text>A</text>", "", 0, "");
    row("beside the mask", "type='edit' inputMask='99;_'", key("V"), "Stored: other", Qt::Key_1, "V/1");
    row("password", "type='edit' inputMask='99;_' password='on'", key("V"), "Another value stored", Qt::Key_1,
        "V/1");
    row("text", "type='edit'", key("V"), "", 0, "");
    row("long text", "type='edit' inputMask='99;_'", key("LONG"), "Stored: " + longText, Qt::Key_1, "LONG/1");
    row("neither on nor off", "type='checkbox'", key("V"), "Stored: other", Qt::Key_Space, "V/off");
    row("neither on nor off by default", "type='checkbox'", key("EMPTY"), "", 0, "");
    row("no number", "type='scroll' maxvalue='3'", key("V"), "Stored: other", Qt::Key_Down, "V/1");
    row("position beyond the end", "type='scroll' maxvalue='3'", key("LEVEL"), "Stored: 7", Qt::Key_Up,
        "LEVEL/2");
    row("no position", "type='scroll' maxvalue='3'", key("EMPTY"), "", 0, "");
    row("no date", "type='datetime' format='yyyy'", key("V"), "Stored: other", Qt::Key_Up, "V/\\d{14}");
    row("missing date", "type='datetime' format='yyyy'", key("EMPTY"), "Nothing stored", Qt::Key_Up,
        "EMPTY/\\d{14}");
    row("date before all dates", "type='datetime' format='yyyy'", key("OLD"), "Stored: 01000101000000",
        Qt::Key_Up, "");
    row("date", "type='datetime' format='yyyy'", key("TIME"), "", 0, "");
    row("date of a clock", "type='datetime' ticks='yes'", key("TIME"), "", 0, "");
    row("missing date of a clock", "type='datetime' ticks='yes' format='yyyy'", key("EMPTY"),
        "Nothing stored", Qt::Key_Up, "EMPTY/\\d{14}");
}

void TestControlValues::marksWhatAFieldCannotShow()
{
    QFETCH(QByteArray, attributes);
    QFETCH(QByteArray, content);
    QFETCH(QString, mark);
    QFETCH(int, key);
    QFETCH(QString, edited);
    const QByteArray file = "EMPTY=\nLEVEL=7\nLONG=0123456789012345678\nOLD=01000101000000\n"
                            "TIME=20240331023000\nV=other\n";
    DescribedWindow window(describePage("<item " + attributes + ">" + content + "</item>"), {{"net", file}});
    const auto values = [&] {
        return window.fixture.store().regexp_values("net/untitled/.*").replaceInStrings("net/untitled/", "");
    };
    const QStringList before = values();
    const auto shownMark = [&] {
        const auto *label = window.page()->findChild<QLabel *>("storedMark");
        return label && label->isVisible() ? label->text() : QString();
    };
    QWidget *field = control(window, 1);
    QCOMPARE(shownMark(), mark);
    QCOMPARE(field->accessibleDescription().isEmpty(), mark.isEmpty());
    if (const auto *box = qobject_cast<QComboBox *>(field))
        QCOMPARE(box->currentIndex(), 0);
    if (mark.isEmpty())
        return;
    const auto *label = window.page()->findChild<QLabel *>("storedMark");
    QVERIFY(label->geometry().left() > field->geometry().right());
    QVERIFY(window.page()->findChild<QScrollArea *>()->widget()->rect().contains(label->geometry()));
    window.window->onLoadDone();
    QCOMPARE(values(), before);
    if (edited.isEmpty())
        return;
    field->setFocus();
    if (auto *edit = qobject_cast<QLineEdit *>(field))
        edit->selectAll();
    QTest::keyClick(field, Qt::Key(key));
    QCOMPARE(values().filter(QRegularExpression(edited)).size(), 1);
    QCOMPARE(shownMark(), QString());
    QVERIFY(field->accessibleDescription().isEmpty());
}

void TestControlValues::staysQuietWhileLoading()
{
    // Every value is one that its control shows differently: a pass that wrote would leave a trace.
    DescribedWindow window(
        describePage(
            "<item type='edit' inputMask='99;_'><key>net/untitled/NAME</key></item>"
            "<item type='checkbox' row='1'><key>net/untitled/MODE</key></item>"
            "<item type='scroll' row='2' maxvalue='3'><key>net/untitled/LEVEL</key></item>"
            "<item type='datetime' row='3'><key>net/untitled/MODE</key></item>"
            "<item type='dropdown' row='4'><text>A<key>net/untitled/MODE/a</key></text>"
            "<keyset>net/untitled/X/1</keyset>"
            "<action type='call' slot='setValue' param='net/untitled/X/2'>self</action></item>"
            "<item type='checkbox' row='5'><key>net/untitled/ON</key>"
            "<action type='call' slot='setValue' param='net/untitled/X/3'>self</action>"
            "<action state='on' type='call' slot='setValue' param='net/untitled/X/4'>self</action></item>"
            "<item type='pushbutton' row='6'>"
            "<action type='call' slot='setValue' param='net/untitled/X/5'>self</action></item>"
            "<item type='checkbox' row='7'/>"),
        {{"net", Net}});
    auto *ownBox = window.widget<QCheckBox>(2);
    QTest::keyClick(ownBox, Qt::Key_Space);
    window.window->onLoadDone();   // the same description: the controls are loaded again
    QVERIFY(!ownBox->isChecked()); // without a key it is the user's
    for (const char *value : {"NAME/Gate 1", "MODE/b", "LEVEL/7", "X/"}) {
        const QString address = QStringLiteral("net/untitled/") + value;
        QCOMPARE(window.value(OrbSetup::path(address)), OrbSetup::defValue(address));
    }
}

QTEST_MAIN(TestControlValues)
#include "tst_control_values.moc"
