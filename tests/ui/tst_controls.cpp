#include "DescribedWindow.h"
#include "controls/OrbProgressPie.h"
#include "entry/cSetupWidget.h"
#include "support/TestTable.h"
#include "support/Waiting.h"
#include "ui/types/RunningTime.h"

#include <QCheckBox>
#include <QComboBox>
#include <QDateTimeEdit>
#include <QFile>
#include <QGridLayout>
#include <QHeaderView>
#include <QHelpEvent>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QRegularExpression>
#include <QScrollArea>
#include <QScrollBar>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QToolTip>
#include <QTreeWidget>
#include <QWheelEvent>

using namespace paravue::test;

namespace
{

/// The control that carries the number \a number.
QWidget *control(const DescribedWindow &window, int number)
{
    for (QWidget *widget : window.page()->findChildren<QWidget *>()) {
        if (widget->accessibleName() == QStringLiteral("link%1").arg(number))
            return widget;
    }
    return nullptr;
}

/// What it shows, in words.
QString shown(const DescribedWindow &window, int number = 1)
{
    QWidget *widget = control(window, number);
    if (auto *box = qobject_cast<QCheckBox *>(widget))
        return (box->isChecked() ? "[x] " : "[ ] ") + box->text();
    if (auto *pie = qobject_cast<OrbProgressPie *>(widget))
        return QString::number(pie->progress()) +
               (pie->limit() % 100 ? QStringLiteral(" of %1").arg(pie->limit()) : QString());
    if (auto *tabs = qobject_cast<QTabWidget *>(widget))
        return tabs->tabText(tabs->currentIndex());
    QStringList rows;
    if (auto *list = qobject_cast<QTreeWidget *>(widget)) {
        for (int row = 0; row < list->topLevelItemCount(); ++row) {
            QStringList cells;
            for (int column = 0; column < list->columnCount(); ++column)
                cells << list->topLevelItem(row)->text(column);
            rows << cells.join(u'|');
        }
        return rows.join(u'/');
    }
    // A progress bar has a text besides its value.
    for (const char *name : {"value", "currentText", "text"}) {
        const QVariant property = widget->property(name);
        if (property.isValid())
            return property.toString();
    }
    return {};
}

const QByteArray Net = "MODE=b\nNAME='Gate 1'\nON=on\nOFF=off\nLEVEL=7\nTIME=20240331023000\nROWS=2\n"
                       "USER0=ann\nUSER1=bob\nSIZE=2G\nUSED='0.5 G'\nMASKED=12345\n";

const QByteArray Modes =
    "<text>Low<key>net/untitled/MODE/a</key></text><text>High<key>net/untitled/MODE/b</key></text>";

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

class TestControls : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void load_data();
    void load();
    void write_data();
    void write();
    void appliesAttributes();
    void placesCells();
    void notesWhatIsWrong_data();
    void notesWhatIsWrong();
    void keepsNotesWithTheirField();
    void linesUpWithNotedFields();
    void keepsOneRhythm();
    void makesRoomForTexts();
    void elidesLongLabels();
    void drawsLinesAcrossTheirGrid();
    void enablesAndDisables();
    void callsInStates();
    void callsInTheStatesOfButtonsAndChoices();
    void writesKeysetsInTheActiveWindowOnly();
    void writesKeysetsOfDialogs();
    void showsHeadings();
    void showsScrollBarsAsSliders();
    void leavesTheWheelToThePage();
    void letsAClockRunUntilItIsEdited();
    void marksWhatAFieldCannotShow_data();
    void marksWhatAFieldCannotShow();
    void staysQuietWhileLoading();
    void passesCommandsToTheStore();
};

void TestControls::initTestCase()
{
    // An hour that is missing here when the clocks change; the recorder's clock may well show it.
    qputenv("TZ", "Europe/Berlin");
}

void TestControls::load_data()
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

void TestControls::load()
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

void TestControls::write_data()
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

