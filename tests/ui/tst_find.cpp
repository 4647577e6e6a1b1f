#include "DescribedWindow.h"
#include "support/TestTable.h"

#include <QCheckBox>
#include <QDialog>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QTreeWidget>

using namespace paravue;
using namespace paravue::test;

namespace
{

QByteArray button(const QByteArray &cell, const QByteArray &text, const QByteArray &actions)
{
    return "<item type='pushbutton' " + cell + "><text>" + text + "</text>" + actions + "</item>";
}

QByteArray opens(const QByteArray &dialog)
{
    return "<action type='call' slot='showDialog' param='" + dialog + "'>self</action>";
}

QByteArray field(const QByteArray &row, const QByteArray &label, const QByteArray &key,
                 const QByteArray &words = {})
{
    return "<item type='label' row='" + row + "'><text>" + label + "</text></item><item type='edit' row='" +
           row + "' column='1' " + words + "><key>net/untitled/" + key + "</key></item>";
}

const QByteArray Description = describe(
    "<window><self/></window><tabwidget><tab><name>&amp;Cameras</name><item type='gridlayout'>"
    "<item type='label' columnSpan='2'><text>Picture</text></item>"
    "<item type='separator' row='1' columnSpan='2' orientation='horizontal'/>" +
    field("2", "Bright", "BRIGHT") + "<item type='gridlayout' row='3' columnSpan='2'>" +
    field("0", "Sharp", "SHARP") +
    "</item>"
    "<item type='gridlayout' row='4'><item type='label'><text>From</text></item>"
    "<item type='label' column='1'><text>Until</text></item>"
    "<item type='separator' row='1' columnSpan='2' orientation='horizontal'/>"
    "<item type='edit' row='2'><key>net/untitled/FROM</key></item>"
    "<item type='edit' row='2' column='1'><key>net/untitled/UNTIL</key></item></item>" +
    "<item type='label' row='5'><text>Serial number</text></item>"
    "<item type='label' row='5' column='1'><text>{net/untitled/SERIAL}</text></item>"
    "<item type='label' row='6'><text>Now: {net/untitled/SERIAL}</text></item>" +
    "<item type='gridlayout' row='10'><item type='label'><text>Camera</text></item>"
    "<item type='label' column='1'><text>Type</text></item>"
    "<item type='label' column='2'><text>Mode</text></item>"
    "<item type='separator' row='1' columnSpan='3' orientation='horizontal'/>"
    "<item type='label' row='2'><text>{net/untitled/GATE}</text></item>"
    "<item type='label' row='2' column='1'><text>{net/untitled/TYPE}</text></item>"
    "<item type='label' row='2' column='2'><value>net/untitled/MODE</value>"
    "<choice value='m'>Motion</choice></item></item>" +
    button("row='7'", "&amp;Properties", opens("camera")) +
    button("row='8'", "Format",
           "<action type='call' slot='setValue' param='tmp/untitled/WHAT/disk'>self</action>" +
               opens("confirm")) +
    button("row='9' enabled='no'", "Lens", opens("lens")) +
    "</item></tab></tabwidget>"
    "<cameraWindow><camera/><title>Camera</title><item type='gridlayout'>"
    "<item type='tabwidget'><tab><name>Stream</name><item type='gridlayout'>" +
    field("0", "Bitrate", "RATE") + "</item></tab><tab><name>Access</name><item type='gridlayout'>" +
    field("0", "Code", "PIN", "password='on'") + field("1", "Seed", "SEED", "secret='yes'") +
    "<item type='label' row='2'><text>Now {net/untitled/PIN}</text></item>"
    "</item></tab></item>" +
    button("row='1'", "More", opens("details")) +
    "</item></cameraWindow>"
    "<confirmWindow><confirm/><title>Confirm</title><item type='gridlayout'>" +
    button("", "Do it", "<action type='call' slot='setValue' param='tmp/untitled/DONE/yes'>self</action>") +
    "</item></confirmWindow>"
    "<detailsWindow><details/><title>Details</title><item type='gridlayout'>"
    "<item type='checkbox'><text>&amp;Fine</text><key>net/untitled/FINE</key></item>"
    "<item type='label' row='1'><text>Left {gone/untitled/TIME}</text></item>"
    "<item type='dropdown' row='2'><text>{away/untitled/A}<key>net/untitled/CHOICE/1</key></text></item>"
    "</item></detailsWindow>"
    "<lensWindow><lens/><title>Lens</title><item type='gridlayout'>" +
    field("0", "Zoom", "ZOOM") +
    "</item></lensWindow>"
    "<progressWindow><progress/><title>Transfer</title><item type='gridlayout'>" +
    field("0", "Speed", "SPEED") + "</item></progressWindow>");

const QByteArray Net =
    "BRIGHT=5\nSHARP=6\nFROM=1\nUNTIL=2\nRATE=4096\nPIN=4711\nSEED=9876\nFINE=off\nZOOM=3\n"
    "SPEED=88\nSERIAL=4-2\nGATE=Yard\nTYPE=H.264\nMODE=m\n";

struct Window : DescribedWindow {
    Window()
        : DescribedWindow(Description, {{"net", Net}, {"net.original", Net}, {"tmp", "A=1\n"}},
                          {.tracksChanges = true})
    {
    }

