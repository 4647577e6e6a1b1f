#include "Gestures.h"
#include "controls/CellGridEditor.h"
#include "support/TestTable.h"
#include "ui/DescribedWindow.h"

#include <QAccessible>
#include <QAction>
#include <QApplication>
#include <QClipboard>
#include <QContextMenuEvent>
#include <QMenu>
#include <QMimeData>
#include <QPixmap>
#include <QRegularExpression>
#include <QSignalSpy>
#include <QToolTip>

#include <algorithm>

using namespace paravue;
using namespace paravue::test;

namespace
{

const QByteArray Grid = " ctrlColumns='4' ctrlRows='3'><key>motion/cam0/MASK</key>";
const QByteArray Mask = "type='maskctrl'" + Grid;
const QByteArray Zones = "type='PTZAlarm'" + Grid;

QByteArray page(const QByteArray &control)
{
    return describePage("<item type='label'><text>Yard</text></item><item row='1' " + control + "</item>");
}

/// A recorder's file with more entries than this program knows. Rows are joined by "/"; "-" is a row that is
/// not stored.
QByteArray storedRows(const QByteArray &rows)
{
    QByteArray file = "; set at the factory\r\n[ cam0 ]\r\nSENSITIVITY = 'a lot'\r\n";
    const QList<QByteArray> each = rows.split('/');
    for (qsizetype row = 0; row < each.size(); ++row) {
        if (each[row] != "-")
            file += "MASK" + QByteArray::number(row) + " = '" + each[row] + "'\r\n";
    }
    return file + "MASK3 = 'xyz'\r\n# MASK0\r\n";
}

QPoint centreOf(const CellGridEditor &editor, int column, int row)
{
    const QRectF picture = editor.pictureRect();
    return QPointF(picture.left() + (column + 0.5) * picture.width() / 4,
                   picture.top() + (row + 0.5) * picture.height() / 3)
        .toPoint();
}

void perform(CellGridEditor &editor, const QString &gestures)
{
    test::perform(editor, gestures,
                  [&](const QPointF &cell) { return centreOf(editor, int(cell.x()), int(cell.y())); });
}

} // namespace

class TestCellGrids : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void paints_data();
    void paints();
    void undoesItsOwnPaintingOnly();
    void leavesKeysToTheWindow();
    void pastesCopiedCells_data();
    void pastesCopiedCells();
    void copiesCells();
    void hasAMenu();
    void choosesZonesInTheStrip();
    void boundsItsSize();
    void showsPicturesUnderItsCells();
    void isReadOut();
};