void TestControls::write()
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

void TestControls::appliesAttributes()
{
    DescribedWindow window(
        describePage("<item type='edit' password='on' width='300' height='40' textside='left' enabled='no'>"
                     "<tooltip>Now {net/untitled/MODE}</tooltip></item>"
                     "<item type='edit' row='1' visible='no'/>"
                     "<item type='scroll' row='2' orientation='horizontal' maxvalue='5'/>"
                     "<item type='scroll' row='3' orientation='Horizontal'/>"
                     "<item type='datetime' row='6' calendarPopup='on'/>"
                     "<item type='pushbutton' row='7' checkable='true' color='red'/>"
                     "<item type='list' row='8'><column width='77'>One</column><column>Two</column></item>"
                     "<item type='label' row='9'><text>&lt;img src=x&gt;</text></item>"),
        {{"net", Net}});
    const auto *edit = window.widget<QLineEdit>();
    QCOMPARE(edit->echoMode(), QLineEdit::Password);
    QCOMPARE(edit->minimumSize(), QSize(300, 40));
    QCOMPARE(edit->layoutDirection(), Qt::RightToLeft);
    QVERIFY(!edit->isEnabled());
    QCOMPARE(edit->toolTip(), "Now b");
    window.window->setValue("net/untitled/MODE/c");
    QCOMPARE(edit->toolTip(), "Now c");
    QVERIFY(!window.widget<QLineEdit>(1)->isVisible());
    QCOMPARE(window.widget<QScrollBar>(0)->orientation(), Qt::Horizontal);
    QCOMPARE(window.widget<QScrollBar>(1)->orientation(), Qt::Vertical);
    QVERIFY(window.widget<QDateTimeEdit>()->calendarPopup());
    QVERIFY(window.widget<QPushButton>()->isCheckable());
    QCOMPARE(window.widget<QPushButton>()->palette().color(QPalette::Button), QColor(Qt::red));
    QCOMPARE(window.widget<QTreeWidget>()->headerItem()->text(1), "Two");
    QCOMPARE(window.widget<QTreeWidget>()->columnWidth(0), 77);
    // A recorder's text loads nothing.
    QCOMPARE(qobject_cast<QLabel *>(control(window, 8))->textFormat(), Qt::PlainText);
}

void TestControls::placesCells()
{
    DescribedWindow window(
        describePage("<item type='label' row='1' column='2' rowSpan='0' alignment='center'/>"
                     "<item type='label' row='2' rowSpan='2' columnSpan='x' valign='bottom'/>"
                     "<item type='label' row='4' columnSpan='-1' alignment='right' valign='top'/>"
                     "<item type='gridlayout' row='5' column='1'><item type='label' row='3'/></item>"
                     "<stretch column='1' row='3'>4</stretch><stretch row='2'>5</stretch>"));
    const auto *label = window.widget<QLabel>();
    QGridLayout *grid = nullptr;
    for (QGridLayout *candidate : label->parentWidget()->findChildren<QGridLayout *>()) {
        if (candidate->indexOf(label) >= 0)
            grid = candidate;
    }
    QVERIFY(grid);
    const QList<int> cells[] = {{1, 2, 1, 1, Qt::AlignHCenter | Qt::AlignVCenter},
                                {2, 0, 2, 1, Qt::AlignLeft | Qt::AlignBottom},
                                {4, 0, 1, 3, Qt::AlignRight | Qt::AlignTop},
                                {5, 1, 1, 1, Qt::AlignLeft | Qt::AlignVCenter}};
    QCOMPARE(grid->count(), 4);
    for (int i = 0; i < 4; ++i) {
        int row = 0, column = 0, rowSpan = 0, columnSpan = 0;
        grid->getItemPosition(i, &row, &column, &rowSpan, &columnSpan);
        QCOMPARE(QList<int>({row, column, rowSpan, columnSpan, int(grid->itemAt(i)->alignment())}), cells[i]);
    }
    QVERIFY(grid->itemAt(3)->layout());
    QCOMPARE(grid->columnStretch(1), 4);
    QCOMPARE(grid->rowStretch(2), 5);
    QCOMPARE(grid->rowStretch(3), 0); // of two numbers the column counts
}

