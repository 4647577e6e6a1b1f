#include "DescribedWindow.h"
#include "support/Waiting.h"

#include <QAccessible>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QRegularExpression>
#include <QSignalSpy>

using namespace paravue::test;

namespace
{

const QByteArray Net = "NAME='Gate 1'\nPASS=secret\nON=on\nMODE=b\nLEVEL=7\nTIME=20240331023000\nROWS=1\n"
                       "USER0=ann\n";

QByteArray labelled(const QByteArray &cells)
{
    return "<item type='label'><text>&lt;b&gt;Left&lt;/b&gt; label</text></item>" + cells;
}

/// A control beside the label "Left label".
QByteArray beside(const QByteArray &attributes, const QByteArray &content = {})
{
    return labelled("<item column='1' " + attributes + '>' + content + "</item>");
}

/// What a tool is told about the control number \a number.
QAccessibleInterface *heard(const DescribedWindow &window, int number)
{
    for (QWidget *widget : window.page()->findChildren<QWidget *>()) {
        if (widget->accessibleName() == QStringLiteral("link%1").arg(number))
            return QAccessible::queryAccessibleInterface(widget);
    }
    return nullptr;
}

const DescribedWindow::Files Files{{"net", Net}};

} // namespace

class TestAccessibility : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void saysWhatAControlIs_data();
    void saysWhatAControlIs();
    void namesWindows();
    void followsItsLabel();
    void readsLists();
    void readsAndWritesText();
    void keepsPasswordsHidden();
    void pressesAndToggles();
    void opensTheChoices();
    void movesScrollBarsOnly();
};

void TestAccessibility::saysWhatAControlIs_data()
{
    QTest::addColumn<QByteArray>("cells");
    QTest::addColumn<int>("number");
    QTest::addColumn<QString>("name");
    QTest::addColumn<QString>("value");
    QTest::addColumn<int>("role");

    const QByteArray tip = "<tooltip>&lt;i&gt;Some&lt;/i&gt; tip</tooltip>";
    const QByteArray nameKey = "<key>net/untitled/NAME</key>";
    const QByteArray levelKey = "<key>net/untitled/LEVEL</key>";
    const auto row = [](const char *title, const QByteArray &cells, int number, const char *name,
                        const char *value, QAccessible::Role role) {
        QTest::newRow(title) << cells << number << name << value << int(role);
    };
    const auto edit = [&](const char *title, const QByteArray &cells, int number, const char *name) {
        row(title, cells, number, name, "", QAccessible::EditableText);
    };
    row("label", labelled({}), 1, "Left label", "", QAccessible::StaticText);
    row("edit", beside("type='edit'", nameKey + tip), 2, "Left label", "Gate 1", QAccessible::EditableText);
    edit("edit below its label", labelled("<item row='1' type='edit'/>"), 2, "Left label");
    edit(
        "edit with a label on both sides",
        labelled("<item row='1' type='label'><text>Nearer</text></item><item row='1' column='1' type='edit'/>"
                 "<item column='1' type='label'><text>Above</text></item>"),
        3, "Nearer");
    edit("edit beside a wide label",
         "<item columnSpan='3' type='label'><text>Wide</text></item><item column='3' type='edit'/>", 2,
         "Wide");
    edit("edit in a grid of its own", "<item type='gridlayout'>" + beside("type='edit'") + "</item>", 2,
         "Left label");
    edit("edit far from the label", labelled("<item row='1' column='1' type='edit'>" + tip + "</item>"), 2,
         "Some tip");
    edit("nameless edit", "<item type='edit'/>", 1, "");
    row("button", beside("type='pushbutton'", "<text>&amp;Save &amp;&amp; go</text>" + tip), 2, "Save & go",
        "", QAccessible::Button);
    row("button without a text", beside("type='pushbutton'"), 2, "Left label", "", QAccessible::Button);
    row("check box", beside("type='checkbox'", "<text>Night</text>"), 2, "Night", "", QAccessible::CheckBox);
    row("drop-down", beside("type='dropdown'", "<text>High<key>net/untitled/MODE/b</key></text>"), 2,
        "Left label", "High", QAccessible::ComboBox);
    row("scroll bar", beside("type='scroll' maxvalue='9'", levelKey), 2, "Left label", "7",
        QAccessible::ScrollBar);
    row("progress bar", beside("type='progressbar' maxvalue='10'", levelKey), 2, "Left label", "70%",
        QAccessible::ProgressBar);
    row("pie", beside("type='orbpie'", levelKey), 2, "Left label", "7%", QAccessible::ProgressBar);
    row("date and time", beside("type='datetime' format='dd.MM.yyyy hh:mm'", "<key>net/untitled/TIME</key>"),
        2, "Left label", "31.03.2024 02:30", QAccessible::SpinBox);
    row("line", beside("type='separator'"), 2, "", "", QAccessible::Separator);
    row("tab widget", beside("type='tabwidget'", "<tab><name>Inner</name></tab>"), 2, "Left label", "",
        QAccessible::Grouping);
}

