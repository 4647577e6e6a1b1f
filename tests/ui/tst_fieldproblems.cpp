#include "DescribedWindow.h"
#include "support/TestTable.h"
#include "ui/description/DescribedValues.h"
#include "ui/description/InterfaceDocument.h"
#include "ui/description/TextResolver.h"

#include <QAccessible>
#include <QCheckBox>
#include <QLabel>
#include <QLineEdit>
#include <QMessageBox>
#include <QPushButton>
#include <QRegularExpression>
#include <QTabWidget>
#include <QToolButton>
#include <QTreeWidget>

using namespace paravue;
using namespace paravue::test;

namespace
{

/// Fields in the order of the window: of a page with a range and a pattern, and of one with a mask, a needed
/// value, and inner tabs that an action hides.
const QByteArray Description = describe(
    "<window><self/></window><tabwidget>"
    "<tab><name>Video</name><item type='gridlayout'>"
    "<item type='label'><text>Rate</text></item>"
    "<item type='edit' column='1' minimum='64' maximum='512'><key>net/untitled/RATE</key><rate/></item>"
    "<item type='label' row='1'><text>From</text></item>"
    "<item type='edit' row='1' column='1' validator='[0-9]{2}:[0-9]{2}'><key>net/untitled/FROM</key></item>"
    "<item type='checkbox' row='2'><text>Own rate</text><key>net/untitled/OWN</key>"
    "<action type='enable' state='on'>rate</action><action type='disable' state='off'>rate</action></item>"
    "</item></tab>"
    "<tab><name>Net&amp;work</name><item type='gridlayout'>"
    "<item type='label'><text>Code</text></item>"
    "<item type='edit' column='1' inputMask='99-99'><key>net/untitled/CODE</key></item>"
    "<item type='tabwidget' row='1' columnSpan='2'><inner/><tab><name>Mail</name><item type='gridlayout'>"
    "<item type='label'><text>Server</text></item>"
    "<item type='edit' column='1' required='yes'><key>net/untitled/SERVER</key></item>"
    "</item></tab></item>"
    "<item type='pushbutton' row='2'><text>No mail</text>"
    "<action type='call' slot='hide'>inner</action></item>"
    "<item type='pushbutton' row='3'><text>Mail</text><action type='call' slot='show'>inner</action></item>"
    "<item type='setup' row='4'><device/></item>"
    "</item></tab></tabwidget>"
    "<buttonOK><action type='call' slot='callSetup' param='save_settings'>device</action>"
    "<action type='call' slot='setValue' param='tmp/untitled/OK/pressed'>self</action></buttonOK>");

const QByteArray Fine = "RATE=128\nFROM=08:00\nOWN=on\nCODE=12-34\nSERVER=mail\n";

const QString RangeNote = "From 64 to 512";

enum Field { Rate, From, Code, Server };

struct Window : DescribedWindow {
    explicit Window(const QByteArray &net = Fine, WindowOptions options = {.tracksChanges = true})
        : DescribedWindow(Description, {{"net", net}, {"net.original", net}, {"tmp", "A=1\n"}}, options)
    {
    }

    QLineEdit &field(Field which) const
    {
        const bool isFirstPage = which == Rate || which == From;
        const auto fields = tabs().widget(isFirstPage ? 0 : 1)->findChildren<QLineEdit *>();
        return *fields[which == Rate || which == Code ? 0 : 1];
    }
    void type(Field which, const QString &text) const
    {
        field(which).setFocus();
        field(which).selectAll();
        QTest::keyClicks(&field(which), text);
    }
    void press(Qt::Key key, Qt::KeyboardModifiers modifiers = Qt::NoModifier) const
    {
        window->activateWindow();
        QVERIFY(QTest::qWaitForWindowActive(window.get()));
        QTest::keyClick(window->focusWidget() ? window->focusWidget() : window.get(), key, modifiers);
    }
    const QTabWidget &tabs() const { return *window->findChild<QTabWidget *>(); }
    /// What is said at the fields, on the tabs and in the header.
    QString said() const
    {
        QStringList parts;
        for (int i = 0; i < tabs().count(); ++i) {
            const QWidget *badge = tabs().tabBar()->tabButton(i, QTabBar::RightSide);
            const auto *count = badge ? badge->findChild<QLabel *>("problemCount") : nullptr;
            parts << (count && count->isVisible() ? count->text() : "-");
        }
        for (const Field which : {Rate, From, Code, Server}) {
            QString text = field(which).accessibleDescription();
            text.remove(QRegularExpression("(\\. )?Changed$"));
            if (!text.isEmpty() && text != RangeNote && text != "Required")
                parts << text;
        }
        return parts.join(" | ");
    }
    QString header() const
    {
        const auto *button = window->findChild<QToolButton *>("changes");
        return button->isVisible() ? button->text() : QString();
    }
    bool hasOutline(Field which) const
    {
        const QImage picture = field(which).grab().toImage();
        const QColor inside = picture.pixelColor(1, picture.height() / 2);
        return inside.red() > inside.green() + 60;
    }
};

} // namespace