void TestControls::notesWhatIsWrong_data()
{
    const TestTable<QByteArray, QString, QString> row("words", "value", "note");
    const QByteArray range("minimum='1' maximum='10'>");
    row("within", range, "10", "From 1 to 10");
    row("beyond", range, "10.5", "Outside of the range: From 1 to 10");
    row("not a number", range, "1x", "Not a number: From 1 to 10");
    row("nothing", range, "", "From 1 to 10");
    row("needed", "required='yes' minimum='0'>", " ", "A value is needed here");
    row("needed and there", "required='yes'>", "x", "Required");
    row("below", "minimum='-5'>", "-6", "Outside of the range: At least -5");
    row("above", "maximum='5'>", "6", "Outside of the range: At most 5");
    row("help", "maximum='5'><help>Up to {net/untitled/LEVEL}</help>", "5", "Up to 7");
    row("help, but wrong", "maximum='5'><help>Help</help>", "6", "Outside of the range: At most 5");
    row("no range", "minimum='x'><help>Help</help>", "y", "Help");
}

void TestControls::notesWhatIsWrong()
{
    QFETCH(QByteArray, words);
    QFETCH(QString, value);
    QFETCH(QString, note);
    const QByteArray cell = "<item type='edit' " + words + "<key>net/untitled/NEW</key></item>";
    DescribedWindow window(describePage(cell), {{"net", Net + "NEW='" + value.toUtf8() + "'\n"}});
    auto *edit = window.widget<QLineEdit>();
    const auto *label = window.widget<QLabel>();
    QCOMPARE(label->text(), note);
    // It is written all the same.
    edit->clear();
    QTest::keyClicks(edit, value);
    QCOMPARE(window.value("net/untitled/NEW"), value);
    QCOMPARE(label->text(), note);
    QCOMPARE(edit->accessibleDescription(), note);
}

void TestControls::keepsNotesWithTheirField()
{
    DescribedWindow window(
        describePage("<item type='edit' minimum='1' width='150' visible='no'><key>net/untitled/LEVEL</key>"
                     "<unit>{net/untitled/MODE}</unit><x/></item>"
                     "<item type='checkbox' row='1'><action type='enable' state='on'>x</action>"
                     "<action type='disable' state='off'>x</action>"
                     "<action type='call' slot='show'>x</action></item>"),
        {{"net", Net}});
    auto *edit = window.widget<QLineEdit>();
    const auto *unit = window.widget<QLabel>(0);
    const auto *note = window.widget<QLabel>(1);
    QVERIFY(!unit->isVisible() && !note->isVisible());
    window.widget<QCheckBox>()->click();
    QVERIFY(edit->isVisible() && unit->isVisible() && note->isVisible());
    QVERIFY(!edit->isEnabled() && !unit->isEnabled() && !note->isEnabled());
    window.settle();
    QVERIFY(unit->x() > edit->geometry().right());
    QVERIFY(note->y() > edit->geometry().bottom());
    QVERIFY(edit->width() >= 150);
    QVERIFY(unit->width() >= unit->sizeHint().width());
    window.window->setValue("net/untitled/MODE/kbit");
    QCOMPARE(unit->text(), "kbit");
}

