#include "DescribedWindow.h"
#include "changes/FileValues.h"
#include "controls/CellGridEditor.h"
#include "controls/PtzCalibrator.h"
#include "controls/ScheduleGrid.h"
#include "snapshots/SnapshotArchive.h"
#include "snapshots/SnapshotStore.h"
#include "support/TestTable.h"
#include "support/Waiting.h"

#include <QCheckBox>
#include <QDateTimeEdit>
#include <QLabel>
#include <QLineEdit>
#include <QMessageBox>
#include <QPushButton>
#include <QSessionManager>
#include <QStyleHints>
#include <QTabWidget>
#include <QToolButton>
#include <QTreeWidget>

using namespace paravue;
using namespace paravue::test;

namespace
{

const QByteArray Description = describe(
    "<window><self/></window><tabwidget>"
    "<tab><name>Network</name><item type='gridlayout'>"
    "<item type='label'><text>Name</text></item>"
    "<item type='edit' column='1'><key>net/untitled/NAME</key></item>"
    "<item type='label' row='1'><text>Shown: {net/untitled/NAME}</text></item>"
    "<item type='label' row='2'><text>Password</text></item>"
    "<item type='edit' row='2' column='1'><key>net/untitled/PASSWORD</key></item>"
    "<item type='label' row='3'><text>Present</text></item>"
    "<item type='edit' row='3' column='1' enabled='no'><key>net/untitled/NAME</key></item>"
    "<item type='setup' row='4'><device/></item>"
    "</item></tab>"
    "<tab><name>Alarm</name><item type='gridlayout'>"
    "<item type='checkbox'><text>Siren</text><key>net/untitled/SIREN</key>"
    "<action type='call' state='on' slot='setValue' param='net/untitled/MODE/loud'>self</action></item>"
    "</item></tab></tabwidget>"
    "<buttonOK><action type='call' slot='callSetup' param='save_settings'>device</action>"
    "<action type='call' slot='setValue' param='tmp/untitled/OK/pressed'>self</action></buttonOK>");

const QByteArray Net = "NAME=old\nPASSWORD=secret\nSIREN=off\nMODE=quiet\n";

struct TrackedWindow : DescribedWindow {
    explicit TrackedWindow(WindowOptions options = {})
        : DescribedWindow(Description, {{"net", Net}, {"net.original", Net}, {"tmp", "A=1\n"}},
                          tracking(options))
    {
    }

    static WindowOptions tracking(WindowOptions options)
    {
        options.tracksChanges = true;
        return options;
    }
    QLineEdit &name() const { return *widget<QLineEdit>(0); }
    QCheckBox &siren() const { return *widget<QCheckBox>(); }
    void type(QLineEdit &field, const QString &text) const
    {
        field.setFocus();
        field.selectAll();
        QTest::keyClicks(&field, text);
    }
    void press(Qt::Key key, Qt::KeyboardModifiers modifiers = Qt::ControlModifier) const
    {
        activate();
        QTest::keyClick(window->focusWidget(), key, modifiers);
    }
    /// There is no window manager that does it when a dialog was closed.
    void activate() const
    {
        window->activateWindow();
        QVERIFY(QTest::qWaitForWindowActive(window.get()));
    }
    /// The number of changes in the header, and those of the tabs.
    QString counts() const
    {
        const auto *button = window->findChild<QToolButton *>("changes");
        QStringList parts{button->isVisible() ? button->text() : QString("none")};
        const auto *tabs = window->findChild<QTabWidget *>();
        for (int i = 0; i < tabs->count(); ++i) {
            const auto *badge = tabs->tabBar()->tabButton(i, QTabBar::RightSide);
            const auto *count = badge ? badge->findChild<QLabel *>("changeCount") : nullptr;
            parts << tabs->tabText(i) + ' ' + (count && count->isVisible() ? count->text() : "-");
        }
        return parts.join(", ");
    }
    QString values()
    {
        return value("net/untitled/NAME") + ' ' + value("net/untitled/SIREN") + ' ' +
               value("net/untitled/MODE");
    }
};

/// Runs its function on the list of changes when that is open, and closes it.
class InTheList : public ModalWatcher
{
public:
    explicit InTheList(const std::function<void(QTreeWidget &list)> &work)
        : ModalWatcher([work](QWidget &dialog) { work(*dialog.findChild<QTreeWidget *>()); },
                       "paravue::ReviewDialog")
    {
    }
};

} // namespace

/// Changes are marked, listed, taken back and undone.
class TestChangeReview : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void countsWhatDiffers();
    void namesTheCamerasOfPointsThatWait();
    void comesBehindThePages();
    void undoesGestures();
    void fieldsUndoFirst();
    void editorsUndoFirst_data();
    void editorsUndoFirst();
    void dateTimesAreUndoneInTheWindow();
    void dialogsAreMarkedAndHaveTheKeys();
    void listsAndTakesBack();
    void takesMovedListsBackAsAWhole();
    void namesTheUserOfAValue_data();
    void namesTheUserOfAValue();
    void showsMarkupInToolTipsAsItIs();
    void goesToTheControl();
    void goesToTheControlFromADialog_data();
    void goesToTheControlFromADialog();
    void findsControls_data();
    void findsControls();
    void asksBeforeItCloses_data();
    void asksBeforeItCloses();
    void asksBeforeItIsAccepted();
    void asksAboutWhatItsFileLacks();
    void asksAboutNoSecretOfItsFile();
    void asksBeforeARefreshDropsChanges_data();
    void asksBeforeARefreshDropsChanges();
    void asksBehindAnotherDescription();
    void listsNoDirectivesOfASnapshot();
    void asksBeforeASnapshotLosesEdits_data();
    void asksBeforeASnapshotLosesEdits();
    void asksBeforeTheDesktopSessionEnds();
    void countsWhatTheHostHasChangedBefore();
    void lettingTheHostsChangesGoIsNoQuestion();
    void closesWithoutAQuestionWhenTheStoreGoes();
    void hidesWhatIsTypedHidden();
    void showsTheListBeforeItSends();
};

