#include "DescribedWindow.h"

#include <QAccessible>
#include <QDateTimeEdit>
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

QByteArray labelled(const QByteArray &control)
{
    return "<item type=\"label\" row=\"0\" column=\"0\"><text>&lt;b&gt;Left&lt;/b&gt; label</text></item>" +
           control;
}

/// A control beside the label "Left label", and below nothing.
QByteArray beside(const QByteArray &type, const QByteArray &content = {})
{
    return labelled("<item row=\"0\" column=\"1\" type=\"" + type + "\">" + content + "</item>");
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

DescribedWindow::Files files()
{
    return {{"net", Net}};
}

} // namespace

class TestAccessibility : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void saysWhatAControlIs_data();
    void saysWhatAControlIs();
    void namesWindows();
    void keepsNamesGivenByOthers();
    void followsItsLabel();
    void describesLists();
    void readsAndWritesText();
    void keepsPasswordsHidden();
    void refusesWhatTheFieldRefuses();
    void pressesAndToggles();
    void opensTheChoices();
    void movesScrollBarsOnly();
    void stepsThroughTime();
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
    const auto row = [](const char *title, const QByteArray &cells, int number, const char *name,
                        const char *value, QAccessible::Role role) {
        QTest::newRow(title) << cells << number << name << value << int(role);
    };
    row("label", labelled({}), 1, "Left label", "", QAccessible::StaticText);
    row("edit", beside("edit", nameKey + tip), 2, "Left label", "Gate 1", QAccessible::EditableText);
    row("edit below its label", labelled("<item row=\"1\" column=\"0\" type=\"edit\">" + nameKey + "</item>"),
        2, "Left label", "Gate 1", QAccessible::EditableText);
    row("edit with a label on both sides",
        labelled("<item row=\"1\" column=\"0\" type=\"label\"><text>Nearer</text></item>"
                 "<item row=\"1\" column=\"1\" type=\"edit\"/>"
                 "<item row=\"0\" column=\"1\" type=\"label\"><text>Above</text></item>"),
        3, "Nearer", "", QAccessible::EditableText);
    row("edit beside a wide label",
        "<item row=\"0\" column=\"0\" columnSpan=\"3\" type=\"label\"><text>Wide</text></item>"
        "<item row=\"0\" column=\"3\" type=\"edit\"/>",
        2, "Wide", "", QAccessible::EditableText);
    row("edit in a grid of its own",
        "<item row=\"0\" column=\"0\" type=\"gridlayout\">" + beside("edit") + "</item>", 2, "Left label", "",
        QAccessible::EditableText);
    row("edit far from the label", labelled("<item row=\"1\" column=\"1\" type=\"edit\">" + tip + "</item>"),
        2, "Some tip", "", QAccessible::EditableText);
    row("nameless edit", "<item row=\"0\" column=\"0\" type=\"edit\"/>", 1, "", "",
        QAccessible::EditableText);
    row("button", beside("pushbutton", "<text>&amp;Save &amp;&amp; go</text>" + tip), 2, "Save & go", "",
        QAccessible::Button);
    row("button without a text", beside("pushbutton"), 2, "Left label", "", QAccessible::Button);
    row("check box", beside("checkbox", "<text>Night</text>"), 2, "Night", "", QAccessible::CheckBox);
    row("drop-down",
        beside("dropdown", "<text>Low<key>net/untitled/MODE/a</key></text>"
                           "<text>High<key>net/untitled/MODE/b</key></text>"),
        2, "Left label", "High", QAccessible::ComboBox);
    row("scroll bar",
        labelled("<item row=\"0\" column=\"1\" type=\"scroll\" maxvalue=\"9\">"
                 "<key>net/untitled/LEVEL</key></item>"),
        2, "Left label", "7", QAccessible::ScrollBar);
    row("progress bar",
        labelled("<item row=\"0\" column=\"1\" type=\"progressbar\" maxvalue=\"10\">"
                 "<key>net/untitled/LEVEL</key></item>"),
        2, "Left label", "70%", QAccessible::ProgressBar);
    row("pie", beside("orbpie", "<key>net/untitled/LEVEL</key>"), 2, "Left label", "7%",
        QAccessible::ProgressBar);
    row("date and time",
        labelled("<item row=\"0\" column=\"1\" type=\"datetime\" format=\"dd.MM.yyyy hh:mm\">"
                 "<key>net/untitled/TIME</key></item>"),
        2, "Left label", "31.03.2024 02:30", QAccessible::SpinBox);
    row("line", beside("separator"), 2, "", "", QAccessible::Separator);
    row("tab widget", beside("tabwidget", "<tab><name>Inner</name></tab>"), 2, "Left label", "",
        QAccessible::Grouping);
}

void TestAccessibility::saysWhatAControlIs()
{
    QFETCH(QByteArray, cells);
    QFETCH(int, number);
    QFETCH(int, role);
    DescribedWindow window(describePage(cells), files());
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
    QCOMPARE(window.window->accessibleName(), QStringLiteral("link0"));
    QAccessibleInterface *dialog = QAccessible::queryAccessibleInterface(window.window.get());
    QCOMPARE(dialog->text(QAccessible::Name), window.window->windowTitle());
    QCOMPARE(dialog->role(), QAccessible::Dialog);
}