void TestControls::linesUpWithNotedFields()
{
    DescribedWindow window(describePage(
        "<item type='label'><text>Name</text></item>"
        "<item type='edit' column='1' width='60'><help>A little longer than the field is wide</help></item>"
        "<item type='checkbox' column='2'><text>On</text></item>"
        "<item type='edit' row='1' column='1' width='60'/>"));
    window.settle();
    const auto centre = [](const QWidget *widget) { return widget->geometry().center().y(); };
    const auto *edit = window.widget<QLineEdit>(0);
    QVERIFY(qAbs(centre(window.widget<QLabel>(0)) - centre(edit)) <= 1);
    QVERIFY(qAbs(centre(window.widget<QCheckBox>()) - centre(edit)) <= 1);
    QCOMPARE(edit->size(), window.widget<QLineEdit>(1)->size());
    const auto *help = window.widget<QLabel>(1);
    QVERIFY(help->height() < 2 * help->fontMetrics().height()); // one line
    QVERIFY(help->geometry().bottom() < window.widget<QLineEdit>(1)->y());
}

void TestControls::keepsOneRhythm()
{
    DescribedWindow window(describePage(
        "<item type='edit'/><item type='dropdown' row='1'><text>A choice of many words</text></item>"
        "<item type='datetime' row='2'/><item type='pushbutton' row='3'/><item type='checkbox' row='4'/>"
        "<item type='scroll' orientation='horizontal' row='5'/><item type='progressbar' row='6'/>"
        "<item type='k9m_button' row='7'/><item type='edit' row='8' width='400'/>"
        "<item type='edit' row='8' column='1'/>"));
    window.settle();
    QList<QWidget *> controls;
    for (QWidget *control : window.page()->findChildren<QWidget *>()) {
        if (control->isVisible() && !control->accessibleName().isEmpty())
            controls.append(control);
    }
    QCOMPARE(controls.size(), 10);
    const auto middle = [](const QWidget *control) { return 2 * control->y() + control->height(); };
    const int pitch = middle(controls[1]) - middle(controls[0]);
    for (int row = 2; row < 9; ++row)
        QVERIFY2(qAbs(middle(controls[row]) - middle(controls[row - 1]) - pitch) <= 2,
                 controls[row]->metaObject()->className());
    const QWidget *choice = window.widget<QComboBox>();
    for (const int row : {0, 1, 2}) {
        QCOMPARE(controls[row]->width(), choice->width());
        QCOMPARE(controls[row]->minimumWidth(), 0);
    }
    for (const int row : {0, 1, 2, 3, 7, 8})
        QCOMPARE(controls[row]->height(), choice->height());
    QCOMPARE(controls[8]->width(), 400);
    QVERIFY(controls[9]->width() < choice->width()); // another column
}

/// Beside a label that wants all of a narrow window.
void TestControls::makesRoomForTexts()
{
    const QByteArray words = "Words that want more room than a window of this width has";
    DescribedWindow window(
        describePage("<item type='label'><text>" + words +
                         "</text></item>"
                         "<item type='dropdown' column='1'><text>@more</text></item>"
                         "<item type='checkbox' column='2'><text>" +
                         words +
                         "</text></item>"
                         "<item type='pushbutton' column='3'><text>" +
                         words +
                         "</text></item>"
                         "<item type='list' row='1'><column width='20'>@more</column><column/></item>",
                     "<translations><ru><more>Short</more></ru><en><more>Not a short "
                     "choice</more></en></translations>"),
        {{"streams", "[ common ]\nlanguage=ru\n"}});
    window.window->resize(300, 300);
    window.window->setValue("streams/common/language/en");
    window.settle();
    for (QWidget *control : QList<QWidget *>{window.widget<QLabel>(), window.widget<QComboBox>(),
                                             window.widget<QCheckBox>(), window.widget<QPushButton>()}) {
        QVERIFY2(control->width() >= control->sizeHint().width(), control->metaObject()->className());
        QCOMPARE(control->minimumWidth(), 0);
    }
    const auto *choices = window.widget<QComboBox>();
    QVERIFY(choices->width() > choices->fontMetrics().horizontalAdvance(choices->currentText()));
    const QHeaderView *header = window.widget<QTreeWidget>()->header();
    QVERIFY(header->sectionSize(0) >= header->fontMetrics().horizontalAdvance("Not a short choice"));
}