void TestChangeReview::countsWhatDiffers()
{
    TrackedWindow window;
    QCOMPARE(window.counts(), "none, Network -, Alarm -");
    window.type(window.name(), "new");
    QCOMPARE(window.counts(), "1 change, Network 1, Alarm -");
    window.siren().click();
    QCOMPARE(window.counts(), "3 changes, Network 1, Alarm 1");
    window.type(window.name(), "old");
    QCOMPARE(window.counts(), "2 changes, Network -, Alarm 1");
    window.fixture.setFile("net", Net);
    QCOMPARE(window.counts(), "none, Network -, Alarm -");
}

void TestChangeReview::comesBehindThePages()
{
    TrackedWindow window({.offersRefresh = true});
    window.type(window.name(), "new"); // shows the count in the header
    window.window->findChild<QTabWidget *>()->tabBar()->setFocus();
    QStringList order;
    for (int i = 0; i < 8; ++i) {
        window.press(Qt::Key_Tab, Qt::NoModifier);
        const QWidget *focus = window.window->focusWidget();
        const auto *button = qobject_cast<const QAbstractButton *>(focus);
        order << (button && !button->text().isEmpty() ? button->text() : focus->metaObject()->className());
    }
    QCOMPARE(order, QStringList({"QLineEdit", "QLineEdit", "Refresh", "OK", "Cancel", "1 change",
                                 "QToolButton", "QTabBar"}));
}

void TestChangeReview::undoesGestures()
{
    TrackedWindow window;
    window.type(window.name(), "first");
    window.siren().click(); // writes two values
    window.siren().click();
    window.type(window.name(), "second");
    window.siren().setFocus();
    QCOMPARE(window.values(), "second off loud");
    const QStringList states{"first off loud", "first on loud", "first off quiet", "old off quiet"};
    for (const QString &state : states) {
        window.press(Qt::Key_Z);
        QCOMPARE(window.values(), state);
    }
    QCOMPARE(window.counts(), "none, Network -, Alarm -");
    QCOMPARE(window.name().text(), "old");
    for (int i = 0; i < 3; ++i)
        window.press(Qt::Key_Z, Qt::ControlModifier | Qt::ShiftModifier);
    QCOMPARE(window.values(), "first off loud");
}

void TestChangeReview::fieldsUndoFirst()
{
    TrackedWindow window;
    window.siren().click();
    window.type(window.name(), "x");
    window.press(Qt::Key_Z);
    QCOMPARE(window.values(), "old on loud");
    QVERIFY(window.name().hasFocus());
    while (window.name().isUndoAvailable())
        window.press(Qt::Key_Z);
    window.press(Qt::Key_Z);
    QCOMPARE(window.values(), "old off quiet");
    QVERIFY(window.siren().hasFocus());
}

void TestChangeReview::editorsUndoFirst_data()
{
    const TestTable<QByteArray, QByteArray> row("type", "key");
    row("mask", "maskctrl", "ROW");
    row("week", "vornschedule", "ROW");
    row("mask with a default", "maskctrl", "ROW/0x0");
}

/// An editor of cells undoes its own gestures; the same steps of the window go with them.
void TestChangeReview::editorsUndoFirst()
{
    QFETCH(QByteArray, type);
    QFETCH(QByteArray, key);
    DescribedWindow window(
        describePage("<item type='edit'><key>net/untitled/NAME</key></item><item row='1' type='" + type +
                     "'><key>net/untitled/" + key + "</key></item>"),
        {{"net", Net}, {"net.original", Net}}, TrackedWindow::tracking({}));
    auto *name = window.widget<QLineEdit>(0);
    name->setFocus();
    QTest::keyClicks(name, "er");
    auto *editor = window.widget<CellGridEditor>() ? static_cast<QWidget *>(window.widget<CellGridEditor>())
                                                   : window.widget<ScheduleGrid>();
    editor->setFocus();
    const auto press = [&](const QString &keys) {
        QTest::keySequence(window.window->focusWidget(), QKeySequence(keys));
    };
    const auto cells = [&] { return int(window.value("net/untitled/ROW0").count('1')); };
    for (const char *keys : {"Space", "Right", "Space", "Right", "Space"})
        press(keys);
    QCOMPARE(cells(), 3);
    for (const int left : {2, 1, 0}) {
        press("Ctrl+Z");
        QCOMPARE(cells(), left);
    }
    press("Ctrl+Shift+Z");
    QCOMPARE(cells(), 1);
    press("Ctrl+Z");
    QCOMPARE(cells(), 0);
    QVERIFY(!window.fixture.store().storedValue("net/untitled/ROW0")); // as before
    press("Ctrl+Z");                                                   // nothing is left here
    QCOMPARE(cells(), 0);
    QCOMPARE(window.value("net/untitled/NAME"), "old");
}

