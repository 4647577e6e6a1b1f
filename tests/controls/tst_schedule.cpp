#include "controls/ReadableColors.h"
#include "controls/ScheduleGrid.h"
#include "controls/WeekSchedule.h"
#include "ui/DescribedWindow.h"

#include <QAbstractButton>
#include <QAccessible>
#include <QApplication>
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

constexpr int ColumnWidth = 25;

QByteArray cell(const QByteArray &content, const QByteArray &attributes = {})
{
    return "<item type='label'><text>Recording</text></item><item type='vornschedule' row='1' " + attributes +
           '>' + QByteArray("<column width='25'/>").repeated(24) + content + "</item>";
}

const QByteArray Key = "<key>plan/untitled/DAY</key>";
const QByteArray Continuous = QByteArray(24, '1');

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

    /// "hour,day", counted from 0; -1 is the caption.
    QPoint place(const QString &object) const
    {
        const int hour = object.section(u',', 0, 0).toInt();
        const int day = object.section(u',', 1).toInt();
        const int rowHeight = m_grid->fontMetrics().height() + 8;
        const int fromTheEnd = hour < 0 ? 24 * ColumnWidth + 10 : (24 - hour) * ColumnWidth - 10;
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

} // namespace

class TestSchedule : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void paints_data();
    void paints();
    void keepsWhatItDoesNotKnow();
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

    const auto row = [](const char *name, const QString &steps, const Week &changed, int strokes = 1) {
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
    row("nothing to erase", "erase:3,3 release", {}, 0);
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
    row("erasing a day and an hour", "press:-1,-1 release erase:-1,0 drag:-1,5 release erase:1,-1 release",
        {{0, QString(24, u'0')},
         {1, QString(24, u'0')},
         {2, QString(24, u'0')},
         {3, QString(24, u'0')},
         {4, QString(24, u'0')},
         {5, QString(24, u'0')},
         {6, "10" + QString(22, u'1')}},
        3);
    row("erasing the week", "press:2,3 release erase:-1,-1 release", {{3, "000"}}, 2);
    row("first and last cell", "key:Ctrl+End key:Space key:Ctrl+Home key:Space",
        {{0, "1"}, {6, hours(23, 23)}}, 2);
    row("select all", "key:Ctrl+A key:Space", days(0, 6, on));
    row("delete", "press:0,0 drag:2,0 release key:Del", {{0, "000"}}, 2);
    row("backspace", "press:0,0 release key:Backspace", {{0, "0"}}, 2);
    row("paste without a copy", "key:Ctrl+V", {}, 0);
    row("copy and paste",
        "press:2,0 drag:3,0 release key:Ctrl+C key:Ctrl+A key:Space key:Down key:Shift+Down key:Ctrl+V",
        {{0, on}, {1, hours(2, 3)}, {2, hours(2, 3)}, {3, on}, {4, on}, {5, on}, {6, on}}, 3);
    row("copy to the week", "press:1,5 release Copy:Wholeweek", days(0, 6, "01"), 2);
    row("copy to the working days", "press:1,5 release Copy:Workingdays",
        {{0, "01"}, {1, "01"}, {2, "01"}, {3, "01"}, {4, "01"}, {5, "01"}}, 2);
    row("copy to the weekend", "press:1,0 release Copy:Weekend", {{0, "01"}, {5, "01"}, {6, "01"}}, 2);
    row("copy to a day", "press:1,0 release Copy:Wed", {{0, "01"}, {2, "01"}}, 2);
    row("clear the day", "press:-1,-1 release press:0,4 release Clear:Fri",
        {{0, on}, {1, on}, {2, on}, {3, on}, {4, QString(24, u'0')}, {5, on}, {6, on}}, 2);
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
        Week now;
        for (int day = 0; day < 7; ++day) {
            if (const QString text = window.value(QStringLiteral("plan/untitled/DAY%1").arg(day));
                !text.isEmpty())
                now[day] = text;
        }
        QCOMPARE(now, changed);
        QTEST(int(edits.size()), "strokes");
        QCOMPARE(window.messages.texts(), QStringList());
    }
}

/// Everything but the hours that were set stays as it was, to the byte.
void TestSchedule::keepsWhatItDoesNotKnow()
{
    const QByteArray before = "; by hand\nDAY0 = '1'\nDAY1 = 'abc'\nDAY2 = '" + QByteArray(24, '2') +
                              " until 2030'\nDAY3 = '0я🎥🎥1'\nDAY4 = 42\nDAY7 = 'x'\n"
                              "DAYLIGHT = 'yes'\nnonsense\n";
    DescribedWindow window(describePage(cell(Key)), {{"plan", before}});
    User(window).does(
        "press:4,0 release press:1,1 release press:23,2 release press:2,3 release erase:1,6 release");
    window.fixture.store().flush();
    QByteArray expected = before;
    expected.replace("DAY0 = '1'", "DAY0 = 10001").replace("abc", "a1c");
    expected.replace("2 until", "1 until").replace("я🎥", "я1");
    expected.replace("\n", "\r\n");
    QCOMPARE(window.fixture.content("plan"), expected);
}