void TestCellGrids::paints_data()
{
    QTest::addColumn<QByteArray>("control");
    QTest::addColumn<QByteArray>("rows");
    QTest::addColumn<QString>("gestures");
    QTest::addColumn<QByteArray>("painted");

    const auto row = [](const char *name, const QByteArray &control, const QByteArray &rows,
                        const QString &gestures, const QByteArray &painted) {
        QTest::newRow(name) << control << rows << gestures << painted;
    };
    const QByteArray none = "0000/0000/0000";
    row("nothing", Mask, "0110/?/", "", "0110/?/");
    row("press", Mask, none, "L1,1 U", "0000/0100/0000");
    row("drag", Mask, none, "L0,1 M1,1 M1,2 U M3,2", "0000/1100/1100");
    row("drag there and back", Mask, "0000/0000/0010", "L1,1 M3,2 M0,0 M0,1 U", "0000/1100/0010");
    row("drag over the edge", Mask, none, "L1,1 M9,1 M9,9 U", "0000/0111/0111");
    row("drag with Shift", Mask, "0110/0000/0000", "SL1,0 M0,1 U", "1110/1100/0000");
    row("drag with Alt", Mask, "0011/0111/0000", "AL0,0 M2,1 U", "0001/0001/0000");
    row("stroke", Mask, none, "Ctrl+B L0,1 M1,1 M1,2 U M3,2", "0000/1100/0100");
    row("quick stroke", Mask, none, "Ctrl+B L0,0 M3,0 U", "1111/0000/0000");
    row("stroke there and back", Mask, none, "Ctrl+B L0,0 M2,0 M0,0 U", "1110/0000/0000");
    row("stroke over the edge", Mask, none, "Ctrl+B L1,1 M9,1 M9,9 U", "0000/0111/0000");
    row("stroke with Shift", Mask, "0110/0000/0000", "Ctrl+B SL1,0 M0,0 U", "1110/0000/0000");
    row("stroke with Alt", Mask, "0110/0000/0000", "Ctrl+B AL0,0 M1,0 U", "0010/0000/0000");
    row("stroke with the right button", Mask, "1110/1010/0000", "Ctrl+B R0,0 M1,0 M1,1 U", "0010/1010/0000");
    row("rectangle again", Mask, none, "Ctrl+B Ctrl+E L0,0 M1,1 U", "1100/1100/0000");
    row("drag that begins outside", Mask, none, "L-1,1 M2,1 U", none);
    row("drag from a masked cell", Mask, "0110/0000/0000", "L1,0 M3,0 M3,1 U", none);
    row("right button", Mask, "1111/0100/0000", "R3,0 M1,1 U", "1000/0000/0000");
    row("right button that comes back", Mask, "1111/0000/0000", "R3,0 M2,0 M3,0 U", "1110/0000/0000");
    row("click with the right button", Mask, "1111/0000/0000", "R3,0 U", "1111/0000/0000");
    row("right button while the left is held", Mask, none, "L0,0 R1,0 M2,0 U F", "1110/0000/0000");
    row("escape in a drag", Mask, "0010/0000/0000", "L0,0 M3,0 Esc M3,2 U", "0010/0000/0000");
    row("drag that loses the focus", Mask, none, "L0,0 M1,0 F M3,0 U", "1100/0000/0000");
    row("space", Mask, none, "Right Down Space Down Space Up Space", "0000/0000/0100");
    row("clear a cell", Mask, "0110/0000/0000", "Right Del Right Backspace", none);
    row("to the edges", Mask, none, "Left Up Space End Space PgDown Space Home Space PgUp", "1001/0000/1001");
    row("to the corners", Mask, none, "Ctrl+End Right Down Space Ctrl+Home Space", "1000/0000/0001");
    row("rectangle", Mask, none, "Right Shift+Right Shift+Down Space", "0110/0110/0000");
    row("rectangle backwards", Mask, none, "Ctrl+End Shift+Left Shift+Up Space", "0000/0011/0011");
    row("rectangle to an edge", Mask, none, "Down Shift+End Shift+PgUp Space", "1111/1111/0000");
    row("rectangle that begins on a masked cell", Mask, "1010/0110/0000", "Shift+Right Shift+Down Space",
        "0010/0010/0000");
    row("rectangle to the other edges", Mask, none, "Ctrl+End Up Shift+Home Shift+PgDown Space",
        "0000/1111/1111");
    row("rectangle to a corner", Mask, none, "Right Down Shift+Ctrl+End Space", "0000/0111/0111");
    row("rectangle to the first corner", Mask, none, "Right Down Shift+Ctrl+Home Space", "1100/1100/0000");
    row("all", Mask, none, "Ctrl+A Space", "1111/1111/1111");
    row("clear all", Mask, "0110/1111/0001", "Ctrl+A Del", none);

    row("insert", Mask, "1000/0100/0000", "Shift+Right Shift+Down Insert", "1100/1100/0000");
    row("invert", Mask, "0210/x000/0000", "Ctrl+I", "1001/1111/1111");
    row("clear", Mask, "0210/x000/0001", "Ctrl+Del", "0000/x000/0000");
    row("undo", Mask, none, "L0,0 M2,0 U Down Space Ctrl+Z", "1110/0000/0000");
    row("undo of a drag", Mask, "0001/0x00/0000", "L0,0 M2,0 M2,1 U Ctrl+Z", "0001/0x00/0000");
    row("held keys", Mask, none, "Space ~Space Right Space Ctrl+I ~Ctrl+I Ctrl+Z ~Ctrl+Z", "1000/0000/0000");
    row("redo", Mask, none, "Space Right Space Ctrl+Z Ctrl+Z Ctrl+Shift+Z", "1000/0000/0000");
    row("undo of what a short row has grown by", Mask, "1//0000", "L2,0 U L2,1 U Ctrl+Z Ctrl+Z", "1//0000");

    row("zone", Zones, none, "2 L0,0 M1,0 U 3 Down Space", "2200/0300/0000");
    row("zone that does not exist", Zones, none, "5 Space", "1000/0000/0000");
    row("take a zone away", Zones, "1221/0000/0000", "L0,0 M3,0 U", "0220/0000/0000");
    row("space takes one zone away", Zones, "1221/0000/0000", "Shift+End Space", "0220/0000/0000");
    row("delete takes any zone away", Zones, "1221/0000/0000", "Shift+Right Del Shift+Right Backspace",
        "0001/0000/0000");
    row("every zone by its key", "type='PTZAlarm'" + Grid + QByteArray("<text>z</text>").repeated(9), none,
        "Space 2 Right Space 3 Right Space 4 Right Space Down 5 Space 6 Left Space 7 Left Space 8 Left Space "
        "Down 9 Space",
        "1234/8765/9000");
    row("escape in a drag over zones", Zones, "1221/0000/0000", "R0,0 M3,0 Esc U", "1221/0000/0000");
    row("add to a zone", Zones, "1221/0000/0000", "SL0,0 M2,0 U", "1111/0000/0000");
    row("take any zone away with Alt", Zones, "1221/0000/0000", "AL0,0 M2,0 U", "0001/0000/0000");
    row("invert a zone", Zones, "0210/3000/0000", "Ctrl+I", "1201/3111/1111");
    row("take any zone away", Zones, "1221/0000/0000", "R0,0 M2,0 U", "0001/0000/0000");
    row("paint over another zone", Zones, "0220/0000/0000", "L0,0 M3,0 U", "1111/0000/0000");
    row("zones of their own", "type='PTZAlarm'" + Grid + "<text>Gate</text><text>Wall</text>", none,
        "2 Space 3 Right Space", "2200/0000/0000");

    row("long row", Mask, "0000zz/0000/0000", "L3,0 U", "0001zz/0000/0000");
    row("short rows", Mask, "1//00", "L2,0 M2,2 U", "101/001/001");
    row("missing rows", Mask, "0000/-/-", "L0,0 U", "1000/-/-");
    row("unknown marks", Mask, "x0y2/0000/0000", "L1,0 M3,0 U", "x112/0000/0000");
    row("cleared unknown marks", Mask, "x0y2/0000/0000", "Ctrl+A Del", "x0y0/0000/0000");
    row("zone of a newer recorder", Zones, "9000/0000/0000", "L1,0 U", "9100/0000/0000");
}