void TestAccessibility::keepsNamesGivenByOthers()
{
    DescribedWindow window(describePage(beside("edit")));
    QAccessibleInterface *edit = heard(window, 2);
    window.widget<QLineEdit>()->setAccessibleName("linking");
    QCOMPARE(edit->text(QAccessible::Name), QStringLiteral("linking"));
}

void TestAccessibility::followsItsLabel()
{
    DescribedWindow window(describePage(beside("edit")));
    QCOMPARE(heard(window, 2)->text(QAccessible::Name), QStringLiteral("Left label"));
    QPointer<QLabel> label = window.widget<QLabel>();
    label->setText("Changed");
    QCOMPARE(heard(window, 2)->text(QAccessible::Name), QStringLiteral("Changed"));
    delete label;
    QCOMPARE(heard(window, 2)->text(QAccessible::Name), QString());
}

void TestAccessibility::describesLists()
{
    DescribedWindow window(
        describePage(beside("list", "<row_count>net/untitled/ROWS</row_count><column>User</column>"
                                    "<column_source>net/untitled/USER</column_source>")),
        files());
    QAccessibleInterface *list = heard(window, 2);
    QVERIFY(list->tableInterface());
    QTRY_COMPARE(list->text(QAccessible::Description), QStringLiteral("Left label"));
    QCOMPARE(list->tableInterface()->cellAt(0, 0)->text(QAccessible::Name), QStringLiteral("ann"));
}

void TestAccessibility::readsAndWritesText()
{
    DescribedWindow window(describePage(beside("edit", "<key>net/untitled/NAME</key>")), files());
    QAccessibleInterface *edit = heard(window, 2);
    QVERIFY(edit->state().editable);
    QVERIFY(!edit->state().passwordEdit);
    QAccessibleTextInterface *text = edit->textInterface();
    QVERIFY(text);
    QCOMPARE(text->characterCount(), 6);
    QCOMPARE(text->text(0, 4), QStringLiteral("Gate"));
    QCOMPARE(text->text(-3, 1000), QStringLiteral("Gate 1"));
    int start = 0;
    int end = 0;
    QCOMPARE(text->textAtOffset(5, QAccessible::WordBoundary, &start, &end), QStringLiteral("1"));
    text->setSelection(0, 1, 3);
    text->selection(0, &start, &end);
    QCOMPARE(std::pair(start, end), std::pair(1, 3));
    const QRect second = text->characterRect(1);
    QVERIFY(edit->rect().contains(second));
    QVERIFY(second.left() > text->characterRect(0).left());
    QCOMPARE(text->offsetAtPoint(QPoint(second.left(), second.center().y())), 1);

    edit->editableTextInterface()->replaceText(0, 4, "Door");
    QCOMPARE(window.value("net/untitled/NAME"), QStringLiteral("Door 1"));
    edit->editableTextInterface()->insertText(6, "2");
    edit->editableTextInterface()->deleteText(0, 5);
    QCOMPARE(window.value("net/untitled/NAME"), QStringLiteral("12"));
    edit->setText(QAccessible::Value, "Yard");
    QCOMPARE(window.value("net/untitled/NAME"), QStringLiteral("Yard"));

    window.widget<QLineEdit>()->setReadOnly(true);
    QVERIFY(edit->state().readOnly);
    edit->setText(QAccessible::Value, "Never");
    edit->editableTextInterface()->deleteText(0, 4);
    QCOMPARE(window.value("net/untitled/NAME"), QStringLiteral("Yard"));
}

void TestAccessibility::keepsPasswordsHidden()
{
    DescribedWindow window(describePage(labelled("<item row=\"0\" column=\"1\" type=\"edit\" password=\"on\">"
                                                 "<key>net/untitled/PASS</key></item>")),
                           files());
    auto *line = window.widget<QLineEdit>();
    QCOMPARE(line->text(), QStringLiteral("secret"));
    QAccessibleInterface *edit = heard(window, 2);
    QVERIFY(edit->state().passwordEdit);
    for (const auto mode : {QLineEdit::Password, QLineEdit::PasswordEchoOnEdit, QLineEdit::NoEcho}) {
        line->setEchoMode(mode);
        for (const QString &told : {edit->text(QAccessible::Value), edit->text(QAccessible::Name),
                                    edit->text(QAccessible::Description), edit->textInterface()->text(0, 6)})
            QVERIFY2(!told.contains(QRegularExpression("[secr]{2}")), qPrintable(told));
        edit->setText(QAccessible::Value, "other");
        QCOMPARE(window.value("net/untitled/PASS"), QStringLiteral("other"));
        edit->setText(QAccessible::Value, "secret");
        QCOMPARE(window.value("net/untitled/PASS"), QStringLiteral("secret"));
    }
}