void TestChangeReview::dateTimesAreUndoneInTheWindow()
{
    DescribedWindow window(describePage("<item type='datetime'><key>net/untitled/SINCE</key></item>"),
                           {{"net", "SINCE=20260102030405\n"}, {"net.original", "SINCE=20260102030405\n"}},
                           TrackedWindow::tracking({}));
    auto *since = window.widget<QDateTimeEdit>();
    QVERIFY(since);
    since->setFocus();
    QTest::keyClick(since, Qt::Key_Up);
    QVERIFY(window.value("net/untitled/SINCE") != "20260102030405");
    QTest::keySequence(since, QKeySequence::Undo);
    QCOMPARE(window.value("net/untitled/SINCE"), "20260102030405");
    QTest::keySequence(since, QKeySequence(Qt::CTRL | Qt::SHIFT | Qt::Key_Z));
    QVERIFY(window.value("net/untitled/SINCE") != "20260102030405");
}

void TestChangeReview::dialogsAreMarkedAndHaveTheKeys()
{
    DescribedWindow window(
        describePage("<item type='pushbutton'><text>More</text>"
                     "<action type='call' slot='setValue' param='net/untitled/MODE/loud'>self</action>"
                     "<action type='call' slot='showDialog' param='more'>self</action></item>",
                     "<dialog><more/><item type='gridlayout'>"
                     "<item type='edit'><key>net/untitled/NAME</key></item></item></dialog>"),
        {{"net", Net}, {"net.original", Net}}, TrackedWindow::tracking({}));
    std::function<void(QDialog &, QLineEdit &)> work;
    const ModalWatcher dialogs(
        [&](QWidget &dialog) {
            auto *name = dialog.findChild<QLineEdit *>();
            name->setFocus();
            work(static_cast<QDialog &>(dialog), *name);
        },
        "QDialog");
    auto *more = window.widget<QPushButton>();
    work = [](QDialog &, QLineEdit &name) {
        QCOMPARE(name.accessibleDescription(), "");
        QTest::keyClicks(&name, "er");
        QCOMPARE(name.accessibleDescription(), "Changed");
        name.window()->setFocus();
        QTest::keySequence(name.window(), QKeySequence::Undo);
        QCOMPARE(name.text(), "old");
        QTest::keySequence(name.window(), QKeySequence::Redo);
    };
    more->click();
    QCOMPARE(window.value("net/untitled/NAME"), "older");
    QCOMPARE(window.value("net/untitled/MODE"), "loud");

    bool isListed = false;
    work = [&](QDialog &dialog, QLineEdit &name) {
        QCOMPARE(name.accessibleDescription(), "Changed");
        {
            const ModalWatcher list([&](QWidget &review) { isListed = review.parentWidget() == &dialog; },
                                    "paravue::ReviewDialog");
            QTest::keySequence(&name, Qt::CTRL | Qt::Key_R);
        }
        dialog.activateWindow();
        QVERIFY(QTest::qWaitForWindowActive(&dialog));
        QTest::keySequence(&name, QKeySequence::Undo);
        QCOMPARE(name.text(), "old");
        QCOMPARE(name.accessibleDescription(), "");
        QTest::keySequence(&name, Qt::CTRL | Qt::Key_Y);
        QCOMPARE(name.text(), "older");
    };
    more->click();
    QVERIFY(isListed);
    QCOMPARE(window.value("net/untitled/NAME"), "older");
    QVERIFY(!window.messages.hasSeen());
}

void TestChangeReview::listsAndTakesBack()
{
    TrackedWindow window;
    window.siren().click();
    window.type(window.name(), "new");
    window.type(*window.widget<QLineEdit>(1), "longer secret");
    QStringList rows;
    {
        const InTheList review([&rows](QTreeWidget &list) {
            for (int i = 0; i < list.topLevelItemCount(); ++i) {
                const auto &row = *list.topLevelItem(i);
                rows << row.text(0) + ": " + row.text(1) + " -> " + row.text(2);
            }
            QTest::keyClick(&list, Qt::Key_Delete);
            QCOMPARE(list.topLevelItemCount(), 3);
        });
        window.press(Qt::Key_R);
    }
    QCOMPARE(rows, QStringList({"Network › Name: old -> new", "Network › Password: •••••••• -> ••••••••",
                                "Alarm › Siren: off -> on", "net/untitled/MODE: quiet -> loud"}));
    QCOMPARE(window.values(), "old on loud");
    const InTheList review(
        [](QTreeWidget &list) { list.window()->findChild<QToolButton *>("takeAllBack")->click(); });
    window.press(Qt::Key_R);
    QCOMPARE(window.counts(), "none, Network -, Alarm -");
    window.press(Qt::Key_Z); // one step for all of them
    QCOMPARE(window.counts(), "3 changes, Network 1, Alarm 1");
}