    void press(const QKeySequence &keys) const
    {
        window->activateWindow();
        QVERIFY(QTest::qWaitForWindowActive(window.get()));
        QTest::keySequence(window.get(), keys);
    }
};

QString rowText(const QTreeWidgetItem &row)
{
    QStringList parts;
    for (int column = 0; column < row.columnCount(); ++column)
        parts << row.text(column);
    return parts.join('|');
}

QStringList rowsOf(const QTreeWidget &list)
{
    QStringList rows;
    for (int i = 0; i < list.topLevelItemCount(); ++i)
        rows << rowText(*list.topLevelItem(i));
    return rows;
}

/// Types its query into the find dialog, notes what that shows, and presses Enter. The dialog is closed after
/// that if it has stayed open.
class Search : public ModalWatcher
{
public:
    explicit Search(const QString &query, bool isChangedOnly = false)
        : ModalWatcher(
              [=, this](QWidget &dialog) {
                  auto *line = dialog.findChild<QLineEdit *>();
                  dialog.findChild<QCheckBox *>()->setChecked(isChangedOnly);
                  QTest::keyClicks(line, query);
                  auto *list = dialog.findChild<QTreeWidget *>();
                  rows = rowsOf(*list);
                  way = list->accessibleDescription();
                  QTest::keyClick(line, Qt::Key_Return);
                  isOpen = dialog.isVisible();
              },
              "paravue::FindDialog")
    {
    }

    QStringList rows;
    QString way; ///< what is said about the first row
    bool isOpen = false;
};

/// Notes the described dialog that opens, and where its focus is.
class Opened : public ModalWatcher
{
public:
    Opened()
        : ModalWatcher(
              [this](QWidget &dialog) {
                  QCoreApplication::processEvents();
                  const auto *focus = qobject_cast<QLineEdit *>(dialog.focusWidget());
                  what = dialog.windowTitle() + ": " + (focus ? focus->text() : QString());
              },
              "QDialog")
    {
    }

    QString what;
};

} // namespace

/// What is not on an open page is found, listed and shown all the same.
class TestFind : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void knowsThePlaces_data();
    void knowsThePlaces();
    void goesThere_data();
    void goesThere();
    void knowsTheWayInAPage();
    void searchesLongLists();
    void searchesAnOpenDialog();
    void findsChangesInDialogs();
    void listsChangesInDialogs();
};