void TestAccessibility::refusesWhatTheFieldRefuses()
{
    DescribedWindow window(
        describePage(labelled("<item row=\"0\" column=\"1\" type=\"edit\" validator=\"[0-9]{1,3}\">"
                              "<key>net/untitled/LEVEL</key></item>")),
        files());
    QAccessibleInterface *edit = heard(window, 2);
    edit->setText(QAccessible::Value, "seven");
    QCOMPARE(edit->text(QAccessible::Value), QStringLiteral("7"));
    QCOMPARE(window.value("net/untitled/LEVEL"), QStringLiteral("7"));
    edit->setText(QAccessible::Value, "42");
    QCOMPARE(window.value("net/untitled/LEVEL"), QStringLiteral("42"));
}

void TestAccessibility::pressesAndToggles()
{
    DescribedWindow window(
        describePage(labelled("<item row=\"0\" column=\"1\" type=\"checkbox\"><text>Night</text>"
                              "<key>net/untitled/ON</key></item>"
                              "<item row=\"0\" column=\"2\" type=\"pushbutton\"><text>Go</text></item>")),
        files());
    QAccessibleInterface *box = heard(window, 2);
    QVERIFY(box->state().checkable);
    QVERIFY(box->state().checked);
    const QString toggle = QAccessibleActionInterface::toggleAction();
    QVERIFY(box->actionInterface()->actionNames().contains(toggle));
    box->actionInterface()->doAction(toggle);
    QTRY_COMPARE(window.value("net/untitled/ON"), QStringLiteral("off"));
    QVERIFY(!box->state().checked);

    QSignalSpy clicks(window.button<QPushButton>("Go"), &QPushButton::clicked);
    QAccessibleInterface *button = heard(window, 3);
    const QString press = QAccessibleActionInterface::pressAction();
    QVERIFY(button->actionInterface()->actionNames().contains(press));
    QVERIFY(!button->state().checkable);
    button->actionInterface()->doAction(press);
    QTRY_COMPARE(clicks.size(), 1);
    window.button<QPushButton>("Go")->setEnabled(false);
    QVERIFY(!button->actionInterface()->actionNames().contains(press));
    QVERIFY(button->state().disabled);
}

void TestAccessibility::opensTheChoices()
{
    DescribedWindow window(describePage(beside("dropdown", "<text>Low</text><text>High</text>")));
    QAccessibleInterface *box = heard(window, 2);
    QCOMPARE(box->childCount(), 1);
    QAccessibleInterface *choices = box->child(0);
    QCOMPARE(box->indexOfChild(choices), 0);
    QCOMPARE(choices->parent(), box);
    QCOMPARE(choices->tableInterface()->rowCount(), 2);
    QVERIFY(!box->state().expanded);
    box->actionInterface()->doAction(QAccessibleActionInterface::showMenuAction());
    QTRY_VERIFY(box->state().expanded);
    box->actionInterface()->doAction(QAccessibleActionInterface::showMenuAction());
    QTRY_VERIFY(!box->state().expanded);
}

void TestAccessibility::movesScrollBarsOnly()
{
    DescribedWindow window(
        describePage("<item row=\"0\" column=\"0\" type=\"scroll\" minvalue=\"2\" maxvalue=\"9\">"
                     "<key>net/untitled/LEVEL</key></item>"
                     "<item row=\"0\" column=\"1\" type=\"progressbar\" maxvalue=\"10\" value=\"5\"/>"
                     "<item row=\"0\" column=\"2\" type=\"orbpie\" value=\"5\"/>"),
        files());
    QAccessibleValueInterface *bar = heard(window, 1)->valueInterface();
    QCOMPARE(bar->minimumValue().toInt(), 2);
    QCOMPARE(bar->maximumValue().toInt(), 9);
    bar->setCurrentValue(4);
    QCOMPARE(bar->currentValue().toInt(), 4);
    QCOMPARE(window.value("net/untitled/LEVEL"), QStringLiteral("4"));
    for (const int number : {2, 3}) {
        QAccessibleInterface *gauge = heard(window, number);
        QVERIFY(gauge->state().readOnly);
        gauge->valueInterface()->setCurrentValue(8);
        QCOMPARE(gauge->valueInterface()->currentValue().toInt(), 5);
    }
}

void TestAccessibility::stepsThroughTime()
{
    DescribedWindow window(
        describePage(labelled("<item row=\"0\" column=\"1\" type=\"datetime\" format=\"yyyy-MM-dd\">"
                              "<key>net/untitled/TIME</key></item>")),
        files());
    QAccessibleInterface *edit = heard(window, 2);
    edit->actionInterface()->doAction(QAccessibleActionInterface::increaseAction());
    QCOMPARE(edit->text(QAccessible::Value), QStringLiteral("2025-03-31"));
    edit->setText(QAccessible::Value, "2023-01-02");
    QCOMPARE(window.widget<QDateTimeEdit>()->date(), QDate(2023, 1, 2));
}

QTEST_MAIN(TestAccessibility)
#include "tst_accessibility.moc"
