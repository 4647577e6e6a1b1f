#include "DescribedControls.h"
#include "support/TestTable.h"

#include <QCheckBox>
#include <QComboBox>
#include <QDateTimeEdit>
#include <QFrame>
#include <QGridLayout>
#include <QHeaderView>
#include <QHelpEvent>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QScrollArea>
#include <QScrollBar>
#include <QToolTip>
#include <QTreeWidget>
#include <QWheelEvent>

using namespace paravue::test;

class TestControlLayout : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void appliesAttributes();
    void placesCells();
    void notesWhatIsWrong_data();
    void notesWhatIsWrong();
    void keepsNotesWithTheirField();
    void linesUpWithNotedFields();
    void keepsOneRhythm_data();
    void keepsOneRhythm();
    void makesRoomForTexts();
    void elidesLongLabels();
    void drawsLinesAcrossTheirGrid();
    void showsHeadings();
    void showsScrollBarsAsSliders();
    void leavesTheWheelToThePage();
};

void TestControlLayout::appliesAttributes()
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

void TestControlLayout::placesCells()
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

void TestControlLayout::notesWhatIsWrong_data()
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

void TestControlLayout::notesWhatIsWrong()
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

void TestControlLayout::keepsNotesWithTheirField()
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

void TestControlLayout::linesUpWithNotedFields()
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

void TestControlLayout::keepsOneRhythm_data()
{
    const TestTable<int> row("pixels");
    row("font of Windows", 11);
    row("middle", 13);
    row("large", 20);
}

void TestControlLayout::keepsOneRhythm()
{
    QFETCH(int, pixels);
    const QFont usual = QApplication::font();
    const auto restore = qScopeGuard([&] { QApplication::setFont(usual); });
    QFont font = usual;
    font.setPixelSize(pixels);
    QApplication::setFont(font);
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
void TestControlLayout::makesRoomForTexts()
{
    const QByteArray words = "Words that want more room than a window of this width has";
    DescribedWindow window(
        describePage("<item type='label' width='30'><text>" + words +
                         "</text></item>"
                         "<item type='dropdown' column='1' width='30'><text>@more</text></item>"
                         "<item type='checkbox' column='2' width='30'><text>" +
                         words +
                         "</text></item>"
                         "<item type='pushbutton' column='3' width='30'><text>" +
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
        QCOMPARE(control->minimumWidth(), 30);
    }
    const auto *choices = window.widget<QComboBox>();
    QVERIFY(choices->width() > choices->fontMetrics().horizontalAdvance(choices->currentText()));
    const QHeaderView *header = window.widget<QTreeWidget>()->header();
    QVERIFY(header->sectionSize(0) >= header->fontMetrics().horizontalAdvance("Not a short choice"));
}

void TestControlLayout::elidesLongLabels()
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

void TestControlLayout::drawsLinesAcrossTheirGrid()
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

void TestControlLayout::showsHeadings()
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

void TestControlLayout::showsScrollBarsAsSliders()
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

void TestControlLayout::leavesTheWheelToThePage()
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

QTEST_MAIN(TestControlLayout)
#include "tst_control_layout.moc"