/// Fields that hold something wrong are marked, counted, listed and visited.
class TestFieldProblems : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void saysWhatIsWrong_data();
    void saysWhatIsWrong();
    void agreesWithProgramsWithoutAWindow_data();
    void agreesWithProgramsWithoutAWindow();
    void marksTheField();
    void leavesTheLayoutAlone();
    void followsEveryWayOfAnEdit();
    void ofUsableFieldsOnly();
    void speaksOnTheTabs();
    void goesToTheNext();
    void goesToTheNextOfADialog();
    void areListed();
    void areFound();
    void areAskedAbout_data();
    void areAskedAbout();
    void areLeftToHostsThatAsk();
    void endWithTheirDialog();
    void endWithTheirDescription();
};

void TestFieldProblems::saysWhatIsWrong_data()
{
    const TestTable<Field, QString, QString> row("field", "typed", "said");
    row("within", Rate, "64", "- | -");
    row("beyond", Rate, "9", "!1 | - | Outside of the range: " + RangeNote);
    row("half a pattern", From, "07:3", "!1 | - | Not complete");
    row("whole pattern", From, "07:30", "- | -");
    row("nothing, with a pattern", From, "\b", "- | -");
    row("half a mask", Code, "12-3\x7f", "- | !1 | Not complete");
    row("empty mask", Code, "\x7f", "- | -");
    row("missing", Server, "\b", "- | !1 | A value is needed here");
}

void TestFieldProblems::saysWhatIsWrong()
{
    QFETCH(Field, field);
    QFETCH(QString, typed);
    Window window;
    QCOMPARE(window.said(), "- | -");
    QLineEdit &edit = window.field(field);
    edit.setFocus();
    edit.selectAll();
    for (const QChar letter : typed) {
        if (letter == u'\b' || letter == u'\x7f')
            QTest::keyClick(&edit, letter == u'\b' ? Qt::Key_Backspace : Qt::Key_Delete);
        else
            QTest::keyClick(&edit, letter.toLatin1());
    }
    QTEST(window.said(), "said");
    // It is written all the same.
    const QString names[] = {"RATE", "FROM", "CODE", "SERVER"};
    QCOMPARE(window.value("net/untitled/" + names[field]), edit.text());
}

void TestFieldProblems::agreesWithProgramsWithoutAWindow_data()
{
    const TestTable<QByteArray, QStringList> row("item", "values");
    const QByteArray key = "<key>net/a/b</key></item>";
    row("a pattern", "<item type='edit' validator='[0-9]{1,3}'>" + key, {"12", "1234", "a"});
    row("a range", "<item type='edit' minimum='-5' maximum='10'>" + key,
        {"", "-5", "10", "1.5", "-6", "11", "x", " 7 ", "1e1", "nan", "99999999999"});
    row("a value that is needed", "<item type='edit' required='yes'>" + key, {"a", "", " "});
    row("a mask", "<item type='edit' inputMask='&gt;AAa-99;_'>" + key, {"ABC-12", "AB-1", "AB12"});
    row("an address as a mask", "<item type='edit' inputMask='000.000.000.000;_'>" + key,
        {"10.0.0.1", "192.168.100.200", "10.0.0", "10.0.0.x"});
    row("a switch", "<item type='checkbox'>" + key, {"on", "off", "yes"});
    row("a position", "<item type='scroll' minvalue='1' maxvalue='5'>" + key, {"1", "5", "0", "6"});
    row("choices",
        "<item type='dropdown'><text>Low<key>net/a/b/low</key></text><text>High<key>net/a/b/x/y</key></text>"
        "</item>",
        {"low", "x/y", "high"});
}

/// Those judge values by the description alone.
void TestFieldProblems::agreesWithProgramsWithoutAWindow()
{
    QFETCH(QByteArray, item);
    QFETCH(QStringList, values);
    const QByteArray description = describePage(item);
    InterfaceDocument document;
    QCOMPARE(document.load(description, "interface"), QString());
    OrbSetup store;
    const DescribedValues described(document, TextResolver(document, store));
    for (const QString &value : values) {
        const QByteArray net = "[a]\nb='" + value.toUtf8() + "'\n";
        const DescribedWindow window(description, {{"net", net}, {"net.original", net}},
                                     {.tracksChanges = true});
        const auto isShown = [&](const char *name) {
            const auto *label = window.window->findChild<QLabel *>(name);
            return label && !label->isHidden();
        };
        const bool isRefused = isShown("problemCount") || isShown("storedMark");
        QVERIFY2(isRefused == !described.problemWith("net/a/b", value).isEmpty(), qPrintable(value));
    }
}