void TestCellGrids::paints()
{
    QFETCH(QByteArray, control);
    QFETCH(QByteArray, rows);
    QFETCH(QString, gestures);
    QFETCH(QByteArray, painted);
    // Quotes are left out for empty texts and whole numbers when a value is written.
    const auto normal = [](QByteArray file) {
        return QString(file).replace(QRegularExpression("'([1-9]\\d{0,9}|0|)'"), "\\1").toUtf8();
    };
    DescribedWindow window(page(control), {{"motion", storedRows(rows)}});
    auto *editor = window.widget<CellGridEditor>();
    editor->setFocus();
    perform(*editor, gestures);
    window.fixture.store().flush();
    QCOMPARE(window.fixture.content("motion"), normal(storedRows(painted)));
    QCOMPARE(editor->rows().join(u'/'), QString(painted).remove(u'-'));
    QCOMPARE(window.messages.texts(), QStringList());
    QVERIFY(window.window->isVisible()); // during a drag Escape does not close the window
}

void TestCellGrids::undoesItsOwnPaintingOnly()
{
    DescribedWindow window(page(Mask), {{"motion", storedRows("0000/0000/0000")}});
    auto *editor = window.widget<CellGridEditor>();
    editor->setFocus();
    perform(*editor, "L0,0");
    window.window->setValue("motion/cam0/MASK2/1111");
    perform(*editor, "M1,0 Esc U");
    QCOMPARE(editor->rows(), QStringList({"0000", "0000", "1111"}));
    QCOMPARE(window.value("motion/cam0/MASK2"), "1111");
    QVERIFY(window.window->isVisible());
    // What is held is painted over a row that has come meanwhile.
    for (const char *tool : {"Ctrl+E", "Ctrl+B"}) {
        perform(*editor, tool + QStringLiteral(" L0,1 M1,1"));
        window.window->setValue("motion/cam0/MASK1/00x0");
        QCOMPARE(editor->rows(), QStringList({"0000", "11x0", "1111"}));
        perform(*editor, "F");
        editor->setFocus();
        QCOMPARE(window.value("motion/cam0/MASK1"), "11x0");
        window.window->onLoadDone(); // the same values
        perform(*editor, "Ctrl+Z");
        QCOMPARE(editor->rows(), QStringList({"0000", "00x0", "1111"}));
    }
    window.window->setValue("motion/cam0/MASK0/0001");
    perform(*editor, "Ctrl+Shift+Z");
    QCOMPARE(editor->rows(), QStringList({"0001", "00x0", "1111"}));
}