void TestAccessibility::saysWhatAControlIs()
{
    QFETCH(QByteArray, cells);
    QFETCH(int, number);
    QFETCH(int, role);
    DescribedWindow window(describePage(cells), Files);
    QAccessibleInterface *control = heard(window, number);
    QVERIFY(control);
    QTEST(control->text(QAccessible::Name), "name");
    QTEST(control->text(QAccessible::Value), "value");
    QCOMPARE(control->role(), QAccessible::Role(role));
    QVERIFY(!control->text(QAccessible::Description).contains(u'<'));
    QVERIFY(control->isValid());
    QVERIFY(QAccessible::queryAccessibleInterface(control->parent()->object()));
}

void TestAccessibility::namesWindows()
{
    DescribedWindow window(describePage({}));
    QCOMPARE(window.window->accessibleName(), "link0");
    QAccessibleInterface *dialog = QAccessible::queryAccessibleInterface(window.window.get());
    QCOMPARE(dialog->text(QAccessible::Name), window.window->windowTitle());
    QCOMPARE(dialog->role(), QAccessible::Dialog);
}

void TestAccessibility::followsItsLabel()
{
    DescribedWindow window(describePage(beside("type='edit'")), Files);
    QAccessibleInterface *edit = heard(window, 2);
    QPointer<QLabel> label = window.widget<QLabel>();
    label->setText("Changed");
    QCOMPARE(edit->text(QAccessible::Name), "Changed");
    delete label;
    QCOMPARE(edit->text(QAccessible::Name), QString());
    window.widget<QLineEdit>()->setAccessibleName("linking"); // given by somebody else
    QCOMPARE(edit->text(QAccessible::Name), "linking");
}

void TestAccessibility::readsLists()
{
    DescribedWindow window(
        describePage(beside("type='list'", "<row_count>net/untitled/ROWS</row_count><column>User</column>"
                                           "<column>Right</column>"
                                           "<column_source>net/untitled/USER</column_source>"
                                           "<column_source>net/untitled/RIGHT</column_source>")),
        {{"net", "ROWS=2\nUSER0=ann\nRIGHT0=1\nUSER1=bob\nRIGHT1=2\n"}});
    QAccessibleInterface *list = heard(window, 2);
    QCOMPARE(list->text(QAccessible::Name), "Left label");
    QCOMPARE(list->role(), QAccessible::Table);

    QStringList heardInOrder;
    for (int i = 0; i < list->childCount(); ++i) {
        QAccessibleInterface *cell = list->child(i);
        heardInOrder.append(cell->text(QAccessible::Name));
        QCOMPARE(list->indexOfChild(cell), i);
        QCOMPARE(list->childAt(cell->rect().center().x(), cell->rect().center().y()), cell);
    }
    QCOMPARE(heardInOrder, (QStringList{"User", "Right", "ann", "1", "bob", "2"}));

    QAccessibleInterface *cell = list->tableInterface()->cellAt(1, 1);
    QCOMPARE(cell->tableCellInterface()->columnHeaderCells().value(0), list->child(1));
    QVERIFY(!cell->state().selected);
    cell->actionInterface()->doAction(QAccessibleActionInterface::pressAction());
    QVERIFY(cell->state().selected);
    QCOMPARE(list->tableInterface()->selectedRows(), QList<int>{1});

    const QAccessible::Id held = QAccessible::uniqueId(cell);
    window.window->setValue("net/untitled/ROWS/1"); // a row less, while a tool holds its cell
    QCOMPARE(list->childCount(), 4);
    if (QAccessibleInterface *gone = QAccessible::accessibleInterface(held)) {
        QVERIFY(!gone->isValid() && !gone->state().selected);
        QCOMPARE(gone->text(QAccessible::Name), QString());
    }
}

void TestAccessibility::readsAndWritesText()
{
    DescribedWindow window(
        describePage(beside("type='edit' validator='[A-Z]?[a-z0-9 ]*'", "<key>net/untitled/NAME</key>")),
        Files);
    QAccessibleInterface *edit = heard(window, 2);
    QVERIFY(edit->state().editable && !edit->state().passwordEdit);
    QAccessibleTextInterface *text = edit->textInterface();
    QCOMPARE(text->characterCount(), 6);
    QCOMPARE(text->text(-3, 1000), "Gate 1");
    int start = 0;
    int end = 0;
    QCOMPARE(text->textAtOffset(5, QAccessible::WordBoundary, &start, &end), "1");
    text->setSelection(0, 1, 3);
    text->selection(0, &start, &end);
    QCOMPARE(std::pair(start, end), std::pair(1, 3));
    const QRect second = text->characterRect(1);
    QVERIFY(edit->rect().contains(second));
    QCOMPARE(text->offsetAtPoint(QPoint(second.left(), second.center().y())), 1);

    edit->editableTextInterface()->replaceText(0, 4, "Door");
    QCOMPARE(window.value("net/untitled/NAME"), "Door 1");
    edit->editableTextInterface()->insertText(6, "2");
    edit->editableTextInterface()->deleteText(0, 5);
    QCOMPARE(window.value("net/untitled/NAME"), "12");
    edit->setText(QAccessible::Value, "Yard");
    edit->setText(QAccessible::Value, "Refused!");
    QCOMPARE(window.value("net/untitled/NAME"), "Yard");
    window.widget<QLineEdit>()->setReadOnly(true);
    edit->setText(QAccessible::Value, "Never");
    edit->editableTextInterface()->deleteText(0, 4);
    QCOMPARE(window.value("net/untitled/NAME"), "Yard");
}