/// Users count by position: a password alone would be given to whoever has moved there.
void TestChangeReview::takesMovedListsBackAsAWhole()
{
    const QByteArray users = "CNT=2\nNAME0=ann\nPASSWD0=a\nNAME1=bob\nPASSWD1=b\nHOURS=5\n";
    DescribedWindow window(Description, {{"net", Net}, {"users", users}, {"users.original", users}},
                           TrackedWindow::tracking({}));
    for (const QString edit : {"CNT/1", "NAME0/bob", "PASSWD0/b", "NAME1/", "PASSWD1/", "HOURS/6"})
        window.fixture.store().setValue("users/untitled/" + edit);
    const ModalWatcher review(
        [](QWidget &dialog) {
            auto *list = dialog.findChild<QTreeWidget *>();
            QCOMPARE(list->topLevelItemCount(), 6);
            list->setCurrentItem(list->findItems("users/untitled/PASSWD0", Qt::MatchExactly, 3).value(0));
            QTest::keyClick(list, Qt::Key_Delete);
            QCOMPARE(list->topLevelItemCount(), 1);
        },
        "paravue::ReviewDialog");
    window.window->findChild<QToolButton *>("changes")->click();
    QVERIFY(review.hasSeen());
    QString values;
    for (const QString key : {"CNT", "NAME0", "PASSWD0", "NAME1", "PASSWD1", "HOURS"})
        values += window.value("users/untitled/" + key) + ' ';
    QCOMPARE(values, "2 ann a bob b 6 ");
}

void TestChangeReview::namesTheUserOfAValue_data()
{
    const TestTable<QStringList, QStringList> row("edits", "captions");
    row("values", {"LEVEL0/2", "PASSWD1/x"}, {"Access › User ann: level", "Access › User bob: password"});
    row("renamed", {"NAME1/rob"}, {"Access › User rob: name"});
    row("removed", {"CNT/1", "NAME1/", "PASSWD1/"},
        {"Access › Number of users", "Access › User bob: name", "Access › User bob: password"});
    row("added", {"CNT/3", "NAME2/carol", "PASSWD2/c"},
        {"Access › Number of users", "Access › User carol: name", "Access › User carol: password"});
    row("without a name", {"CNT/3", "LEVEL2/2"}, {"Access › Number of users", "Access › User 2: level"});
    row("beside the users", {"HOURS/6"}, {"users/untitled/HOURS"});
}

void TestChangeReview::namesTheUserOfAValue()
{
    QFETCH(QStringList, edits);
    const QByteArray users = "CNT=2\nNAME0=ann\nPASSWD0=a\nLEVEL0=1\nNAME1=bob\nPASSWD1=b\nHOURS=5\n";
    const QByteArray page = "<tab><name>Access</name><item type='gridlayout'>"
                            "<item type='label'><text>Users</text></item>"
                            "<item type='accesslist' row='1'><key>users/untitled</key></item></item></tab>";
    DescribedWindow window(describe("<tabwidget>" + page + "</tabwidget>"),
                           {{"users", users}, {"users.original", users}}, TrackedWindow::tracking({}));
    for (const QString &edit : edits)
        window.window->setValue("users/untitled/" + edit);
    QStringList captions;
    const InTheList review([&captions](QTreeWidget &list) {
        for (int row = 0; row < list.topLevelItemCount(); ++row)
            captions << list.topLevelItem(row)->text(0);
    });
    window.window->findChild<QToolButton *>("changes")->click();
    QTEST(captions, "captions");
}

