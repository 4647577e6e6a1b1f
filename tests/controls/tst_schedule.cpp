#include "Gestures.h"
#include "controls/ReadableColors.h"
#include "controls/ScheduleGrid.h"
#include "controls/WeekSchedule.h"
#include "support/TestTable.h"
#include "ui/DescribedWindow.h"

#include <QAbstractButton>
#include <QAccessible>
#include <QApplication>
#include <QClipboard>
#include <QHelpEvent>
#include <QLineEdit>
#include <QMenu>
#include <QPainter>
#include <QPushButton>
#include <QSignalSpy>
#include <QTimer>
#include <QToolTip>

using namespace paravue;
using namespace paravue::test;

namespace
{

using Week = QMap<int, QString>; // the days that hold something

constexpr int ColumnWidth = 60;

QByteArray cell(const QByteArray &content, const QByteArray &attributes = {})
{
    return "<item type='label'><text>Recording</text></item><item type='vornschedule' row='1' " + attributes +
           '>' + QByteArray("<column width='60'/>").repeated(24) + content + "</item>";
}

const QByteArray Key = "<key>plan/untitled/DAY</key>";
const QByteArray Continuous = QByteArray(24, '1');

/// A day that begins with these entries and has nothing behind them.
QString day(const QString &start, int slots = 24)
{
    return start.leftJustified(slots, u'0');
}

/// A day with \a entry in the hours \a from to \a to and nothing in the others.
QString hours(int from, int to, char entry = '1')
{
    return QString(from, u'0') + QString(to - from + 1, QLatin1Char(entry)) + QString(23 - to, u'0');
}

/// Performs the gestures of a user on a schedule, each written as a word.
class User
{
public:
    explicit User(const DescribedWindow &window)
        : m_schedule(window.widget<WeekSchedule>()), m_grid(window.widget<ScheduleGrid>())
    {
        m_schedule->setFocus();
    }

    void does(const QString &steps)
    {
        for (const QString &step : steps.split(u' ', Qt::SkipEmptyParts))
            does(step.section(u':', 0, 0), step.section(u':', 1));
    }

private:
    void does(const QString &verb, const QString &object)
    {
        if (verb == "press" || verb == "erase") {
            m_button = verb == "press" ? Qt::LeftButton : Qt::RightButton;
            QTest::mousePress(m_grid, m_button, {}, place(object));
        } else if (verb == "drag") {
            QTest::mouseMove(m_grid, place(object));
        } else if (verb == "release") {
            QTest::mouseRelease(m_grid, m_button, {}, place("0,0"));
        } else if (verb == "blur") {
            m_grid->clearFocus();
        } else if (verb == "key") {
            QTest::keySequence(m_grid, keys(object));
        } else if (verb == "type") { // wherever the focus is
            QTest::keySequence(m_schedule->window()->focusWidget(), keys(object));
        } else if (verb == "legend") {
            QTest::mouseClick(button(object), Qt::LeftButton);
        } else {
            choose(button(verb), object);
        }
    }

    /// Left and right are swapped where the hours run from right to left.
    QKeySequence keys(QString names) const
    {
        if (m_grid->isRightToLeft() && names.contains("Right"))
            names.replace("Right", "Left");
        else if (m_grid->isRightToLeft())
            names.replace("Left", "Right");
        return QKeySequence(names);
    }

    /// "hour,day", counted from 0, such as "3.5,0"; -1 is the caption.
    QPoint place(const QString &object) const
    {
        const double hour = object.section(u',', 0, 0).toDouble();
        const int day = object.section(u',', 1).toInt();
        const int rowHeight = m_grid->fontMetrics().height() + 8;
        const int fromTheEnd = hour < 0 ? 24 * ColumnWidth + 10 : qRound((24 - hour) * ColumnWidth) - 10;
        return {m_grid->isRightToLeft() ? fromTheEnd : m_grid->width() - 1 - fromTheEnd,
                day < 0 ? 5 : m_grid->height() - 1 - (7 - day) * rowHeight + 5};
    }

    QAbstractButton *button(const QString &beginning) const
    {
        for (auto *button : m_schedule->findChildren<QAbstractButton *>()) {
            if (button->text().remove(u' ').startsWith(beginning))
                return button;
        }
        return nullptr;
    }