void TestControls::elidesLongLabels()
{
    const QString text = QString("a & b ").repeated(400).trimmed();
    DescribedWindow window(describePage("<item type='label'><text>{net/untitled/NAME}</text></item>"
                                        "<item type='label' row='1'><text>{net/untitled/NAME}</text>"
                                        "<tooltip>Own</tooltip></item>"),
                           {{"net", "NAME='" + text.toUtf8() + "'\n"}});
    window.settle();
    auto *label = window.widget<QLabel>();
    auto *other = window.widget<QLabel>(1);
    QCOMPARE(label->text(), text);
    QVERIFY2(label->width() < 1000, qPrintable(QString::number(label->width())));
    // An ellipsis ends the line, where the plain label would have cut a letter.
    const QImage elided = label->grab().toImage();
    QLabel cut(text);
    cut.setFont(label->font());
    cut.setAlignment(label->alignment());
    cut.resize(label->size());
    QVERIFY(elided != cut.grab().toImage().convertToFormat(elided.format()));
    const auto toolTip = [](QLabel *over) {
        QHelpEvent help(QEvent::ToolTip, over->rect().center(), over->mapToGlobal(over->rect().center()));
        QApplication::sendEvent(over, &help);
        return QToolTip::text();
    };
    QVERIFY2(toolTip(label).contains("a & b a & b"), qPrintable(QToolTip::text()));
    QCOMPARE(toolTip(other), "Own");
}

void TestControls::drawsLinesAcrossTheirGrid()
{
    const QByteArray line = "<item type='separator' orientation='horizontal' row='";
    DescribedWindow window(describePage(
        "<item type='label' columnSpan='3' width='300'/>" + line + "1'/>" + line + "2' column='1'/>" + line +
        "3' column='1'/><item type='label' row='3' width='50'/>" + line +
        "5' column='1'/><item type='label' row='4' rowSpan='2' column='2' width='100'/>"));
    window.settle();
    QList<QFrame *> lines;
    for (QFrame *frame : window.page()->findChildren<QFrame *>()) {
        if (frame->frameShape() == QFrame::HLine)
            lines.append(frame);
    }
    QCOMPARE(lines.size(), 4);
    for (const int alone : {0, 1}) {
        QCOMPARE(lines[alone]->x(), window.widget<QLabel>(0)->x());
        QCOMPARE(lines[alone]->width(), 300);
    }
    for (const int beside : {2, 3})
        QVERIFY2(lines[beside]->width() < 200, qPrintable(QString::number(lines[beside]->width())));
    const QImage picture = lines[0]->grab().toImage();
    int drawn = 0;
    for (int y = 0; y < picture.height(); ++y)
        drawn += picture.pixel(100, y) == lines[0]->palette().color(QPalette::Mid).rgb();
    QCOMPARE(drawn, 1);
}

void TestControls::enablesAndDisables()
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

void TestControls::callsInStates()
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
void TestControls::callsInTheStatesOfButtonsAndChoices()
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

void TestControls::writesKeysetsInTheActiveWindowOnly()
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
void TestControls::writesKeysetsOfDialogs()
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

void TestControls::showsHeadings()
{
    const QByteArray line = "<item type='separator' orientation='horizontal' columnSpan='2' row='";
    DescribedWindow window(describePage(
        "<item type='label' row='0'/>" + line + "1'/>" + // 0: a heading
        "<item type='label' row='2'/><item type='label' row='2' column='1'/>"
        "<item type='label' row='3'/><item type='label' row='3' column='1'/>" +
        line + "4'/>" + // values
        "<item type='label' row='6'/><item type='label' row='6' column='1'/>" + line +
        "7'/>" + // 5, 6: a table
        "<item type='label' row='8'/><item type='edit' row='8' column='1'/>" + line + "9'/>" + // a field
        "<item type='label' row='10'/><item type='separator' row='11' orientation='vertical'/>"));
    QList<int> headings;
    for (int number = 0; number < 9; ++number) {
        if (window.widget<QLabel>(number)->font().weight() > QFont::Normal)
            headings << number;
    }
    QCOMPARE(headings, (QList<int>{0, 5, 6}));
}