void TestFieldProblems::marksTheField()
{
    Window window;
    for (const Field which : {Rate, From}) {
        QVERIFY(!window.hasOutline(which));
        window.type(which, "1");
        QVERIFY(window.hasOutline(which));
        const auto labels = window.page()->findChildren<QLabel *>();
        const QString text = which == Rate ? "Outside of the range: " + RangeNote : "Not complete";
        const auto isText = [&text](const QLabel *label) { return label->text() == text; };
        const auto label = std::find_if(labels.begin(), labels.end(), isText);
        QVERIFY(label != labels.end() && (*label)->isVisible());
    }
    // The tab has made room for both counts.
    const QTabBar &bar = *window.tabs().tabBar();
    QVERIFY(bar.tabRect(0).contains(bar.tabButton(0, QTabBar::RightSide)->geometry()));
    Window plain(Fine, {});
    plain.type(From, "1");
    QVERIFY(!plain.hasOutline(From));
    QCOMPARE(plain.field(From).accessibleDescription(), "");
}

/// The reason stands in the field when there is room, else below it while the user is there.
void TestFieldProblems::leavesTheLayoutAlone()
{
    DescribedWindow window(
        describePage("<item type='edit' width='300' validator='[0-9]{9}'><key>net/untitled/A</key></item>"
                     "<item type='edit' column='1' width='50' validator='[0-9]{9}'>"
                     "<key>net/untitled/B</key></item><item type='edit' row='1'/>"),
        {{"net", "A=123456789\nB=123456789\n"}}, {.tracksChanges = true});
    QLineEdit *wide = window.widget<QLineEdit>(0);
    QLineEdit *narrow = window.widget<QLineEdit>(1);
    narrow->setFixedWidth(50);
    QCoreApplication::processEvents();
    const auto mark = [](const QLineEdit *field) {
        QString said;
        for (const QLabel *label : field->parentWidget()->findChildren<QLabel *>("refusalMark")) {
            const QRect around = field->geometry().adjusted(0, 0, 0, 2 * field->height());
            if (label->isVisible() && around.contains(label->geometry().topLeft()))
                said = label->text() + (field->geometry().contains(label->geometry()) ? " inside" : " below");
        }
        return said;
    };
    const QRect before[] = {wide->geometry(), narrow->geometry()};
    for (QLineEdit *field : {wide, narrow}) {
        field->setFocus();
        field->end(false);
        QTest::keyClick(field, Qt::Key_Backspace);
    }
    QCoreApplication::processEvents();
    QCOMPARE(mark(wide), "Not complete inside");
    QCOMPARE(mark(narrow), "Not complete below");
    QVERIFY(wide->geometry() == before[0] && narrow->geometry() == before[1]);
    wide->setFocus();
    QCOMPARE(mark(narrow), "! inside");
    QCOMPARE(narrow->accessibleDescription(), "Not complete. Changed");
    QTest::keyClicks(wide, "9");
    QCOMPARE(mark(wide), "");
}

/// A value is also changed by undoing, by actions of other controls, and by another fetch.
void TestFieldProblems::followsEveryWayOfAnEdit()
{
    Window window;
    window.type(Rate, "9");
    QCOMPARE(window.header(), "1 change, 1 problem");
    window.widget<QCheckBox>()->setFocus();
    window.press(Qt::Key_Z, Qt::ControlModifier);
    QCOMPARE(window.header(), "");
    window.window->setValue("net/untitled/FROM/8");
    QCOMPARE(window.header(), "1 change, 1 problem");
    window.window->setValue("net/untitled/FROM/08:00");
    QCOMPARE(window.header(), "");
    for (const char *value : {"RATE/1", "FROM/1", "SERVER/"})
        window.fixture.store().setValue(QString("net/untitled/") + value);
    window.fixture.store().load();
    QCOMPARE(window.header(), "3 changes, 3 problems");
}