    static void choose(QAbstractButton *button, const QString &entry)
    {
        QTimer::singleShot(0, button, [entry] {
            auto *menu = qobject_cast<QMenu *>(QApplication::activePopupWidget());
            while (menu && (!menu->activeAction() || menu->activeAction()->text().remove(u' ') != entry))
                QTest::keyClick(menu, Qt::Key_Down);
            QTest::keyClick(menu, Qt::Key_Return);
        });
        button->setFocus();
        QTest::keyClick(button, Qt::Key_Space); // returns when the menu is closed
    }

    WeekSchedule *m_schedule;
    ScheduleGrid *m_grid;
    Qt::MouseButton m_button = Qt::NoButton;
};

QByteArray fileOf(const Week &days)
{
    QByteArray file;
    for (auto day = days.begin(); day != days.end(); ++day)
        file += "DAY" + QByteArray::number(day.key()) + " = '" + day.value().toUtf8() + "'\n";
    return file;
}

Week daysOf(DescribedWindow &window)
{
    Week days;
    for (int day = 0; day < 7; ++day) {
        if (const QString text = window.value(QStringLiteral("plan/untitled/DAY%1").arg(day));
            !text.isEmpty())
            days[day] = text;
    }
    return days;
}

} // namespace

class TestSchedule : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void paints_data();
    void paints();
    void keepsWhatItDoesNotKnow();
    void showsTheResolutionOfTheValues_data();
    void showsTheResolutionOfTheValues();
    void keepsItsPlaceInOtherSlots();
    void leavesWhatItDoesNotUnderstand_data();
    void leavesWhatItDoesNotUnderstand();
    void understandsThreeLengths();
    void refusesToPaste_data();
    void refusesToPaste();
    void copiesInWords();
    void hasAMenu();
    void readsItsDescription();
    void followsTheStore();
    void ignoresInputWhileDisabled();
    void marksTheKinds();
    void readsOutTheCurrentHour();
    void hasFewTabStops();
};