/// Values come from a recorder. A picture on a file share would be fetched with the login of the user.
void TestChangeReview::showsMarkupInToolTipsAsItIs()
{
    TrackedWindow window;
    window.fixture.store().setValue("net/untitled/MODE/<img src=x.png>");
    window.fixture.store().setValue("net/untitled/NAME/" + QString(100'000, 'n'));
    QStringList toolTips;
    const InTheList review([&toolTips](QTreeWidget &list) {
        for (const QTreeWidgetItem *row : {list.topLevelItem(0), list.topLevelItem(1)})
            toolTips << row->toolTip(2);
    });
    window.press(Qt::Key_R);
    QVERIFY(review.hasSeen());
    QVERIFY2(toolTips.join(' ').contains("&lt;img") && !toolTips.join(' ').contains("<img"),
             qPrintable(toolTips.join(' ').left(1000)));
    QVERIFY(toolTips.join(' ').size() < 2000);
}

void TestChangeReview::goesToTheControl()
{
    TrackedWindow window;
    window.siren().click();
    window.type(window.name(), "new");
    const InTheList review([](QTreeWidget &list) {
        QTest::keyClick(&list, Qt::Key_Down);
        QTest::keyClick(&list, Qt::Key_Return);
    });
    window.window->findChild<QToolButton *>("changes")->click();
    QVERIFY(review.hasSeen());
    QVERIFY(window.siren().isVisible());
    window.activate();
    QVERIFY(window.siren().hasFocus());
}

void TestChangeReview::goesToTheControlFromADialog_data()
{
    const TestTable<QString, bool, QString> row("address", "staysOpen", "focus");
    row("behind the dialog", "net/untitled/MODE", false, "window: loud");
    row("in the dialog", "net/untitled/NAME", true, "More: new");
    row("in another dialog", "net/untitled/SIREN", false, "Other: on");
}

void TestChangeReview::goesToTheControlFromADialog()
{
    QFETCH(QString, address);
    const auto opens = [](const QByteArray &row, const QByteArray &tag) {
        return "<item type='pushbutton' row='" + row + "'><text>" + tag +
               "</text><action type='call' slot='showDialog' param='" + tag + "'>self</action></item>";
    };
    const auto dialog = [](const QByteArray &tag, const QByteArray &title, const QByteArray &key) {
        return "<" + tag + "Window><" + tag + "/><title>" + title + "</title><item type='gridlayout'>" +
               "<item type='edit'><key>net/untitled/" + key + "</key></item></item></" + tag + "Window>";
    };
    DescribedWindow window(describePage("<item type='edit'><key>net/untitled/MODE</key></item>" +
                                            opens("1", "more") + opens("2", "other"),
                                        dialog("more", "More", "NAME") + dialog("other", "Other", "SIREN")),
                           {{"net", Net}, {"net.original", Net}}, TrackedWindow::tracking({}));
    for (const char *edit : {"MODE/loud", "NAME/new", "SIREN/on"})
        window.window->setValue(QString("net/untitled/") + edit);
    QString focus;
    const auto noteFocus = [&focus](const QWidget &of, const QString &title) {
        const auto *field = qobject_cast<const QLineEdit *>(of.focusWidget());
        focus = title + ": " + (field ? field->text() : QString());
    };
    const ModalWatcher list(
        [&](QWidget &review) {
            auto *rows = review.findChild<QTreeWidget *>();
            // Not by the usual command: Ctrl is still pressed.
            rows->setCurrentItem(rows->findItems(address, Qt::MatchExactly, 3).value(0), 0,
                                 QItemSelectionModel::ClearAndSelect | QItemSelectionModel::Rows);
            QTest::keyClick(rows, Qt::Key_Return);
        },
        "paravue::ReviewDialog");
    bool hasStayed = false;
    const ModalWatcher dialogs(
        [&](QWidget &dialog) {
            if (dialog.windowTitle() == "More") {
                dialog.activateWindow();
                QVERIFY(QTest::qWaitForWindowActive(&dialog));
                QTest::keySequence(dialog.focusWidget(), Qt::CTRL | Qt::Key_R);
                hasStayed = dialog.isVisible();
            }
            QCoreApplication::processEvents();
            if (dialog.isVisible())
                noteFocus(dialog, dialog.windowTitle());
        },
        "QDialog");
    window.widget<QPushButton>()->click();
    QVERIFY(list.hasSeen());
    QTEST(hasStayed, "staysOpen");
    AWAIT_VERIFY(address != "net/untitled/SIREN" || focus.startsWith("Other"));
    if (address == "net/untitled/MODE") {
        window.settle();
        noteFocus(*window.window, "window");
    }
    QTEST(focus, "focus");
    QVERIFY(!window.messages.hasSeen());
}

void TestChangeReview::findsControls_data()
{
    const TestTable<QString, bool, QStringList> row("query", "isChangedOnly", "found");
    row("caption", "siren", false, {"Alarm › Siren"});
    row("page", "network", false,
        {"Network › Name", "Network › Shown: old", "Network › Password", "Network › Present"});
    row("all words", "old  name", false, {"Network › Name", "Network › Shown: old", "Network › Present"});
    row("address", "untitled/PASS", false, {"Network › Password"});
    row("secret value", "secret", false, {});
    row("static caption", "password name", false, {});
    row("changed only", "", true, {"Alarm › Siren"});
}

void TestChangeReview::findsControls()
{
    QFETCH(QString, query);
    QFETCH(bool, isChangedOnly);
    TrackedWindow window;
    if (isChangedOnly)
        window.siren().click();
    QStringList found;
    const ModalWatcher dialogs(
        [&](QWidget &dialog) {
            auto *field = dialog.findChild<QLineEdit *>();
            QTest::keyClicks(field, query);
            dialog.findChild<QCheckBox *>()->setChecked(isChangedOnly);
            const auto *list = dialog.findChild<QTreeWidget *>();
            for (int i = 0; i < list->topLevelItemCount(); ++i)
                found << list->topLevelItem(i)->text(1) + " › " + list->topLevelItem(i)->text(0);
            if (found.size() > 1)
                QTest::keyClick(field, Qt::Key_Down);
            QTest::keyClick(field, Qt::Key_Return);
        },
        "paravue::FindDialog");
    window.press(Qt::Key_F);
    QTEST(found, "found");
    window.activate();
    QCOMPARE(window.siren().hasFocus(), found == QStringList("Alarm › Siren"));
}

void TestChangeReview::asksBeforeItCloses_data()
{
    const TestTable<bool, QMessageBox::StandardButton, bool, bool> row("isChanged", "answer", "isClosed",
                                                                       "isSent");
    row("nothing changed", false, QMessageBox::NoButton, true, false);
    row("go on editing", true, QMessageBox::Cancel, false, false);
    row("discard", true, QMessageBox::Discard, true, false);
    row("send", true, QMessageBox::Save, false, true);
}

void TestChangeReview::asksBeforeItCloses()
{
    QFETCH(bool, isChanged);
    QFETCH(QMessageBox::StandardButton, answer);
    TrackedWindow window({.asksBeforeClosing = true});
    if (isChanged)
        window.type(window.name(), "new");
    window.messages.setAction(
        [answer](QWidget &box) { static_cast<QMessageBox &>(box).button(answer)->click(); });
    QTest::keyClick(window.window.get(), Qt::Key_Escape);
    QCOMPARE(window.messages.count(), int(isChanged));
    QTEST(!window.window->isVisible(), "isClosed");
    QTEST(window.value("tmp/untitled/OK") == "pressed", "isSent");
}

void TestChangeReview::asksBeforeItIsAccepted()
{
    TrackedWindow window({.asksBeforeClosing = true});
    window.type(window.name(), "new");
    window.window->accept(); // as an action of a description does
    QCOMPARE(window.messages.count(), 1);
    QVERIFY(window.window->isVisible());
    window.button<QPushButton>("OK")->click(); // which saves
    window.window->accept();
    QCOMPARE(window.messages.count(), 1);
    QVERIFY(!window.window->isVisible());
    QCOMPARE(window.window->result(), int(QDialog::Accepted));
}

void TestChangeReview::asksAboutWhatItsFileLacks()
{
    StoreFixture file({{"interface", Description}, {"net", Net}, {"net.original", Net}, {"tmp", ""}});
    file.store().setProperty("savesToFile", true);
    const QObject host;
    connect(&file.store(), &OrbSetup::loadDone, &host,
            [&file] { file.store().setValue("net/untitled/NAME/edited before"); });
    const ModalWatcher messages;
    CWinMain window(&file.store(), nullptr, CWinMain::Placement::Window,
                    TrackedWindow::tracking({.asksBeforeClosing = true}));
    const auto press = [&window](const QKeySequence &keys) {
        window.activateWindow();
        QVERIFY(QTest::qWaitForWindowActive(&window));
        QTest::keySequence(&window, keys);
    };
    {
        const InTheList work(
            [](QTreeWidget &list) { list.window()->findChild<QToolButton *>("takeAllBack")->click(); });
        press(Qt::CTRL | Qt::Key_R);
    }
    QCOMPARE(file.store().value("net/untitled/NAME"), "old");
    press(Qt::Key_Escape);
    QCOMPARE(messages.count(), 1);
    QVERIFY(window.isVisible());
    window.accept();
    QCOMPARE(messages.count(), 2);
    QVERIFY(window.isVisible());

    window.findChild<QCheckBox *>()->click();
    file.store().function("save_settings", "");
    press(Qt::Key_Escape);
    QCOMPARE(messages.count(), 2);
    QVERIFY(!window.isVisible());
}

/// That a value is secret is known when the description was read, which is behind the edits of the file.
void TestChangeReview::asksAboutNoSecretOfItsFile()
{
    StoreFixture file({{"net", "PIN=1234\n"},
                       {"net.original", "PIN=1234\n"},
                       {"interface", describePage("<item type='edit' secret='yes'>"
                                                  "<key>net/untitled/PIN</key></item>")}});
    file.store().setProperty("savesToFile", true);
    const QObject host;
    connect(&file.store(), &OrbSetup::loadDone, &host,
            [&file] { file.store().setValue("net/untitled/PIN/5678"); });
    const ModalWatcher messages;
    CWinMain window(&file.store(), nullptr, CWinMain::Placement::Window,
                    TrackedWindow::tracking({.asksBeforeClosing = true}));
    window.reject();
    QVERIFY(!messages.hasSeen() && !window.isVisible());
}

void TestChangeReview::asksBeforeARefreshDropsChanges_data()
{
    const TestTable<bool, bool, int> row("isOfAFile", "isTakenBack", "questions");
    row("made by the host", false, false, 1);
    row("nothing", false, true, 0);
    row("what the snapshot holds", true, false, 0);
    row("less than the snapshot holds", true, true, 1);
}

void TestChangeReview::asksBeforeARefreshDropsChanges()
{
    QFETCH(bool, isOfAFile);
    QFETCH(bool, isTakenBack);
    StoreFixture file({{"interface", Description}, {"net", Net}, {"net.original", Net}, {"tmp", ""}});
    file.store().setProperty("savesToFile", isOfAFile);
    const QObject host;
    connect(&file.store(), &OrbSetup::loadDone, &host,
            [&file] { file.store().setValue("net/untitled/NAME/edited before"); });
    const ModalWatcher messages;
    CWinMain window(&file.store(), nullptr, CWinMain::Placement::Window,
                    TrackedWindow::tracking({.offersRefresh = true}));
    if (isTakenBack)
        file.store().setValue("net/untitled/NAME/old");
    window.activateWindow();
    QVERIFY(QTest::qWaitForWindowActive(&window));
    QTest::keyClick(&window, Qt::Key_F5);
    QTEST(int(messages.count()), "questions");
}

/// They are followed when the edits are sent to a recorder.
void TestChangeReview::listsNoDirectivesOfASnapshot()
{
    Snapshot snapshot;
    snapshot.info.time = QDateTime::currentDateTimeUtc();
    snapshot.files = {{"net", "[untitled]\nNAME=old\n"},
                      {"state", "[door]\n#!s/PLACE=\\w+(?=\\s)/PLACE={net/untitled/NAME}/\nPLACE=old\n"},
                      {"interface", Description}};
    SnapshotStore store(snapshot);
    for (const bool isFile : {false, true}) {
        store.setProperty("savesToFile", isFile);
        CWinMain window(&store, nullptr, CWinMain::Placement::Window, TrackedWindow::tracking({}));
        AWAIT_VERIFY(window.isBuilt());
        store.setValue("net/untitled/NAME/new");
        int rows = 0;
        const InTheList review([&rows](QTreeWidget &list) { rows = list.topLevelItemCount(); });
        window.findChild<QToolButton *>("changes")->click();
        QCOMPARE(rows, isFile ? 1 : 2);
        window.endSession();
    }
}

void TestChangeReview::asksBeforeASnapshotLosesEdits_data()
{
    const TestTable<QString, bool, int, QByteArray> row("edit", "saves", "questions", "kept");
    row("all are kept", "net/untitled/MODE/loud", true, 0, "new");
    row("saved without the password", "net/untitled/PASSWORD/x", true, 1, "new");
    row("edited further", "net/untitled/PASSWORD/x", false, 1, "");
    row("behind a closed window", "net/untitled/PASSWORD/x", true, 1, "new");
}

/// A message of the save itself would come when the window is closed, and the edits with it.
void TestChangeReview::asksBeforeASnapshotLosesEdits()
{
    QFETCH(QString, edit);
    QFETCH(bool, saves);
    QFETCH(int, questions);
    QFETCH(QByteArray, kept);
    const QTemporaryDir folder;
    const QString path = folder.filePath("snapshot.zip");
    Snapshot snapshot;
    snapshot.info.recorder = "recorder";
    snapshot.info.time = QDateTime::currentDateTimeUtc();
    snapshot.info.leftOut = QStringList{"net/untitled/PASSWORD"};
    snapshot.files = {{"net", "[untitled]\nNAME=old\nPASSWORD=''\nMODE=quiet\n"},
                      {"interface", QByteArray(Description)
                                        .replace("</buttonOK>", "<action type='call' slot='accept'>self"
                                                                "</action></buttonOK>")}};
    QCOMPARE(snapshotarchive::write(snapshot, path), "");
    SnapshotStore store(path);
    CWinMain window(&store, nullptr, CWinMain::Placement::Window, TrackedWindow::tracking({}));
    AWAIT_VERIFY(window.isBuilt());
    for (const QString &value : {QString("net/untitled/NAME/new"), edit})
        store.setValue(value);
    bool wasOpen = true;
    const ModalWatcher messages([&](QWidget &box) {
        wasOpen = wasOpen && window.isVisible();
        auto *button =
            static_cast<QMessageBox &>(box).button(saves ? QMessageBox::Save : QMessageBox::Cancel);
        if (button)
            QTest::mouseClick(button, Qt::LeftButton);
        else
            box.close(); // a message
    });
    const bool isClosed = QTest::currentDataTag() == QByteArray("behind a closed window");
    if (isClosed)
        window.hide();
    for (QPushButton *button : window.findChildren<QPushButton *>()) {
        if (button->text() == "OK")
            button->click();
    }
    QCOMPARE(messages.count(), questions);
    QCOMPARE(wasOpen, !isClosed);
    QVERIFY(questions == 0 || messages.texts().constFirst().contains("Network › Password"));
    QCOMPARE(window.isVisible(), !saves);
    const FileContents edited = snapshotarchive::read(path).snapshot.edited;
    QCOMPARE(FileValues(edited.value("net")).value("untitled/NAME").value_or(""), kept);
    window.endSession();
}

void TestChangeReview::asksBehindAnotherDescription()
{
    TrackedWindow window({.asksBeforeClosing = true});
    window.type(window.name(), "new");
    window.fixture.setFile("interface", QByteArray(Description).replace("Siren", "Horn"));
    window.fixture.store().load();
    window.settle();
    QVERIFY(window.button<QCheckBox>("Horn"));
    window.window->reject();
    QCOMPARE(window.messages.count(), 1);
    QVERIFY(window.window->isVisible());
}

void TestChangeReview::asksBeforeTheDesktopSessionEnds()
{
    TrackedWindow window({.asksBeforeClosing = true});
    auto *session = qApp->findChild<QSessionManager *>();
    QVERIFY(session);
    Q_EMIT qApp->commitDataRequest(*session);
    QCoreApplication::processEvents();
    QVERIFY(window.window->isVisible() && !window.messages.hasSeen());
    window.type(window.name(), "new");
    Q_EMIT qApp->commitDataRequest(*session);
    AWAIT_COMPARE(window.messages.count(), 1);
    QVERIFY(window.window->isVisible());
}

void TestChangeReview::countsWhatTheHostHasChangedBefore()
{
    StoreFixture fixture({{"interface", Description}, {"net", Net}, {"net.original", Net}});
    fixture.store().setValue("net/untitled/NAME/by the host");
    const ModalWatcher messages;
    CWinMain window(&fixture.store(), nullptr, CWinMain::Placement::Window,
                    TrackedWindow::tracking({.asksBeforeClosing = true}));
    QCOMPARE(window.findChild<QToolButton *>("changes")->text(), "1 change");
    window.reject();
    QVERIFY(!window.isVisible() && !messages.hasSeen());
}

void TestChangeReview::lettingTheHostsChangesGoIsNoQuestion()
{
    StoreFixture fixture({{"interface", Description}, {"net", Net}});
    const QObject host;
    connect(&fixture.store(), &OrbSetup::loadDone, &host,
            [&fixture] { fixture.store().setValue("net/untitled/NAME/by the host"); });
    const ModalWatcher messages;
    CWinMain window(&fixture.store(), nullptr, CWinMain::Placement::Window,
                    TrackedWindow::tracking({.asksBeforeClosing = true}));
    QVERIFY(window.findChild<QToolButton *>("changes")->isVisible());
    QTest::keyClick(&window, Qt::Key_Escape);
    QVERIFY(!window.isVisible());
    QCOMPARE(messages.count(), 0);
}

void TestChangeReview::closesWithoutAQuestionWhenTheStoreGoes()
{
    StoreFixture files({{"interface", Description}, {"net", Net}});
    auto store = std::make_unique<OrbSetup>();
    for (const char *name : {"interface", "net"})
        store->setFilePath(name, files.store().filePath(name));
    const ModalWatcher messages;
    CWinMain window(store.get(), nullptr, CWinMain::Placement::Window,
                    TrackedWindow::tracking({.asksBeforeClosing = true}));
    window.findChild<QCheckBox *>()->click();
    QVERIFY(window.findChild<QToolButton *>("changes")->isVisible());
    store.reset();
    QVERIFY(!window.isVisible());
    QCOMPARE(messages.count(), 0);
}

void TestChangeReview::hidesWhatIsTypedHidden()
{
    StoreFixture files(
        {{"net", "PIN=1234\n"},
         {"net.original", "PIN=1234\n"},
         {"interface", describePage("<item type='edit' password='on'><key>net/untitled/PIN</key></item>")}});
    CWinMain window(&files.store(), nullptr, CWinMain::Placement::Window, TrackedWindow::tracking({}));
    QStringList shown;
    const auto read = [&shown](QWidget &dialog) {
        const auto *list = dialog.findChild<QTreeWidget *>();
        for (int column = 0; column < list->columnCount() && list->topLevelItem(0); ++column)
            shown << list->topLevelItem(0)->text(column);
    };
    const ModalWatcher found(read, "paravue::FindDialog");
    const ModalWatcher listed(read, "paravue::ReviewDialog");
    auto *field = window.findChild<QLineEdit *>();
    field->setFocus();
    for (const Qt::Key key : {Qt::Key_F, Qt::Key_R}) {
        window.activateWindow();
        QVERIFY(QTest::qWaitForWindowActive(&window));
        QTest::keyClick(field, key, Qt::ControlModifier);
        QTest::keyClicks(field, "5678");
    }
    QVERIFY(found.hasSeen() && listed.hasSeen());
    QVERIFY2(shown.contains("net/untitled/PIN"), qPrintable(shown.join('|')));
    QVERIFY2(!shown.join('|').contains("1234") && !shown.join('|').contains("5678"),
             qPrintable(shown.join('|')));
    window.endSession();
}

void TestChangeReview::showsTheListBeforeItSends()
{
    TrackedWindow window({.reviewBeforeSending = true});
    auto *ok = window.button<QPushButton>("OK");
    ok->click(); // nothing to show
    QCOMPARE(window.value("tmp/untitled/OK"), "pressed");
    window.fixture.store().setValue("tmp/untitled/OK/");
    window.type(window.name(), "new");
    Qt::Key key = Qt::Key_Escape;
    QStyleHints &hints = *QGuiApplication::styleHints();
    const InTheList review([&key, &hints](QTreeWidget &list) {
        for (const QPushButton *button : list.window()->findChildren<QPushButton *>())
            QVERIFY2(!button->icon().isNull(), qPrintable(button->text()));
        const int interval = hints.mouseDoubleClickInterval();
        hints.setMouseDoubleClickInterval(60'000);
        QTest::keyClick(&list, Qt::Key_Return); // the second one of an impatient user
        QVERIFY(list.isVisible());
        hints.setMouseDoubleClickInterval(interval);
        QTest::keyClick(&list, key);
    });
    ok->click();
    QCOMPARE(window.value("tmp/untitled/OK"), "");
    key = Qt::Key_Return;
    ok->click();
    QCOMPARE(review.count(), 2);
    QCOMPARE(window.value("tmp/untitled/OK"), "pressed");
}

void TestChangeReview::namesTheCamerasOfPointsThatWait()
{
    const auto calibration = [](const QByteArray &row, const QByteArray &section) {
        return "<item type='label' row='" + row +
               "'><text>Camera</text></item><item type='PTZCalibrator' row='" + row +
               "' column='1'><key>ptz/" + section + "/POINT</key></item>";
    };
    const auto page = [](const QByteArray &name, const QByteArray &cells) {
        return "<tab><name>" + name + "</name><item type='gridlayout'>" + cells + "</item></tab>";
    };
    DescribedWindow window(describe("<tabwidget>" + page("Gate", calibration("0", "gate")) +
                                    page("Yard", calibration("0", "east") + calibration("1", "west")) +
                                    "</tabwidget>"),
                           {{"ptz", ""}}, TrackedWindow::tracking({.asksBeforeClosing = true}));
    const QList<PtzCalibrator *> calibrators = window.window->findChildren<PtzCalibrator *>();
    QCOMPARE(calibrators.size(), 3);
    for (PtzCalibrator *calibrator : calibrators) {
        calibrator->slot_Set_PTZ_pos("0,0,0"); // perhaps the camera turns
        QTest::keyClick(calibrator, Qt::Key_Space);
    }
    window.window->reject();
    const QStringList asked = window.messages.texts();
    QCOMPARE(asked.size(), 1);
    for (const QString camera :
         {"Gate › Camera: ", "Yard › Camera (ptz/east/POINT): ", "Yard › Camera (ptz/west/POINT): "})
        QVERIFY2(asked.value(0).contains(camera + "Point 1 is set as soon as"), qPrintable(asked.join('|')));
}

QTEST_MAIN(TestChangeReview)
#include "tst_changereview.moc"