void TestFieldProblems::ofUsableFieldsOnly()
{
    Window window("RATE=1\nFROM=08:00\nOWN=off\nCODE=12-34\n");
    QCOMPARE(window.header(), "1 problem");
    QVERIFY(!window.hasOutline(Rate));
    window.widget<QCheckBox>()->click();
    QCOMPARE(window.header(), "1 change, 2 problems");
    QVERIFY(window.hasOutline(Rate));
    // What stands in hidden tabs is hidden, whichever page is open.
    window.button<QPushButton>("No mail")->click();
    QCOMPARE(window.header(), "1 change, 1 problem");
    window.button<QPushButton>("Mail")->click();
    QCOMPARE(window.header(), "1 change, 2 problems");
    window.widget<QCheckBox>()->click();
    QCOMPARE(window.header(), "1 problem");
    QVERIFY(!window.hasOutline(Rate));
}

void TestFieldProblems::speaksOnTheTabs()
{
    Window window("RATE=1\nFROM=8\nOWN=on\nCODE=12-34\nSERVER=mail\n");
    QAccessibleInterface *bar = QAccessible::queryAccessibleInterface(window.tabs().tabBar());
    const auto spoken = [bar](int tab) { return bar->child(tab)->text(QAccessible::Name); };
    QCOMPARE(spoken(0), "Video, 2 problems");
    QCOMPARE(spoken(1), "Network");
    window.type(Rate, "65");
    QCOMPARE(spoken(0), "Video, 1 change, 1 problem");
    window.type(Server, "x");
    QCOMPARE(spoken(1), "Network, 1 change");
    window.press(Qt::Key_Z, Qt::ControlModifier);
    window.press(Qt::Key_Z, Qt::ControlModifier);
    QCOMPARE(spoken(1), "Network");
}

void TestFieldProblems::goesToTheNext()
{
    Window window("RATE=1\nFROM=08:00\nOWN=on\nCODE=1\n");
    const auto focus = [&window] {
        for (const Field which : {Rate, From, Code, Server}) {
            if (window.field(which).hasFocus())
                return int(which);
        }
        return -1;
    };
    for (const Field expected : {Rate, Code, Server, Rate}) {
        window.press(Qt::Key_F8);
        QCOMPARE(focus(), int(expected));
        QVERIFY(window.field(expected).isVisible());
    }
    for (const Field expected : {Server, Code}) {
        window.press(Qt::Key_F8, Qt::ShiftModifier);
        QCOMPARE(focus(), int(expected));
    }
    window.field(From).setFocus();
    window.press(Qt::Key_F8, Qt::ShiftModifier);
    QCOMPARE(focus(), int(Rate));
    for (const Field which : {Rate, Code, Server})
        window.type(which, which == Code ? "12-34" : "100");
    window.press(Qt::Key_F8);
    QCOMPARE(focus(), int(Server));
}

void TestFieldProblems::goesToTheNextOfADialog()
{
    const QByteArray field = "<key>net/untitled/NAME</key></item>";
    DescribedWindow window(
        describePage("<item type='edit' required='yes'>" + field +
                         "<item type='pushbutton' row='1'><text>Open</text>"
                         "<action type='call' slot='showDialog' param='more'>self</action></item>",
                     "<dialog><more/><item type='gridlayout'><item type='edit' required='yes'>" + field +
                         "<item type='edit' row='1'><key>net/untitled/A</key></item>"
                         "<item type='edit' row='2' required='yes'>" +
                         field + "</item></dialog>"),
        {{"net", "A=1\n"}}, {.tracksChanges = true});
    QList<qsizetype> visited;
    const ModalWatcher dialogs(
        [&](QWidget &dialog) {
            dialog.activateWindow();
            QVERIFY(QTest::qWaitForWindowActive(&dialog));
            auto fields = dialog.findChildren<QLineEdit *>();
            fields[1]->setFocus();
            for (const Qt::KeyboardModifier modifier : {Qt::NoModifier, Qt::NoModifier, Qt::ShiftModifier}) {
                QTest::keyClick(dialog.focusWidget(), Qt::Key_F8, modifier);
                visited << fields.indexOf(static_cast<QLineEdit *>(dialog.focusWidget()));
            }
        },
        "QDialog");
    window.button<QPushButton>("Open")->click();
    QCOMPARE(visited, QList<qsizetype>({2, 0, 2}));
}