void TestSchedule::paints_data()
{
    QTest::addColumn<QString>("steps");
    QTest::addColumn<Week>("changed"); // days
    QTest::addColumn<int>("strokes");

    const auto row = [](const char *name, const QString &steps, Week changed, int strokes = 1) {
        for (QString &text : changed)
            text = day(text);
        QTest::newRow(name) << steps << changed << strokes;
    };
    const QString on = QString::fromLatin1(Continuous);
    const auto days = [](int first, int last, const QString &text) {
        Week days;
        for (int day = first; day <= last; ++day)
            days[day] = text;
        return days;
    };

    row("click", "press:3,1 release", {{1, "0001"}});
    row("drag", "press:3,1 drag:5,2 release", {{1, "000111"}, {2, "000111"}});
    row("drag back and beyond the edge", "press:3,1 drag:9,6 drag:-1,-1 release", {{0, "1111"}, {1, "1111"}});
    row("day", "press:-1,2 release", {{2, on}});
    row("days", "press:-1,4 drag:7,3 release", days(3, 4, on));
    row("hour", "press:2,-1 drag:1,5 release", days(0, 6, "011"));
    row("week", "press:-1,-1 release", days(0, 6, on));
    row("escape", "press:3,1 drag:5,2 key:Esc drag:6,6 release", {}, 0);
    row("drag that loses the focus", "press:3,1 drag:4,2 blur drag:6,6", {{1, "00011"}, {2, "00011"}});
    row("press after a missed release", "press:3,1 press:0,0 release", {{0, "1"}, {1, "0001"}}, 2);
    row("keys during a stroke", "press:3,1 key:Del key:Space release", {{1, "0001"}});
    row("erasing", "press:0,0 drag:4,0 release erase:1,0 drag:2,0 release", {{0, "10011"}}, 2);
    row("nothing to erase", "erase:3,3 drag:4,3 release", {}, 0);
    row("click with the right button", "press:3,3 release erase:3,3 release", {{3, "0001"}});
    row("the same again", "press:3,1 release press:3,1 release", {{1, "0001"}}, 1);
    row("kind by the legend", "legend:Onmotion press:0,0 release", {{0, "2"}});
    row("kind by its key", "key:3 press:1,0 release key:0 press:1,0 release key:9 key:Space", {{0, "00"}}, 2);
    row("space", "key:Space", {{0, "1"}});
    row("arrows", "key:Right key:Right key:Down key:Left key:Down key:Up key:Space", {{1, "01"}});
    row("arrows at the edge", "key:Left key:Up key:Space", {{0, "1"}});
    row("shift and arrows", "key:Down key:Shift+Right key:Shift+Down key:Space", {{1, "11"}, {2, "11"}});
    row("home and end", "key:Down key:End key:Space key:Home key:Space", {{1, '1' + QString(22, u'0') + '1'}},
        2);
    row("shift and end", "key:Shift+End key:Space", {{0, on}});
    row("shift and home", "key:Right key:Right key:Shift+Home key:Space", {{0, "111"}});
    row("shift and the arrows back", "key:Ctrl+End key:Shift+Up key:Shift+Left key:Space",
        {{5, hours(22, 23)}, {6, hours(22, 23)}});
    row("shift and the last cell", "key:Ctrl+End key:Left key:Up key:Ctrl+Shift+End key:Space",
        {{5, hours(22, 23)}, {6, hours(22, 23)}});
    row("shift and the first cell", "key:Right key:Ctrl+Shift+Home key:Space", {{0, "11"}});
    row("every kind by its key", "key:2 key:Space key:Right key:1 key:Space key:Right key:3 key:Space",
        {{0, "213"}}, 3);
    row("erasing a day and an hour",
        "press:-1,-1 release erase:-1,0 drag:-1,5 release erase:1,-1 drag:2,-1 release",
        {{0, ""}, {1, ""}, {2, ""}, {3, ""}, {4, ""}, {5, ""}, {6, "100" + QString(21, u'1')}}, 3);
    row("erasing the week", "press:2,3 release key:Ctrl+Shift+Del", {{3, "000"}}, 2);
    row("first and last cell", "key:Ctrl+End key:Space key:Ctrl+Home key:Space",
        {{0, "1"}, {6, hours(23, 23)}}, 2);
    row("select all", "key:Ctrl+A key:Space", days(0, 6, on));
    row("delete", "press:0,0 drag:2,0 release key:Del", {{0, "000"}}, 2);
    row("backspace", "press:0,0 release key:Backspace", {{0, "0"}}, 2);
    row("copy and paste",
        "press:2,0 drag:3,0 release key:Ctrl+C key:Ctrl+A key:Space key:Down key:Shift+Down key:Ctrl+V",
        {{0, on}, {1, hours(2, 3)}, {2, hours(2, 3)}, {3, on}, {4, on}, {5, on}, {6, on}}, 3);
    row("copy and paste of several days",
        "press:2,0 release press:3,1 release key:Shift+Up key:Ctrl+C key:Ctrl+End key:Up key:Ctrl+V",
        {{0, "001"}, {1, "0001"}, {5, "001"}, {6, "0001"}}, 3);
    row("copy and paste of the week",
        "press:2,0 release key:Ctrl+A key:Ctrl+C key:Ctrl+Z key:Ctrl+End key:Ctrl+V", {{0, "001"}}, 3);
    row("copy to the week", "press:1,5 release Copy:Wholeweek", days(0, 6, "01"), 2);
    row("copy to the working days", "press:1,5 release Copy:Workingdays",
        {{0, "01"}, {1, "01"}, {2, "01"}, {3, "01"}, {4, "01"}, {5, "01"}}, 2);
    row("copy to the weekend", "press:1,0 release Copy:Weekend", {{0, "01"}, {5, "01"}, {6, "01"}}, 2);
    row("copy to a day", "press:1,0 release Copy:Wed", {{0, "01"}, {2, "01"}}, 2);
    row("clear the day", "press:-1,-1 release press:0,4 release Clear:Fri",
        {{0, on}, {1, on}, {2, on}, {3, on}, {4, QString(24, u'0')}, {5, on}, {6, on}}, 2);
    row("clear the day by its key", "press:-1,-1 release press:0,4 release key:Ctrl+Del",
        {{0, on}, {1, on}, {2, on}, {3, on}, {4, ""}, {5, on}, {6, on}}, 2);
    row("clear the week", "press:1,0 release Clear:Wholeweek", {{0, "00"}}, 2);
    row("undo", "press:3,1 drag:5,2 release key:Ctrl+Home key:Space key:Ctrl+Z",
        {{1, "000111"}, {2, "000111"}}, 3);
    row("redo", "key:Space key:Ctrl+Z key:Ctrl+Shift+Z", {{0, "1"}}, 3);
    row("undo behind a menu", "press:1,5 release Copy:Wholeweek type:Ctrl+Z", {{5, "01"}}, 3);
    row("undo in the legend", "press:1,5 release type:Tab type:Ctrl+Z", {}, 2);
    row("kind by the keys of the legend", "type:Tab type:Right key:Space", {{0, "2"}});
}