void TestFind::knowsThePlaces_data()
{
    const TestTable<QString, QStringList> row("query", "rows");
    row("heading", "bright", {"Bright|Cameras|Picture|5|net/untitled/BRIGHT"});
    row("heading of the grid around", "sharp", {"Sharp|Cameras|Picture|6|net/untitled/SHARP"});
    row("heads of columns", "until 2", {"Until|Cameras|Until|2|net/untitled/UNTIL"});
    row("head of the first column", "from 1", {"From|Cameras|From|1|net/untitled/FROM"});
    row("group", "picture sharp", {"Sharp|Cameras|Picture|6|net/untitled/SHARP"});
    row("value to read", "serial number", {"Serial number|Cameras|Picture|4-2|net/untitled/SERIAL"});
    row("value beside its text", "now 4-2", {"Now: 4-2|Cameras|Picture|4-2|net/untitled/SERIAL"});
    row("value in a table", "h.264", {"Type|Cameras|Type|H.264|net/untitled/TYPE"});
    row("value of a choice in a table", "motion", {"Mode|Cameras|Mode|m|net/untitled/MODE"});
    row("value that names its row", "yard", {"Camera|Cameras|Camera|Yard|net/untitled/GATE"});
    row("dialog", "bitrate", {"Bitrate|Camera › Stream||4096|net/untitled/RATE"});
    row("value in a dialog", "4096", {"Bitrate|Camera › Stream||4096|net/untitled/RATE"});
    row("access key in a dialog", "fine", {"Fine|Details||off|net/untitled/FINE"});
    row("dialog by its title", "transfer", {"Speed|Transfer||88|net/untitled/SPEED"});
    row("hidden input", "code", {"Code|Camera › Access|||net/untitled/PIN"});
    row("value of hidden input", "4711", {});
    row("marked as secret", "seed", {"Seed|Camera › Access|||net/untitled/SEED"});
    row("value marked as secret", "9876", {});
}

void TestFind::knowsThePlaces()
{
    QFETCH(QString, query);
    Window window;
    const Opened opened;
    const Search search(query);
    window.press(QKeySequence::Find);
    QVERIFY(search.hasSeen());
    QTEST(search.rows, "rows");
    QCOMPARE(window.messages.count(), 0);
}

void TestFind::goesThere_data()
{
    const TestTable<QString, QString, QString, QString> row("query", "way", "opened", "focus");
    const QString begins = "This is in the dialog \"%1\". Enter shows where the way there begins: %2";
    row("in the window", "bright", "", "", "5");
    row("in a dialog", "bitrate", "Enter opens the dialog \"Camera\".", "Camera: 4096", "");
    row("on another page of a dialog", "seed", "Enter opens the dialog \"Camera\".", "Camera: 9876", "");
    row("in a dialog of a dialog", "fine", begins.arg("Details", "Cameras › Properties"), "", "&Properties");
    row("in a question", "do it", begins.arg("Confirm", "Cameras › Format"), "", "Format");
    row("behind a disabled button", "zoom", begins.arg("Lens", "Cameras › Lens"), "", "");
    row("nowhere", "speed", "This is in the dialog \"Transfer\", which opens by itself.", "", "");
}

void TestFind::goesThere()
{
    QFETCH(QString, query);
    Window window;
    const Opened opened;
    const Search search(query);
    window.press(QKeySequence::Find);
    QTEST(search.way, "way");
    QCOMPARE(search.isOpen, query == "speed");
    QTEST(opened.what, "opened");
    window.press(QKeySequence("F12"));
    const QWidget *focus = window.window->focusWidget();
    const bool isField = qobject_cast<const QLineEdit *>(focus);
    const bool isButton = qobject_cast<const QPushButton *>(focus);
    QTEST(isField || isButton ? focus->property("text").toString() : QString(), "focus");
    // Nothing was pressed on the way.
    QCOMPARE(window.value("tmp/untitled/WHAT") + window.value("tmp/untitled/DONE"), "");
}

/// The window of the controls is that of the host then.
void TestFind::knowsTheWayInAPage()
{
    StoreFixture files({{"interface", Description}, {"net", Net}, {"net.original", Net}, {"tmp", "A=1\n"}});
    QWidget host;
    CWinMain page(&files.store(), &host, CWinMain::Placement::Page, {.tracksChanges = true});
    host.show();
    host.activateWindow();
    QVERIFY(QTest::qWaitForWindowActive(&host));
    page.findChild<QLineEdit *>()->setFocus();
    const Opened opened;
    const Search search("bitrate");
    QTest::keySequence(&host, QKeySequence::Find);
    QCOMPARE(search.way, "Enter opens the dialog \"Camera\".");
    QCOMPARE(opened.what, "Camera: 4096");
    page.endSession();
}