void TestFieldProblems::areListed()
{
    Window window("RATE=1\nFROM=08:00\nOWN=on\nCODE=1\nSERVER=mail\n");
    QStringList rows;
    const ModalWatcher lists(
        [&rows](QWidget &dialog) {
            auto *list = dialog.findChild<QTreeWidget *>("problems");
            for (int i = 0; i < list->topLevelItemCount(); ++i)
                rows << list->topLevelItem(i)->text(0) + ": " + list->topLevelItem(i)->text(1);
            QVERIFY(list->isVisible() && list->hasFocus());
            QTest::keyClick(list, Qt::Key_Down);
            QTest::keyClick(list, Qt::Key_Return);
        },
        "paravue::ReviewDialog");
    window.window->findChild<QToolButton *>("changes")->click();
    QCOMPARE(rows, QStringList({"Video › Rate: Outside of the range: From 64 to 512",
                                "Network › Code: Not complete"}));
    window.press(Qt::Key_Control);
    QVERIFY(window.field(Code).hasFocus());
}

void TestFieldProblems::areFound()
{
    Window window("RATE=1\nFROM=08:00\nOWN=on\nCODE=12-34\nSERVER=mail\n");
    QStringList found;
    const ModalWatcher dialogs(
        [&found](QWidget &dialog) {
            for (QCheckBox *box : dialog.findChildren<QCheckBox *>())
                box->setChecked(box->text() == "With problems");
            const auto *list = dialog.findChild<QTreeWidget *>();
            for (int i = 0; i < list->topLevelItemCount(); ++i)
                found << list->topLevelItem(i)->text(1) + ' ' + list->topLevelItem(i)->text(0);
        },
        "paravue::FindDialog");
    window.press(Qt::Key_F, Qt::ControlModifier);
    QCOMPARE(found, QStringList("Video Rate"));
}

void TestFieldProblems::areAskedAbout_data()
{
    const TestTable<QMessageBox::StandardButton, bool, bool> row("answer", "isSent", "goesThere");
    row("none, as nothing is wrong", QMessageBox::NoButton, true, false);
    row("default", QMessageBox::Ok, false, true);
    row("send", QMessageBox::Ignore, true, false);
    row("go on editing", QMessageBox::Cancel, false, false);
}

void TestFieldProblems::areAskedAbout()
{
    QFETCH(QMessageBox::StandardButton, answer);
    const bool isWrong = answer != QMessageBox::NoButton;
    Window window(isWrong ? QByteArray("RATE=128\nFROM=08:00\nOWN=on\nCODE=12-34\n") : Fine);
    window.messages.setAction([answer](QWidget &box) {
        auto &question = static_cast<QMessageBox &>(box);
        QVERIFY(question.informativeText().contains("Mail › Server: A value is needed here"));
        auto *button = question.button(answer);
        (button ? button : question.defaultButton())->click();
    });
    window.button<QPushButton>("OK")->click();
    QCOMPARE(window.messages.count(), int(isWrong));
    QTEST(window.value("tmp/untitled/OK") == "pressed", "isSent");
    window.press(Qt::Key_Control);
    QTEST(window.field(Server).hasFocus(), "goesThere");
}

void TestFieldProblems::areLeftToHostsThatAsk()
{
    Window window("RATE=1\n", {});
    window.button<QPushButton>("OK")->click();
    QCOMPARE(window.messages.count(), 0);
    QVERIFY(!window.hasOutline(Rate));
    QCOMPARE(window.tabs().tabBar()->tabButton(0, QTabBar::RightSide), nullptr);
    QCOMPARE(window.value("tmp/untitled/OK"), "pressed");
}

void TestFieldProblems::endWithTheirDialog()
{
    DescribedWindow window(
        describePage("<item type='pushbutton'><text>Open</text>"
                     "<action type='call' slot='showDialog' param='more'>self</action></item>",
                     "<dialog><more/><item type='gridlayout'><item type='edit' required='yes'>"
                     "<key>net/untitled/NAME</key></item></item></dialog>"),
        {{"net", "A=1\n"}}, {.tracksChanges = true});
    const auto *header = window.window->findChild<QToolButton *>("changes");
    QString whileOpen;
    const ModalWatcher dialogs([&](QWidget &) { whileOpen = header->text(); }, "QDialog");
    window.button<QPushButton>("Open")->click();
    window.settle();
    QCOMPARE(whileOpen, "1 problem");
    QVERIFY(!header->isVisible());
}

void TestFieldProblems::endWithTheirDescription()
{
    Window window("RATE=1\nFROM=08:00\nOWN=on\nCODE=1\nSERVER=mail\n");
    QCOMPARE(window.header(), "2 problems");
    window.fixture.setFile(
        "interface", describePage("<item type='edit' validator='x'><key>net/untitled/CODE</key></item>"));
    window.window->onLoadDone();
    QCOMPARE(window.header(), ""); // the new field is shown later
    window.settle();
    QCOMPARE(window.header(), "1 problem");
}

QTEST_MAIN(TestFieldProblems)
#include "tst_fieldproblems.moc"