void TestSchedule::paints()
{
    QFETCH(QString, steps);
    QFETCH(Week, changed);
    for (const char *attributes : {"", "textside='left'"}) {
        DescribedWindow window(describePage(cell(Key, attributes)), {{"plan", ""}});
        QSignalSpy edits(window.widget<WeekSchedule>(), &WeekSchedule::valueChanged);
        User(window).does(steps);
        QCOMPARE(daysOf(window), changed);
        QTEST(int(edits.size()), "strokes");
        QCOMPARE(window.messages.texts(), QStringList());
    }
}

/// Everything but the hours that were set stays as it was, to the byte.
void TestSchedule::keepsWhatItDoesNotKnow()
{
    const QByteArray other(20, '-');
    const QByteArray before = "; by hand\nDAY0 = '1'\nDAY1 = 'abcd" + other + "'\nDAY2 = '" +
                              QByteArray(24, '2') + " until 2030'\nDAY3 = '0я🎥🎥" + other +
                              "'\nDAY4 = 42\nDAY7 = 'x'\n"
                              "DAYLIGHT = 'yes'\nnonsense\n";
    DescribedWindow window(describePage(cell(Key)), {{"plan", before}});
    User(window).does("press:4,0 release press:1,1 release press:23,2 release press:2,3 release "
                      "erase:1,6 drag:2,6 release");
    window.fixture.store().flush();
    QByteArray expected = before;
    expected.replace("'1'", "1").replace("abc", "a1c").replace("я🎥", "я1").replace("\n", "\r\n");
    QCOMPARE(window.fixture.content("plan"), expected);
}

void TestSchedule::showsTheResolutionOfTheValues_data()
{
    const TestTable<QByteArray, Week, QString, Week> row("attributes", "stored", "steps", "changed");
    const QString steps = "press:3.5,0 release";
    const QString half = day("00000001", 48);
    const QString quarter = QString(14, u'0') + '1';
    row("half hours", {}, {{0, day("", 48)}}, steps, {{0, half}});
    row("quarters of hours", {}, {{0, day("", 96)}}, steps, {{0, day(quarter, 96)}});
    row("last slot", {}, {{6, day("", 96)}}, "key:Ctrl+End key:Space", {{6, day("", 95) + '1'}});
    row("nothing stored", "resolution='30'", {}, steps, {{0, half}});
    row("coarser values than described", "resolution='15'", {{0, day("2")}, {1, day("2")}}, steps,
        {{0, day("2222" + quarter.mid(4), 96)}, {1, day("2")}});
    row("finer values than described", "resolution='60'", {{0, day("", 48)}}, steps, {{0, half}});
    row("an unknown resolution", "resolution='20'", {}, steps, {{0, day("0001")}});
    row("days of several", {}, {{0, day("2")}, {1, day("", 48)}}, "press:3.5,1 release",
        {{0, day("2")}, {1, half}});
    row("coarser day of several", {}, {{0, day("2")}, {1, day("", 48)}}, steps,
        {{0, day("22000001", 48)}, {1, day("", 48)}});
    row("same again", {}, {{0, day("2")}, {1, day("", 48)}}, "key:2 key:Space key:Shift+Right key:Space",
        {{0, day("2")}, {1, day("", 48)}});
    row("hour", "resolution='30'", {},
        "press:1.5,-1 release key:Ctrl+Z press:1.5,-1 drag:2,-1 release key:Ctrl+Home "
        "key:Shift+Ctrl+End key:Ctrl+C key:Ctrl+Z key:Ctrl+End key:Ctrl+V",
        {{0, day("001111", 48)},
         {1, day("001111", 48)},
         {2, day("001111", 48)},
         {3, day("001111", 48)},
         {4, day("001111", 48)},
         {5, day("001111", 48)},
         {6, day("001111", 48)}});
    row("keys", "resolution='30'", {}, "key:Right key:Space key:Ctrl+Right key:Space",
        {{0, day("0101", 48)}});
    row("paste of hours into half hours", {}, {{0, day("2")}, {1, day("", 48)}},
        "key:Ctrl+C key:Down key:Ctrl+V", {{0, day("2")}, {1, day("22", 48)}});
}