void TestSchedule::readsItsDescription()
{
    DescribedWindow window(
        describePage(
            "<item type='vornschedule'><column width='40'>Night</column><column>One</column>"
            "<text>Po</text><text>{plan/untitled/NAME}</text>"
            "<kind value='-'>Nothing</kind><kind value='a'>A &amp; B</kind><kind value='xy'>No</kind>"
            "<key>plan/a/X</key><key>plan/b/X</key><key>plan/c/X</key><key>plan/d/X</key>"
            "<key>plan/e/X</key><key>plan/f/X/aa</key><key>plan/g/X</key></item>"
            "<item type='vornschedule' row='1'><key>plan/untitled/DAY/" +
            Continuous + "</key></item><item type='vornschedule' row='2'><key>plan/b</key></item>"),
        {{"plan", "NAME = Ut\n[ b ]\nX = '-a?'\nDAY6 = '3'\n"}});
    const auto *grid = window.widget<ScheduleGrid>();
    QCOMPARE(grid->dayNames().mid(0, 3), QStringList({"Po", "Ut", "Wed"}));
    QCOMPARE(grid->kinds().size(), 2);
    QCOMPARE(grid->describe({1, 1}), "Ut, 1:00 to 2:00: A & B");
    QCOMPARE(grid->describe({1, 2}), "Ut, 2:00 to 3:00: unknown (?)");
    QCOMPARE(grid->describe({0, 23}), "Po, 23:00 to 24:00: Nothing");
    User(window).does("key:Down key:Space key:Right key:2 key:Delete");
    QCOMPARE(window.value("plan/b/X"), "a-?");
    window.window->setValue("plan/untitled/NAME/Di");
    QCOMPARE(grid->dayNames().value(1), "Di");
    QCOMPARE(window.widget<WeekSchedule>(2)->days().last(), "3"); // the usual names in a section
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
    User user(window);
    user.does("press:0,0 drag:1,6 release");
    QCOMPARE(first->days(), QStringList(7, "11"));
    QCOMPARE(second->days(), first->days());
    user.does("press:5,5"); // a value may arrive while the mouse is down
    window.window->setValue("plan/untitled/DAY3/3");
    user.does("drag:6,5 release");
    QCOMPARE(first->days(), QStringList({"11", "11", "11", "3", "11", "1100011", "11"}));
    user.does("press:5,6");
    window.window->setValue("plan/untitled/DAY5/11");
    user.does("key:Esc release");
    QVERIFY(window.window->isVisible());
    QCOMPARE(first->days(), QStringList({"11", "11", "11", "3", "11", "11", "11"}));
    QCOMPARE(second->days(), first->days());
    QCOMPARE(edits.size(), 0);
    user.does("press:0,3 release key:Ctrl+Z key:Ctrl+Z");
    QCOMPARE(first->days().value(3), "3"); // what was painted before the value came stays
    window.button<QPushButton>("")->click();
    QCOMPARE(window.value("plan/untitled/DAY3"), "0");
    QCOMPARE(first->days().value(0), "00");
    // Without a key in the description loading keeps what the user has painted.
    QTest::keyClick(window.widget<ScheduleGrid>(2), Qt::Key_Space);
    window.window->onLoadDone();
    QCOMPARE(window.widget<WeekSchedule>(2)->days().value(0), "1");
}

void TestSchedule::ignoresInputWhileDisabled()
{
    DescribedWindow window(describePage(cell(Key, "enabled='no'")), {{"plan", "DAY0 = '11'\n"}});
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
    QCOMPARE(window.value("plan/untitled/DAY0"), "11");
}

/// Each kind has a background of its own and a readable mark, in light and dark palettes.
void TestSchedule::marksTheKinds()
{
    for (const QPalette &palette : {QPalette(Qt::white), QPalette(QColor(40, 40, 40))}) {
        QSet<QRgb> backgrounds;
        for (int number = UnknownKind; number < MaxScheduleKinds; ++number) {
            QImage image(40, 40, QImage::Format_RGB32);
            QPainter painter(&image);
            const QColor mark = paintKind(painter, image.rect(), number, palette, QPalette::Active);
            QVERIFY(contrastRatio(mark, image.pixelColor(1, 1)) >= ReadableContrast);
            if (number != UnknownKind)
                backgrounds.insert(image.pixel(1, 1));
        }
        QCOMPARE(backgrounds.size(), MaxScheduleKinds);
    }
}

void TestSchedule::readsOutTheCurrentHour()
{
    DescribedWindow window(describePage(cell(Key)), {{"plan", "DAY1 = '02'\n"}});
    auto *grid = window.widget<ScheduleGrid>();
    QAccessibleInterface *table = QAccessible::queryAccessibleInterface(grid);
    QCOMPARE(table->role(), QAccessible::Table);
    QCOMPARE(table->text(QAccessible::Name), "Recording");
    User(window).does("key:Down key:Right");
    QCOMPARE(table->text(QAccessible::Value), "Tue, 1:00 to 2:00: On motion");
    QHelpEvent help(QEvent::ToolTip, grid->rect().bottomRight(), QPoint());
    QVERIFY(QApplication::sendEvent(grid, &help));
    QCOMPARE(QToolTip::text(), "Sun, 23:00 to 24:00: Off");
}

void TestSchedule::hasFewTabStops()
{
    DescribedWindow window(
        describePage("<item type='edit'/>" + cell(Key, "column='1'") + "<item type='edit' row='2'/>"),
        {{"plan", ""}});
    window.widget<QLineEdit>(0)->setFocus();
    QStringList stops;
    for (int stop = 0; stop < 5; ++stop) {
        QTest::keyClick(QApplication::focusWidget(), Qt::Key_Tab);
        const auto *button = qobject_cast<QAbstractButton *>(QApplication::focusWidget());
        stops << (button ? button->text() : QApplication::focusWidget()->metaObject()->className());
    }
    QCOMPARE(stops,
             QStringList({"paravue::ScheduleGrid", "Continuous", "Copy Mon to", "Clear", "QLineEdit"}));
}

QTEST_MAIN(TestSchedule)
#include "tst_schedule.moc"