/// What stands behind a modal dialog cannot be reached.
void TestFind::searchesLongLists()
{
    QByteArray users = "CNT=100\n";
    for (int user = 0; user < 100; ++user) {
        const QByteArray number = QByteArray::number(user);
        users += "NAME" + number + "=guard" + number + "\nPASSWD" + number + "=\nLEVEL" + number + "=0\n";
    }
    DescribedWindow window(
        describePage("<item type='accesslist'><key>users/untitled</key><accesslist/></item>"),
        {{"users", users}, {"users.original", users}}, {.tracksChanges = true});
    window.fixture.store().setValue("users/untitled/LEVEL90/1");
    for (const auto &[query, isChangedOnly] : {std::pair{"", true}, {"guard95", false}, {"level99", false}}) {
        const Search search(query, isChangedOnly);
        window.window->activateWindow();
        QVERIFY(QTest::qWaitForWindowActive(window.window.get()));
        QTest::keySequence(window.window.get(), QKeySequence::Find);
        QVERIFY2(search.hasSeen() && search.rows.size() == 1, query);
    }
}

void TestFind::searchesAnOpenDialog()
{
    Window window;
    const Search search("net");
    QString focus;
    const ModalWatcher camera(
        [&](QWidget &dialog) {
            dialog.activateWindow();
            QVERIFY(QTest::qWaitForWindowActive(&dialog));
            QTest::keySequence(&dialog, QKeySequence::Find);
            const auto *field = qobject_cast<const QLineEdit *>(dialog.focusWidget());
            focus = field ? field->text() : QString();
        },
        "QDialog");
    window.button<QPushButton>("&Properties")->click();
    QCOMPARE(search.rows, QStringList({"Bitrate|Camera › Stream||4096|net/untitled/RATE",
                                       "Code|Camera › Access|||net/untitled/PIN",
                                       "Seed|Camera › Access|||net/untitled/SEED"}));
    QCOMPARE(focus, "4096");
}

void TestFind::findsChangesInDialogs()
{
    Window window;
    window.window->setValue("net/untitled/RATE/512");
    const Opened opened;
    const Search search("net", true);
    window.press(QKeySequence::Find);
    QCOMPARE(search.rows, QStringList("Bitrate|Camera › Stream||512|net/untitled/RATE"));
}

void TestFind::listsChangesInDialogs()
{
    Window window;
    for (const char *value : {"SPEED/1", "SEED/2", "PIN/3", "FINE/on", "OTHER/5", "RATE/512", "BRIGHT/6"})
        window.window->setValue(QString("net/untitled/") + value);
    QStringList rows;
    const Opened opened;
    const ModalWatcher lists(
        [&rows](QWidget &dialog) {
            auto *list = dialog.findChild<QTreeWidget *>();
            rows = rowsOf(*list);
            QTest::keyClick(list, Qt::Key_Down);
            QTest::keyClick(list, Qt::Key_Return);
        },
        "paravue::ReviewDialog");
    window.press(QKeySequence("Ctrl+R"));
    const QString dots = "••••••••";
    QCOMPARE(rows, QStringList({"Cameras › Bright|5|6|net/untitled/BRIGHT",
                                "Camera › Stream › Bitrate|4096|512|net/untitled/RATE",
                                "Camera › Access › Code|" + dots + '|' + dots + "|net/untitled/PIN",
                                "Camera › Access › Seed|" + dots + '|' + dots + "|net/untitled/SEED",
                                "Details › Fine|off|on|net/untitled/FINE",
                                "Transfer › Speed|88|1|net/untitled/SPEED",
                                "net/untitled/OTHER|(none)|5|net/untitled/OTHER"}));
    QCOMPARE(opened.what, "Camera: 512");
    // The next description names other values.
    window.fixture.setFile("interface",
                           describePage("", "<a><more/><title>New</title><item type='gridlayout'>" +
                                                field("0", "Noise", "OTHER") + "</item></a>"));
    window.window->onLoadDone();
    rows.clear();
    window.press(QKeySequence("Ctrl+R"));
    QVERIFY2(rows.contains("New › Noise|(none)|5|net/untitled/OTHER"), qPrintable(rows.join('\n')));
}

QTEST_MAIN(TestFind)
#include "tst_find.moc"