void TestControls::showsScrollBarsAsSliders()
{
    DescribedWindow window(describePage("<item type='scroll' maxvalue='100' value='50' width='200'>"
                                        "<key>net/untitled/HALF/50</key></item>"
                                        "<item type='scroll' row='1' maxvalue='100' orientation='vertical' "
                                        "height='200'><key>net/untitled/HALF/50</key></item>"));
    for (const int number : {0, 1}) {
        auto *bar = window.widget<QScrollBar>(number);
        const bool isHorizontal = bar->orientation() == Qt::Horizontal;
        const int length = isHorizontal ? bar->width() : bar->height();
        const auto at = [&](int along) {
            return isHorizontal ? QPoint(along, bar->height() / 2) : QPoint(bar->width() / 2, along);
        };
        QCOMPARE(bar->value(), 50);
        QTest::mouseClick(bar, Qt::LeftButton, {}, at(2)); // where an arrow would be
        QCOMPARE(bar->value(), 40);
        QTest::mouseClick(bar, Qt::LeftButton, {}, at(length - 3));
        QCOMPARE(bar->value(), 50);
        QTest::mousePress(bar, Qt::LeftButton, {}, at(length / 2));
        QTest::mouseMove(bar, at(length - 1));
        QTest::mouseRelease(bar, Qt::LeftButton, {}, at(length - 1));
        QCOMPARE(bar->value(), 100);
        window.window->setValue("net/untitled/HALF/50");
    }
}

void TestControls::leavesTheWheelToThePage()
{
    DescribedWindow window(
        describePage("<item type='edit'/><item type='dropdown' row='1'>" + Modes +
                     "</item><item type='scroll' row='2' maxvalue='9'><key>net/untitled/LEVEL</key></item>"
                     "<item type='datetime' row='3'><key>net/untitled/TIME</key></item>"
                     "<item type='label' row='4' height='2000'/>"),
        {{"net", Net + "TIME=20240315120000\n"}});
    auto *area = window.page()->findChild<QScrollArea *>();
    const auto turn = [](QWidget *over) {
        const QPointF place = over->rect().center();
        QWheelEvent step(place, QPointF(over->mapToGlobal(place)), {}, {0, 120}, Qt::NoButton, Qt::NoModifier,
                         Qt::NoScrollPhase, false);
        QSpontaneKeyEvent::setSpontaneous(&step); // parents get only events of the window system
        qApp->notify(over, &step);
    };
    const QPair<QWidget *, QString> fields[] = {{window.widget<QComboBox>(), "net/untitled/MODE"},
                                                {control(window, 3), "net/untitled/LEVEL"},
                                                {window.widget<QDateTimeEdit>(), "net/untitled/TIME"}};
    for (const auto &[field, address] : fields) {
        const QString stored = window.value(address);
        window.widget<QLineEdit>()->setFocus();
        for (QWidget *over : {field, field->findChild<QWidget *>("qt_spinbox_lineedit")}) {
            if (!over)
                continue;
            area->verticalScrollBar()->setValue(200);
            turn(over);
            QCOMPARE(window.value(address), stored);
            QVERIFY(area->verticalScrollBar()->value() < 200);
            QVERIFY(!field->hasFocus());
        }
        field->setFocus();
        turn(field);
        QVERIFY(window.value(address) != stored);
    }
}

void TestControls::letsAClockRunUntilItIsEdited()
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

void TestControls::marksWhatAFieldCannotShow_data()
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

void TestControls::marksWhatAFieldCannotShow()
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

void TestControls::staysQuietWhileLoading()
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

void TestControls::passesCommandsToTheStore()
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

QTEST_MAIN(TestControls)
#include "tst_controls.moc"