void TestAccessibility::keepsPasswordsHidden()
{
    DescribedWindow window(describePage(beside("type='edit' password='on'", "<key>net/untitled/PASS</key>")),
                           Files);
    auto *line = window.widget<QLineEdit>();
    QCOMPARE(line->text(), "secret");
    QAccessibleInterface *edit = heard(window, 2);
    QVERIFY(edit->state().passwordEdit);
    for (const auto mode : {QLineEdit::Password, QLineEdit::PasswordEchoOnEdit, QLineEdit::NoEcho}) {
        line->setEchoMode(mode);
        for (const QString &told : {edit->text(QAccessible::Value), edit->text(QAccessible::Name),
                                    edit->text(QAccessible::Description), edit->textInterface()->text(0, 6)})
            QVERIFY2(!told.contains(QRegularExpression("[secr]{2}")), qPrintable(told));
        edit->setText(QAccessible::Value, "other");
        QCOMPARE(window.value("net/untitled/PASS"), "other");
        edit->setText(QAccessible::Value, "secret");
        QCOMPARE(window.value("net/untitled/PASS"), "secret");
    }
}

void TestAccessibility::pressesAndToggles()
{
    DescribedWindow window(describePage("<item type='checkbox'><key>net/untitled/ON</key></item>"
                                        "<item row='1' type='pushbutton'><text>Go</text></item>"),
                           Files);
    QAccessibleInterface *box = heard(window, 1);
    QVERIFY(box->state().checkable && box->state().checked);
    box->actionInterface()->doAction(QAccessibleActionInterface::toggleAction());
    AWAIT_COMPARE(window.value("net/untitled/ON"), "off");
    QVERIFY(!box->state().checked);

    auto *go = window.widget<QPushButton>();
    QSignalSpy clicks(go, &QPushButton::clicked);
    QAccessibleInterface *button = heard(window, 2);
    const QString press = QAccessibleActionInterface::pressAction();
    button->actionInterface()->doAction(press);
    AWAIT_COMPARE(clicks.size(), 1);
    go->setEnabled(false);
    QVERIFY(!button->actionInterface()->actionNames().contains(press));
    QVERIFY(button->state().disabled);
}

void TestAccessibility::opensTheChoices()
{
    DescribedWindow window(describePage(beside("type='dropdown'", "<text>Low</text><text>High</text>")));
    QAccessibleInterface *box = heard(window, 2);
    QCOMPARE(box->childCount(), 1);
    QCOMPARE(box->child(0)->parent(), box);
    QCOMPARE(box->child(0)->tableInterface()->rowCount(), 2);
    for (const bool expanded : {true, false}) {
        box->actionInterface()->doAction(QAccessibleActionInterface::showMenuAction());
        AWAIT_COMPARE(bool(box->state().expanded), expanded);
    }
}

void TestAccessibility::movesScrollBarsOnly()
{
    DescribedWindow window(
        describePage("<item type='scroll' minvalue='2' maxvalue='9'><key>net/untitled/LEVEL</key></item>"
                     "<item column='1' type='progressbar' maxvalue='10' value='5'/>"
                     "<item column='2' type='orbpie' value='5'/>"),
        Files);
    QAccessibleValueInterface *bar = heard(window, 1)->valueInterface();
    QCOMPARE(bar->minimumValue().toInt(), 2);
    QCOMPARE(bar->maximumValue().toInt(), 9);
    bar->setCurrentValue(4);
    QCOMPARE(window.value("net/untitled/LEVEL"), "4");
    for (const int number : {2, 3}) {
        QAccessibleInterface *gauge = heard(window, number);
        QVERIFY(gauge->state().readOnly);
        gauge->valueInterface()->setCurrentValue(8);
        QCOMPARE(gauge->valueInterface()->currentValue().toInt(), 5);
        QCOMPARE(gauge->valueInterface()->minimumValue().toInt(), 0);
        QCOMPARE(gauge->valueInterface()->maximumValue().toInt(), number == 2 ? 10 : 100);
    }
}

QTEST_MAIN(TestAccessibility)
#include "tst_accessibility.moc"