/// A window may have an undo of its own; the control that has the focus comes first while it has something
/// to undo.
void TestCellGrids::leavesKeysToTheWindow()
{
    DescribedWindow window(page(Mask), {{"motion", storedRows("0000/0000/0000")}});
    auto *editor = window.widget<CellGridEditor>();
    editor->setFocus();
    QAction undo;
    undo.setShortcut(Qt::CTRL | Qt::Key_Z);
    window.window->addAction(&undo);
    QSignalSpy undone(&undo, &QAction::triggered);
    perform(*editor, "Space Ctrl+Z");
    QCOMPARE(undone.size(), 0);
    perform(*editor, "Ctrl+Z");
    QCOMPARE(undone.size(), 1);
}

void TestCellGrids::pastesCopiedCells_data()
{
    const TestTable<QByteArray, QString, QString, QString> row("control", "text", "pasted", "refusal");
    const QString before = "0100/x009/0000";
    row("cells", Zones, "1.2./..../3333", "1020/x000/3333", "");
    row("zeros, blanks and line ends", Zones, "1020\r\n 0000 \n3333\n\n", "1020/x000/3333", "");
    row("mark of a newer recorder in its place", Zones, "..../...9/....", "0000/x009/0000", "");
    row("zone that does not exist", Zones, "...9/..../....", before, "there is no zone 9 here");
    row("zones in a mask", Mask, ".3../...7/8...", "0100/x009/1000", "");
    row("other size", Mask, "111/111/111/111", before,
        "the copied grid has 3 columns and 4 rows, this one has 4 and 3");
    row("uneven rows", Mask, "1111/111/1111", before, "the clipboard holds no cells");
    row("other text", Mask, "four/rows/here", before, "the clipboard holds no cells");
    row("nothing", Mask, "", before, "the clipboard holds no cells");
    row("too much", Mask, QString(100'000, u'1'), before, "the clipboard holds no cells");
}

void TestCellGrids::pastesCopiedCells()
{
    QFETCH(QByteArray, control);
    QFETCH(QString, text);
    DescribedWindow window(page(control), {{"motion", storedRows("0100/x009/0000")}});
    auto *editor = window.widget<CellGridEditor>();
    editor->setFocus();
    QGuiApplication::clipboard()->setText(text.replace(u'/', u'\n'));
    perform(*editor, "Ctrl+V");
    QTEST(editor->rows().join(u'/'), "pasted");
    QTEST(editor->valueText().section("; column", 0, -2).section("Not pasted: ", 1), "refusal");
    QCOMPARE(QToolTip::text().isEmpty(), !editor->valueText().startsWith("Not pasted"));
    perform(*editor, "Right");
    QVERIFY(!editor->valueText().contains("pasted"));
}

void TestCellGrids::copiesCells()
{
    DescribedWindow window(page(Mask), {{"motion", storedRows("0100/x009/0000")}});
    DescribedWindow other(page(Zones), {{"motion", storedRows("0200/0000/3000")}});
    auto *source = window.widget<CellGridEditor>();
    auto *target = other.widget<CellGridEditor>();
    perform(*source, "Right Down Space Ctrl+C");
    const QMimeData *copy = QGuiApplication::clipboard()->mimeData();
    QCOMPARE(copy->text(), ".1..\n.1.9\n....");
    QCOMPARE(copy->data("application/x-paravue-cells"), "0100\n0109\n0000");
    perform(*source, "Down Right Space Right Space");
    perform(*source, "Up Del Ctrl+C");
    perform(*target, "Ctrl+V");
    QCOMPARE(target->rows(), QStringList({"0100", "0100", "0011"}));
    perform(*target, "Ctrl+Z");
    QCOMPARE(target->rows(), QStringList({"0200", "0000", "3000"}));
}

void TestCellGrids::hasAMenu()
{
    DescribedWindow window(page(Zones + "<text>Gate</text><text>R&amp;D</text>"),
                           {{"motion", storedRows("0000/0000/0000")}});
    auto *editor = window.widget<CellGridEditor>();
    editor->setFocus();
    const auto menu = [] { return qobject_cast<QMenu *>(QApplication::activePopupWidget()); };
    const auto entry = [&](const QString &text) {
        for (QAction *action : menu()->actions()) {
            if (action->text() == text)
                return action;
        }
        return static_cast<QAction *>(nullptr);
    };
    perform(*editor, "R2,1 U");
    QVERIFY(menu());
    QVERIFY(!entry("Undo")->isEnabled());
    QVERIFY(entry("Rectangle")->isChecked() && !entry("Brush")->isChecked());
    QStringList keys;
    for (const QAction *action : menu()->actions()) {
        if (!action->isSeparator())
            keys << action->shortcut().toString(QKeySequence::PortableText);
    }
    QVERIFY(!keys.contains(QString()));
    keys.removeDuplicates();
    QVERIFY(keys.size() >= 11);
    entry("Mark selected cells")->trigger();
    menu()->close();
    QCOMPARE(editor->rows(), QStringList({"0000", "0010", "0000"}));

    QContextMenuEvent key(QContextMenuEvent::Keyboard, {}, {});
    QVERIFY(QApplication::sendEvent(editor, &key));
    entry("R&&D")->trigger();
    entry("Undo")->trigger();
    menu()->close();
    QCOMPARE(editor->rows(), QStringList({"0000", "0000", "0000"}));
    QCOMPARE(editor->chosenKind(), 2);
    QVERIFY(!menu());
    test::openMenuByKey(*editor);
    QVERIFY(menu());
    menu()->close();
}

void TestCellGrids::choosesZonesInTheStrip()
{
    DescribedWindow window(page(Zones), {{"motion", storedRows("//")}});
    auto *editor = window.widget<CellGridEditor>();
    QList<int> chosen;
    QList<CellGridEditor::Tool> tools;
    for (int x = 0; x < editor->width(); x += 8) {
        QTest::mouseClick(editor, Qt::LeftButton, {}, {x, editor->pictureRect().bottom() + 20});
        if (chosen.value(chosen.size() - 1) != editor->chosenKind())
            chosen.append(editor->chosenKind());
        if (tools.isEmpty() || tools.constLast() != editor->tool())
            tools.append(editor->tool());
    }
    QCOMPARE(chosen, QList<int>({1, 2, 3, 4}));
    QVERIFY(tools.contains(CellGridEditor::Tool::Brush));

    // The buttons of a description call these slots.
    QVERIFY(QMetaObject::invokeMethod(editor, "slot_Choose_kind", Q_ARG(QString, "2")));
    QVERIFY(QMetaObject::invokeMethod(editor, "slot_Set_all"));
    QCOMPARE(window.value("motion/cam0/MASK2"), "2222");
    QVERIFY(QMetaObject::invokeMethod(editor, "slot_Clear_all"));
    QCOMPARE(window.value("motion/cam0/MASK2"), "0000");
    QVERIFY(QMetaObject::invokeMethod(editor, "slot_Undo"));
    QCOMPARE(window.value("motion/cam0/MASK2"), "2222");
    QVERIFY(QMetaObject::invokeMethod(editor, "slot_Redo"));
    QVERIFY(QMetaObject::invokeMethod(editor, "slot_Invert"));
    QCOMPARE(window.value("motion/cam0/MASK2"), "2222");
}

void TestCellGrids::boundsItsSize()
{
    DescribedWindow window(
        describePage(
            "<item type='maskctrl' ctrlColumns='2000000000' ctrlRows='-5'/>"
            "<item row='1' type='PTZAlarm' ctrlColumns='0x7' ctrlRows='99999999999'/>"
            "<item row='2' type='maskctrl' ctrlColumns='1' ctrlRows='1'><key>motion/cam0</key></item>"),
        {{"motion", "[ cam0 ]\r\nROW0 = 1\r\n"}});
    window.widget<CellGridEditor>()->setKinds({QString(500'000, u'x')});
    window.widget<CellGridEditor>()->slot_Set_all();
    QVERIFY(window.widget<CellGridEditor>()->valueText().size() < 1000);
    window.widget<CellGridEditor>()->slot_Clear_all();
    const int rows[] = {12, 12, 1};
    const int columns[] = {128, 16, 1};
    for (int i = 0; i < 3; ++i) {
        auto *editor = window.widget<CellGridEditor>(i);
        editor->slot_Set_all();
        QCOMPARE(editor->rows(), QStringList(rows[i], QString(columns[i], u'1')));
    }
}

void TestCellGrids::showsPicturesUnderItsCells()
{
    const QByteArray covering = "type='maskctrl' mask='privacy'" + Grid;
    for (const QByteArray &control : {Mask, covering, Zones}) {
        for (const QColor &shade : {QColor(Qt::white), QColor(Qt::black), QColor(Qt::gray)}) {
            DescribedWindow window(page(control), {{"motion", storedRows("1000//")}});
            auto *editor = window.widget<CellGridEditor>();
            QPixmap picture(400, 300);
            picture.fill(shade);
            QVERIFY(QMetaObject::invokeMethod(editor, "setPixmap", Q_ARG(QPixmap, picture)));
            const QImage seen = editor->grab().toImage().convertToFormat(QImage::Format_Grayscale8);
            const auto shades = [&](int column, int row) {
                QList<int> found;
                QRect cell(0, 0, 41, 41);
                cell.moveCenter(centreOf(*editor, column, row));
                for (int x = cell.left(); x <= cell.right(); ++x)
                    found.append(seen.pixelColor(x, cell.center().y()).red());
                const auto [low, high] = std::minmax_element(found.cbegin(), found.cend());
                return QPair<int, int>(*low, *high);
            };
            // Even without colours a marked cell has a pattern and an unmarked one shows the picture.
            QCOMPARE(shades(1, 1).first, shade.red());
            QCOMPARE(shades(1, 1).second, shade.red());
            QVERIFY(shades(0, 0).second - shades(0, 0).first > 60);
        }
    }
}

void TestCellGrids::isReadOut()
{
    DescribedWindow window(page(Zones + "<text>Gate {motion/cam0/SENSITIVITY}</text><text>Wall</text>"),
                           {{"motion", storedRows("1300//")}});
    auto *editor = window.widget<CellGridEditor>();
    QAccessibleInterface *heard = QAccessible::queryAccessibleInterface(editor);
    QCOMPARE(heard->role(), QAccessible::Graphic);
    QCOMPARE(heard->text(QAccessible::Name), "Yard");
    const QPair<QString, QString> steps[] = {
        {"", "column 1, row 1: Gate a lot; painting with Gate a lot"},
        {"Right 2", "column 2, row 1: Zone 3; painting with Wall"},
        {"Shift+Down", "columns 2 to 2, rows 1 to 2: not marked; painting with Wall"},
        {"Ctrl+B", "columns 2 to 2, rows 1 to 2: not marked; painting with Wall; brush"}};
    for (const auto &[gestures, value] : steps) {
        perform(*editor, gestures);
        QCOMPARE(heard->text(QAccessible::Value), value);
    }
    window.window->setValue("motion/cam0/SENSITIVITY/closed");
    QVERIFY(!heard->text(QAccessible::Value).contains("a lot"));
}

QTEST_MAIN(TestCellGrids)
#include "tst_cell_grids.moc"