void TestSchedule::showsTheResolutionOfTheValues()
{
    QFETCH(QByteArray, attributes);
    QFETCH(Week, stored);
    QFETCH(QString, steps);
    DescribedWindow window(describePage(cell(Key, attributes)), {{"plan", fileOf(stored)}});
    User(window).does(steps);
    QTEST(daysOf(window), "changed");
}

void TestSchedule::keepsItsPlaceInOtherSlots()
{
    DescribedWindow window(describePage(cell(Key)), {{"plan", fileOf({{0, day("", 96)}})}});
    const auto *grid = window.widget<ScheduleGrid>();
    User user(window);
    user.does("key:Ctrl+End key:Shift+Up");
    for (const int slots : {24, 48}) {
        window.window->setValue("plan/untitled/DAY0/" + day("", slots));
        QCOMPARE(grid->current(), PlanCell({5, slots - slots / 24}));
        QCOMPARE(grid->selection(), PlanRange({{5, slots - slots / 24}, {6, slots - slots / 24}}));
    }
    user.does("press:3,1");
    window.window->setValue("plan/untitled/DAY0/" + day("", 24));
    user.does("drag:4,1 release");
    QCOMPARE(daysOf(window), Week({{0, day("")}}));
}

void TestSchedule::leavesWhatItDoesNotUnderstand_data()
{
    const TestTable<QString, Week, bool> row("steps", "changed", "refused");
    const auto others = [](const QString &text) {
        Week days{{2, "0123"}};
        for (const int day : {0, 1, 3, 4, 5, 6})
            days[day] = text;
        return days;
    };
    const QString blank = QString(24, u'0');
    const QString on = QString::fromLatin1(Continuous);
    row("nothing", "", {{2, "0123"}}, false);
    row("press", "press:1,2 release", {{2, "0123"}}, true);
    row("drag over it", "press:0,1 drag:1,3 release", {{1, day("11")}, {2, "0123"}, {3, day("11")}}, true);
    row("space", "press:1,2 release key:Space", {{2, "0123"}}, true);
    row("week", "press:-1,-1 release", others(on), true);
    row("clear the week", "press:-1,-1 release Clear:Wholeweek", others(blank), true);
    row("copy to it", "press:0,0 release Copy:Wed", {{0, day("1")}, {2, "0123"}}, true);
    row("copy from it", "press:1,2 release Copy:Wholeweek", {{2, "0123"}}, true);
    row("copy it", "press:0,0 release key:Ctrl+C press:1,2 release key:Ctrl+C key:Down key:Ctrl+V",
        {{0, day("1")}, {2, "0123"}, {3, day("1")}}, false);
    row("paste into it", "press:0,0 release key:Ctrl+C press:1,2 release key:Ctrl+V",
        {{0, day("1")}, {2, "0123"}}, true);
    row("clear it by a key", "press:1,2 release key:Ctrl+Del", {{2, blank}}, false);
    row("clear it by the menu", "press:1,2 release Clear:ClearWedandwhatisnotunderstood press:3,2 release",
        {{2, day("0001")}}, false);
    row("undo of that", "press:1,2 release key:Ctrl+Del key:Ctrl+Z", {{2, "0123"}}, false);
}

void TestSchedule::leavesWhatItDoesNotUnderstand()
{
    QFETCH(QString, steps);
    QFETCH(bool, refused);
    DescribedWindow window(describePage(cell(Key)), {{"plan", fileOf({{2, "0123"}})}});
    User(window).does(steps);
    QTEST(daysOf(window), "changed");
    QCOMPARE(window.widget<ScheduleGrid>()->valueText().startsWith("Not changed"), refused);
}

/// Values that a program may have stored by mistake, or that mean something to a newer one.
void TestSchedule::understandsThreeLengths()
{
    for (const QString &text :
         {QString(1, u'1'), QString(23, u'1'), QString(25, u'1'), QString(72, u'1'), QString(192, u'1'),
          QString(100'000, u'1'), QString(23, u'1') + QChar(0xd83c)}) {
        DescribedWindow window(describePage(cell(Key)), {{"plan", {}}});
        window.window->setValue("plan/untitled/DAY3/" + text);
        const auto *grid = window.widget<ScheduleGrid>();
        QCOMPARE(grid->describe({3, 0}), QStringLiteral("Thu: not understood (length %1)").arg(text.size()));
        QCOMPARE(grid->plan().slotsPerDay(), 24);
        User(window).does("press:3,3 release");
        QCOMPARE(window.value("plan/untitled/DAY3"), text);
    }
}

void TestSchedule::refusesToPaste_data()
{
    const TestTable<QString, QString, QString> row("text", "steps", "refusal");
    row("nothing", "", "", "the clipboard holds no days of a schedule");
    row("other text", "on and off", "", "the clipboard holds no days of a schedule");
    row("eight days", QStringList(8, day("1")).join(u'\n'), "", "the clipboard holds no days of a schedule");
    row("finer days", day("1", 48), "", "the copied day has 48 entries and a day here 24");
    row("unknown entry", day("1x"), "", "the copied entry \"x\" does not exist here");
    row("too many days", QStringList(3, day("1")).join(u'\n'), "key:Ctrl+End ",
        "3 days do not fit from Sun on");
}

void TestSchedule::refusesToPaste()
{
    QFETCH(QString, text);
    QFETCH(QString, steps);
    QGuiApplication::clipboard()->setText(text);
    DescribedWindow window(describePage(cell(Key)), {{"plan", {}}});
    User(window).does(steps + "key:Ctrl+V");
    QCOMPARE(daysOf(window), Week());
    auto *grid = window.widget<ScheduleGrid>();
    QTEST(grid->valueText().section("; ", 0, 0).section("Not pasted: ", 1), "refusal");
    User(window).does("key:Right");
    QVERIFY(!grid->valueText().contains("pasted"));
}

void TestSchedule::copiesInWords()
{
    DescribedWindow window(describePage(cell(Key)),
                           {{"plan", fileOf({{1, day("001122", 48)}, {2, "23x" + QString(21, u'0')}})}});
    User(window).does("key:Shift+Down key:Shift+Down key:Ctrl+C");
    QCOMPARE(QGuiApplication::clipboard()->text(),
             "Mon: Off\nTue: 1:00 to 2:00 Continuous, 2:00 to 3:00 On motion\n"
             "Wed: 0:00 to 1:00 On motion, 1:00 to 2:00 On alarm, 2:00 to 3:00 unknown (x)");
}

void TestSchedule::hasAMenu()
{
    DescribedWindow window(describePage(cell(Key)), {{"plan", fileOf({{2, "0123"}})}});
    const auto entries = [] {
        QMap<QString, QAction *> entries;
        for (QAction *action : QApplication::activePopupWidget()->actions()) {
            if (!action->isSeparator())
                entries[action->text()] = action;
        }
        return entries;
    };
    User(window).does("erase:-1,3 release"); // at the name: the day
    QVERIFY(QApplication::activePopupWidget());
    QVERIFY(!entries()["Undo"]->isEnabled());
    QVERIFY(entries()["Continuous"]->isChecked() && !entries()["Off"]->isChecked());
    for (const QAction *action : entries())
        QVERIFY2(!action->shortcut().isEmpty(), qPrintable(action->text()));
    entries()["Paint the selection"]->trigger();
    QApplication::activePopupWidget()->close();
    QCOMPARE(daysOf(window), Week({{2, "0123"}, {3, Continuous}}));
    User(window).does("key:Up");
    test::openMenuByKey(*QApplication::focusWidget());
    QVERIFY(QApplication::activePopupWidget());
    QVERIFY(entries()["Undo"]->isEnabled());
    entries()["Clear Wed and what is not understood"]->trigger();
    QApplication::activePopupWidget()->close();
    QCOMPARE(daysOf(window), Week({{2, day("")}, {3, Continuous}}));
}

void TestSchedule::readsItsDescription()
{
    DescribedWindow window(
        describePage(
            "<item type='vornschedule'><column width='40'>Night</column><column>One</column>"
            "<text>Po</text><text>{plan/untitled/NAME}</text>"
            "<kind value='-'>Nothing</kind><kind value='a'>A &amp; B</kind><kind value='xy'>No</kind>"
            "<key>plan/a/X</key><key>plan/b/X</key><key>plan/c/X</key><key>plan/d/X</key>"
            "<key>plan/e/X</key><key>plan/f/X</key><key>plan/g/X</key></item>"
            "<item type='vornschedule' row='1'><key>plan/untitled/DAY/" +
            Continuous + "</key></item><item type='vornschedule' row='2'><key>plan/b</key></item>"),
        {{"plan",
          "NAME = Ut\n[ b ]\nX = '-a?" + QByteArray(21, '-') + "'\nDAY6 = '" + QByteArray(24, '3') + "'\n"}});
    const auto *grid = window.widget<ScheduleGrid>();
    QCOMPARE(grid->dayNames().mid(0, 3), QStringList({"Po", "Ut", "Wed"}));
    QCOMPARE(grid->kinds().size(), 2);
    QCOMPARE(grid->describe({1, 1}), "Ut, 1:00 to 2:00: A & B");
    QCOMPARE(grid->describe({1, 2}), "Ut, 2:00 to 3:00: unknown (?)");
    QCOMPARE(grid->describe({0, 23}), "Po, 23:00 to 24:00: Nothing");
    User(window).does("key:Down key:Space key:Right key:2 key:Delete");
    QCOMPARE(window.value("plan/b/X"), "a-?" + QString(21, u'-'));
    window.window->setValue("plan/untitled/NAME/Di");
    QCOMPARE(grid->dayNames().value(1), "Di");
    QCOMPARE(window.widget<WeekSchedule>(2)->days().last(),
             QString(24, u'3')); // the usual names in a section
    // A default of the address is shown; it is stored when the day is edited.
    QCOMPARE(window.widget<WeekSchedule>(1)->days(), QStringList(QString(Continuous)).fill(Continuous, 7));
    QCOMPARE(window.value("plan/untitled/DAY0"), "");
    QTest::keyClick(window.widget<ScheduleGrid>(1), Qt::Key_Delete);
    QCOMPARE(window.value("plan/untitled/DAY0"), '0' + QString(23, u'1'));
    QCOMPARE(window.value("plan/untitled/DAY1"), "");
}

void TestSchedule::followsTheStore()
{
    DescribedWindow window(describePage(cell(Key) + "<item type='vornschedule' row='2'><other/>"
                                                    "<key>plan/untitled/DAY</key></item>"
                                                    "<item type='vornschedule' row='3'/>"
                                                    "<item type='pushbutton' row='4'>"
                                                    "<action type='call' slot='clear'>other</action></item>"),
                           {{"plan", ""}});
    const auto *first = window.widget<WeekSchedule>(0);
    const auto *second = window.widget<WeekSchedule>(1);
    QSignalSpy edits(second, &WeekSchedule::valueChanged);
    const auto days = [](const QString &starts) {
        QStringList days = starts.split(u'/');
        for (QString &text : days)
            text = day(text);
        return days;
    };
    User user(window);
    user.does("press:0,0 drag:1,6 release");
    QCOMPARE(first->days(), QStringList(7, day("11")));
    QCOMPARE(second->days(), first->days());
    user.does("press:5,5"); // a value may arrive while the mouse is down
    window.window->setValue("plan/untitled/DAY3/" + day("3"));
    user.does("drag:6,5 release");
    QCOMPARE(first->days(), days("11/11/11/3/11/1100011/11"));
    user.does("press:5,6");
    window.window->setValue("plan/untitled/DAY5/" + day("11"));
    user.does("key:Esc release");
    QVERIFY(window.window->isVisible());
    QCOMPARE(first->days(), days("11/11/11/3/11/11/11"));
    QCOMPARE(second->days(), first->days());
    QCOMPARE(edits.size(), 0);
    user.does("press:0,3 release key:Ctrl+Z key:Ctrl+Z");
    QCOMPARE(first->days().value(3), day("3")); // what was painted before the value came stays
    window.button<QPushButton>("")->click();
    QCOMPARE(window.value("plan/untitled/DAY3"), day(""));
    QCOMPARE(first->days().value(0), day(""));
    // Without a key in the description loading keeps what the user has painted.
    QTest::keyClick(window.widget<ScheduleGrid>(2), Qt::Key_Space);
    window.window->onLoadDone();
    QCOMPARE(window.widget<WeekSchedule>(2)->days().value(0), day("1"));
}

void TestSchedule::ignoresInputWhileDisabled()
{
    DescribedWindow window(describePage(cell(Key, "enabled='no'")), {{"plan", fileOf({{0, day("11")}})}});
    auto *schedule = window.widget<WeekSchedule>();
    const QImage disabled = schedule->grab().toImage();
    User user(window);
    user.does("press:5,0 release key:Space");
    schedule->setEnabled(true);
    QVERIFY(schedule->grab().toImage() != disabled);
    user.does("press:5,0");
    schedule->setEnabled(false);
    schedule->setEnabled(true);
    user.does("drag:9,1 release");
    QCOMPARE(window.value("plan/untitled/DAY0"), day("11"));
}

/// Each kind has a background of its own and a readable mark, in light and dark palettes.
void TestSchedule::marksTheKinds()
{
    for (const QPalette &palette : {QPalette(Qt::white), QPalette(QColor(40, 40, 40))}) {
        QSet<QRgb> backgrounds;
        for (int number = UnknownKind; number < MaxScheduleKinds; ++number) {
            QImage image(40, 40, QImage::Format_RGB32);
            QPainter painter(&image);
            paintKind(painter, image.rect(), number, palette, QPalette::Active);
            const QColor background = kindColor(number, palette, QPalette::Active);
            QVERIFY(contrastRatio(readableTextOn(background), background) >= ReadableContrast);
            if (number != UnknownKind)
                backgrounds.insert(image.pixelColor(1, 1) == background ? background.rgb() : 0);
        }
        QCOMPARE(backgrounds.size(), MaxScheduleKinds);
    }
}

void TestSchedule::readsOutTheCurrentHour()
{
    DescribedWindow window(describePage(cell(Key)), {{"plan", fileOf({{1, day("02")}})}});
    auto *grid = window.widget<ScheduleGrid>();
    QAccessibleInterface *table = QAccessible::queryAccessibleInterface(grid);
    QCOMPARE(table->role(), QAccessible::Table);
    QCOMPARE(table->text(QAccessible::Name), "Recording");
    User(window).does("key:Down key:Right");
    QCOMPARE(table->text(QAccessible::Value), "Tue, 1:00 to 2:00: On motion");
    QHelpEvent help(QEvent::ToolTip, grid->rect().bottomRight(), QPoint());
    QVERIFY(QApplication::sendEvent(grid, &help));
    QVERIFY(QToolTip::text().contains("Sun, 23:00 to 24:00: Off"));
}

void TestSchedule::hasFewTabStops()
{
    const QByteArray kinds = "<kind value='0'>Off</kind><kind value='1'>Lit</kind><kind value='2'>Dim</kind>";
    DescribedWindow window(
        describePage("<item type='edit'/>" + cell(Key + kinds, "column='1'") + "<item type='edit' row='2'/>"),
        {{"plan", ""}});
    window.widget<QLineEdit>(0)->setFocus();
    QStringList stops;
    for (int stop = 0; stop < 5; ++stop) {
        QTest::keyClick(QApplication::focusWidget(), Qt::Key_Tab);
        const auto *button = qobject_cast<QAbstractButton *>(QApplication::focusWidget());
        stops << (button ? button->text() : QApplication::focusWidget()->metaObject()->className());
    }
    QCOMPARE(stops, QStringList({"paravue::ScheduleGrid", "Lit", "Copy Mon to", "Clear", "QLineEdit"}));
}

QTEST_MAIN(TestSchedule)
#include "tst_schedule.moc"
