#include "DescribedWindow.h"
#include "support/TestTable.h"

#include <QHeaderView>
#include <QHelpEvent>
#include <QLineEdit>
#include <QPushButton>
#include <QTextDocumentFragment>
#include <QToolTip>
#include <QTreeWidget>

using namespace paravue::test;

namespace
{

QByteArray call(const QByteArray &slot, const QByteArray &param, const QByteArray &state = {})
{
    return "<action type='call' slot='" + slot + "' param='" + param + "'" +
           (state.isEmpty() ? "" : " state='" + state + "'") + ">self</action>";
}

QByteArray button(const QByteArray &caption, int row, const QByteArray &actions)
{
    return "<item type='pushbutton' row='" + QByteArray::number(row) + "'><text>" + caption + "</text>" +
           actions + "</item>";
}

/// A dialog that says its tag.
QByteArray dialog(const QByteArray &tag)
{
    return "<box><title>" + tag + "</title><" + tag + "/></box>";
}

QByteArray userPage(const QByteArray &attribute = {})
{
    QByteArray dialogs;
    for (const char *error : {"namedouble", "editrights", "name", "pass", "lastuser"})
        dialogs += dialog(QByteArray("accessdlgerr_") + error);
    return describePage(
        "<item type='accesslist' " + attribute +
            "><column width='150'>Name</column><column>Rights</column><accesslevel>Guest</accesslevel>"
            "<accesslevel level='2'>Chief</accesslevel><key>users/untitled</key><accesslist/>"
            "<action type='enable' state='selected'>edit</action>"
            "<action type='disable' state='unselected'>edit</action>" +
            call("accessListSlot", "edit", "activated") + call("showDialog", "accessdlg", "activated") +
            call("accessListSlot", "remove", "delete") + "</item>" +
            button("New", 1, call("accessListSlot", "new") + call("showDialog", "accessdlg")) +
            button("Edit", 2, "<edit/>" + call("accessListSlot", "edit") + call("showDialog", "accessdlg")) +
            button("OK", 3, call("accessListSlot", "newok")) +
            button("Remove", 4, call("accessListSlot", "remove")),
        dialogs +
            "<user><title>User</title><accessdlg/><item type='gridlayout'>"
            "<item type='edit'><key>general/access/name</key></item>"
            "<item type='edit' row='1'><key>general/access/pass1</key></item>"
            "<item type='edit' row='2'><key>general/access/pass2</key></item>"
            "<item type='edit' row='3'><key>general/access/level</key></item>" +
            button("Accept", 4, call("accessListSlot", "newok")) + "</item></user>");
}

// Names and versions that sort in another way than they stand there.
const QByteArray Users = "CNT=3\nNAME0=carl\nPASSWD0=c\nLEVEL0=2\nNAME1=ann\nPASSWD1=a\nLEVEL1=1\n"
                         "NAME2=bob\nPASSWD2=b\nLEVEL2=0\nLOCK=5\n";
const QByteArray Packages =
    "PACKAGES=3\nPACKAGE_NAME_1=core\nPACKAGE_VER_1='4.10'\nPACKAGE_DESC_1='A core'\n"
    "PACKAGE_PRIORITY_1=Essential\nPACKAGE_NAME_2=mail\nPACKAGE_VER_2='4.9'\nPACKAGE_PRIORITY_2=optional\n"
    "PACKAGE_NAME_3=usb\nPACKAGE_PRIORITY_3=required\n";

QByteArray general(const QByteArray &login)
{
    return "[network]\nlogin='" + login + "'\n";
}

QTreeWidget &list(const DescribedWindow &window)
{
    return *window.widget<QTreeWidget>();
}

/// All rows, from top to bottom.
QString rows(const QTreeWidget &list)
{
    QStringList rows;
    for (int row = 0; row < list.topLevelItemCount(); ++row) {
        QStringList cells;
        for (int column = 0; column < list.columnCount(); ++column)
            cells << list.topLevelItem(row)->text(column);
        rows << cells.join(u'|');
    }
    return rows.join(u'/');
}

void click(QTreeWidget &list, const QString &name)
{
    const QList<QTreeWidgetItem *> found = list.findItems(name, Qt::MatchExactly);
    QCOMPARE(found.size(), 1);
    QTest::mouseClick(list.viewport(), Qt::LeftButton, {}, list.visualItemRect(found.first()).center());
}

void clickHeader(QTreeWidget &list, int column)
{
    QTest::mouseClick(list.header()->viewport(), Qt::LeftButton, {},
                      {list.header()->sectionViewportPosition(column) + 9, 5});
}

QString selected(const QTreeWidget &list)
{
    return list.selectedItems().isEmpty() ? QString() : list.selectedItems().first()->text(0);
}

/// The users file as the store has it: "CNT/3" and so on, by key.
QStringList storedUsers(DescribedWindow &window)
{
    return window.fixture.store().regexp_values("users/untitled/.*").replaceInStrings("users/untitled/", "");
}

/// The same of the lines of a file, of which the last ones count.
QStringList withLines(const QByteArray &lines)
{
    QMap<QString, QString> values;
    for (const QByteArray &line : lines.split('\n')) {
        if (!line.isEmpty())
            values[line.split('=').first()] = line.split('=').last();
    }
    QStringList result;
    for (auto value = values.cbegin(); value != values.cend(); ++value)
        result << value.key() + u'/' + value.value();
    return result;
}

void press(DescribedWindow &window, const QString &caption)
{
    QTest::mouseClick(window.button<QPushButton>(caption), Qt::LeftButton);
}

} // namespace

class TestLists : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void changesUsers_data();
    void changesUsers();
    void refusesLettersThatCannotBeSent();
    void keepsTheLevelOfTheOnlyEditor_data();
    void keepsTheLevelOfTheOnlyEditor();
    void keepsThePasswordWhenItIsTold_data();
    void keepsThePasswordWhenItIsTold();
    void forgetsWhatWasTypedInAnyDialog_data();
    void forgetsWhatWasTypedInAnyDialog();
    void staysWhoHeIsWhenHeIsRenamed_data();
    void staysWhoHeIsWhenHeIsRenamed();
    void leavesNothingOfARemovedUser();
    void editsInTheDialog();
    void movesByKeysAndSorts();
    void keepsWhatItCannotShow_data();
    void keepsWhatItCannotShow();
    void asksBeforeAPackageGoes_data();
    void asksBeforeAPackageGoes();
    void marksRowsOfATable();
    void refusesUnknownTags();
};

void TestLists::changesUsers_data()
{
    QTest::addColumn<QString>("login");
    QTest::addColumn<QString>("picked"); // empty: a new user
    QTest::addColumn<QString>("typed");  // name, both passwords, level; empty: the user is removed
    QTest::addColumn<QString>("refusal");
    QTest::addColumn<QByteArray>("changed"); // lines that differ

    const auto row = [](const char *name, const char *login, const char *picked, const char *typed,
                        const char *refusal, const QByteArray &changed = {}) {
        QTest::newRow(name) << login << picked << typed << refusal << changed;
    };
    const QByteArray digest = "187ef4436122d1cc2f40dc2b92f0eba0"; // of "ab"
    row("a new one", "carl", "", "dora,ab,ab,2", "", "CNT=4\nNAME3=dora\nPASSWD3=" + digest + "\nLEVEL3=2");
    row("a change", "carl", "ann", "anna,ab,ab,0", "", "NAME1=anna\nPASSWD1=" + digest + "\nLEVEL1=0");
    row("the same name again", "carl", "ann", "ann,ab,ab,1", "", "PASSWD1=" + digest);
    row("no password", "carl", "ann", "ann,,,1", "", "PASSWD1=d41d8cd98f00b204e9800998ecf8427e");
    row("oneself is lowered while another may edit", "carl", "carl", "carl,ab,ab,0", "",
        "PASSWD0=" + digest + "\nLEVEL0=0");
    row("a double name comes before all", "bob", "", "ann,a,b,2", "namedouble");
    row("the name of another", "carl", "bob", "ann,a,a,0", "namedouble");
    row("rights come before the name", "ann", "", ",a,b,2", "editrights");
    row("the name comes before the password", "ann", "", ",a,b,1", "name");
    row("two passwords", "ann", "", "dora,a,A,1", "pass");
    row("a higher one is edited", "ann", "carl", "carl,a,a,1", "editrights");
    row("somebody is raised above oneself", "ann", "bob", "bob,a,a,2", "editrights");
    row("level 0 changes its password", "bob", "bob", "bob,ab,ab,0", "", "PASSWD2=" + digest);
    row("level 0 changes its name", "bob", "bob", "bobby,ab,ab,0", "editrights");
    row("level 0 adds somebody", "bob", "", "dora,ab,ab,0", "editrights");
    row("a stranger may do all", "eve", "", "dora,ab,ab,9", "",
        "CNT=4\nNAME3=dora\nPASSWD3=" + digest + "\nLEVEL3=9");
    row("one is removed", "carl", "ann", "", "",
        "CNT=2\nNAME1=bob\nPASSWD1=b\nLEVEL1=0\nNAME2=\nPASSWD2=\nLEVEL2=");
    row("oneself is removed", "ann", "ann", "", "editrights");
    row("a higher one is removed", "ann", "carl", "", "editrights");
    row("level 0 removes somebody", "bob", "ann", "", "editrights");
    row("nobody is picked", "carl", "", "", "");
}

void TestLists::changesUsers()
{
    QFETCH(QString, login);
    QFETCH(QString, picked);
    QFETCH(QString, typed);
    QFETCH(QString, refusal);
    QFETCH(QByteArray, changed);
    DescribedWindow window(userPage(), {{"users", Users}, {"general", general(login.toUtf8())}});
    ModalWatcher dialogs({}, "QDialog");
    if (!picked.isEmpty())
        click(list(window), picked);
    const QStringList fields = typed.split(u',');
    const bool removes = fields.size() == 1;
    if (!removes) {
        window.window->accessListSlot(picked.isEmpty() ? "new" : "edit");
        for (int i = 0; i < 4; ++i)
            window.window->setValue("general/access/" + QStringList{"name", "pass1", "pass2", "level"}[i] +
                                    u'/' + fields[i]);
    }
    press(window, removes ? "Remove" : "OK");
    QCOMPARE(dialogs.title(), refusal.isEmpty() ? refusal : "accessdlgerr_" + refusal);
    QCOMPARE(storedUsers(window), withLines(Users + changed));
    QCOMPARE(window.value("general/access/pass1"), refusal.isEmpty() ? "" : fields.value(1));
    QCOMPARE(window.messages.texts(), QStringList());
}

/// Half of a surrogate pair stands for a letter that the local encoding lacks: here that is UTF-8.
void TestLists::refusesLettersThatCannotBeSent()
{
    DescribedWindow window(userPage(), {{"users", Users}, {"general", general("carl")}});
    window.window->accessListSlot("new");
    const QString password = QString("pass") + QChar(0xd800);
    for (const QString &value : {QString("name/dora"), "pass1/" + password, "pass2/" + password})
        window.window->setValue("general/access/" + value);
    press(window, "OK");
    QCOMPARE(window.messages.texts(),
             QStringList("The password has letters that this computer cannot send."));
    QCOMPARE(storedUsers(window), withLines(Users));
}

void TestLists::keepsTheLevelOfTheOnlyEditor_data()
{
    const TestTable<QString, QString, QString, bool> row("login", "picked", "level", "isRefused");
    row("lowers himself", "carl", "carl", "0", true);
    row("no number", "carl", "carl", "", true);
    row("lowers himself by one", "carl", "carl", "1", true);
    row("keeps his level", "carl", "carl", "2", false);
    row("raises another", "carl", "bob", "1", false);
    row("a stranger lowers him", "eve", "carl", "0", false);
}

void TestLists::keepsTheLevelOfTheOnlyEditor()
{
    QFETCH(QString, login);
    QFETCH(QString, picked);
    QFETCH(QString, level);
    QFETCH(bool, isRefused);
    const QByteArray users = "CNT=2\nNAME0=carl\nPASSWD0=c\nLEVEL0=2\nNAME1=bob\nPASSWD1=b\nLEVEL1=0\n";
    DescribedWindow window(userPage(), {{"users", users}, {"general", general(login.toUtf8())}});
    const ModalWatcher dialogs({}, "QDialog");
    click(list(window), picked);
    window.window->accessListSlot("edit");
    window.window->setValue("general/access/level/" + level);
    press(window, "OK");
    QCOMPARE(dialogs.title(), isRefused ? "accessdlgerr_editrights" : "");
    const QString number = picked == "carl" ? "0" : "1";
    QCOMPARE(window.value("users/untitled/LEVEL" + number), isRefused ? "2" : level);
}

void TestLists::keepsThePasswordWhenItIsTold_data()
{
    const QByteArray empty = "d41d8cd98f00b204e9800998ecf8427e";
    const TestTable<QByteArray, bool, QString, QByteArray> row("attributes", "isNew", "typed", "stored");
    row("without the attribute", "", false, "", empty);
    row("told not to", "keeppassword='false'", false, "", empty);
    row("told", "keeppassword='true'", false, "", "a");
    row("a password is typed", "keeppassword='true'", false, "ab", "187ef4436122d1cc2f40dc2b92f0eba0");
    row("a new user", "keeppassword='true'", true, "", empty);
    row("as typed", "keeppassword='true' clearpassword='true'", false, "", "a");
}

void TestLists::keepsThePasswordWhenItIsTold()
{
    QFETCH(QByteArray, attributes);
    QFETCH(bool, isNew);
    QFETCH(QString, typed);
    DescribedWindow window(userPage(attributes), {{"users", Users}, {"general", general("carl")}});
    if (!isNew)
        click(list(window), "ann");
    window.window->accessListSlot(isNew ? "new" : "edit");
    QCOMPARE(window.value("general/access/keep"),
             !isNew && attributes.contains("keeppassword='true'") ? "on" : "off");
    for (const QString &value : {QString("name/anna"), "pass1/" + typed, "pass2/" + typed})
        window.window->setValue("general/access/" + value);
    press(window, "OK");
    QTEST(window.value(isNew ? "users/untitled/PASSWD3" : "users/untitled/PASSWD1").toUtf8(), "stored");
}

void TestLists::forgetsWhatWasTypedInAnyDialog_data()
{
    const TestTable<QString, bool> row("tag", "isForgotten");
    row("its own tag", "accessdlg", true);
    row("another tag", "user_of_the_list", true);
    row("another dialog", "password_only", true);
    row("a default in the address", "password_with_default", true);
    row("no passwords in it", "help", false);
}

void TestLists::forgetsWhatWasTypedInAnyDialog()
{
    QFETCH(QString, tag);
    const QByteArray windows =
        "<user><accessdlg/><user_of_the_list/></user>"
        "<other><password_only/><item type='edit'><key>general/access/pass2</key></item></other>"
        "<usual><password_with_default/><item type='edit'><key>general/access/pass1/</key></item></usual>" +
        dialog("help");
    DescribedWindow window(describePage("", windows), {{"general", ""}});
    const ModalWatcher dialogs(
        [&](QWidget &) {
            window.window->setValue("general/access/pass1/secret");
            window.window->setValue("general/access/pass2/secret");
        },
        "QDialog");
    window.window->showDialog(tag);
    QCOMPARE(dialogs.count(), 1);
    QTEST(window.value("general/access/pass1").isEmpty() && window.value("general/access/pass2").isEmpty(),
          "isForgotten");
}

void TestLists::staysWhoHeIsWhenHeIsRenamed_data()
{
    const QByteArray renamed = Users + "NAME1=anna\nPASSWD1=d41d8cd98f00b204e9800998ecf8427e\n";
    const TestTable<QByteArray, QString, bool> row("fetched", "level", "isRefused");
    row("nothing is fetched", "", "2", true);
    row("the old name is fetched", Users, "2", true);
    row("the new name is fetched", renamed, "2", true);
    row("the new name and other users are fetched", renamed + "CNT=4\nNAME3=dora\nLEVEL3=0\n", "2", true);
    // The level of the new name is not enough then.
    row("the old name is fetched, and another has the new one",
        Users + "CNT=4\nNAME3=anna\nPASSWD3=x\nLEVEL3=0\n", "1", false);
}

void TestLists::staysWhoHeIsWhenHeIsRenamed()
{
    QFETCH(QByteArray, fetched);
    QFETCH(QString, level);
    QFETCH(bool, isRefused);
    DescribedWindow window(userPage(), {{"users", Users}, {"general", general("ann")}});
    const ModalWatcher dialogs({}, "QDialog");
    const auto edit = [&](const QString &user, const QString &typed) {
        click(list(window), user);
        window.window->accessListSlot("edit");
        window.window->setValue("general/access/" + typed);
        press(window, "OK");
    };
    edit("ann", "name/anna");
    QCOMPARE(rows(list(window)), "carl|Chief/anna|1/bob|Guest");
    for (const QString &value : withLines(fetched))
        window.fixture.store().setValue("users/untitled/" + value);
    window.window->onLoadDone();
    edit("bob", "level/" + level);
    QCOMPARE(dialogs.title(), isRefused ? "accessdlgerr_editrights" : "");
    QCOMPARE(window.value("users/untitled/LEVEL2"), isRefused ? "0" : level);
}

void TestLists::leavesNothingOfARemovedUser()
{
    // This recorder counts from 1, and keeps passwords as they are typed.
    DescribedWindow window(
        userPage("clearpassword='true'"),
        {{"general", {}},
         {"users",
          "[ untitled ]\r\n; by hand\r\nCNT=2\nNAME1=ann\nPASSWD1=sesame\nLEVEL1=1\nHOME1 = 'a b'\r\n"
          "NAME2=bob\nPASSWD2=b\nLEVEL2=2\n\nodd line\n[ x ]\r\nNAME2 = 'y'\r\n"}});
    ModalWatcher dialogs({}, "QDialog");
    click(list(window), "ann");
    press(window, "Remove");
    QCOMPARE(selected(list(window)), "bob");
    press(window, "Remove");
    QCOMPARE(dialogs.title(), "accessdlgerr_lastuser");
    window.window->accessListSlot("edit");
    for (const char *field : {"pass1/o", "pass2/o"})
        window.window->setValue(QString("general/access/") + field);
    press(window, "OK");
    window.fixture.store().flush();
    QCOMPARE(window.fixture.content("users"),
             "[ untitled ]\r\n; by hand\r\nCNT = 1\r\nNAME1 = 'bob'\r\nPASSWD1 = 'o'\r\nLEVEL1 = 2\r\nHOME1 "
             "= 'a b'\r\n"
             "NAME2 = \r\nPASSWD2 = \r\nLEVEL2 = \r\n\r\nodd line\r\n[ x ]\r\nNAME2 = 'y'\r\n");
}

void TestLists::editsInTheDialog()
{
    DescribedWindow window(userPage(), {{"users", Users}, {"general", general("carl")}});
    const auto field = [](QWidget &dialog, int i) { return dialog.findChildren<QLineEdit *>().value(i); };
    const auto passwords = [&] {
        return window.value("general/access/pass1") + window.value("general/access/pass2");
    };
    QStringList seen;
    QString password;
    const auto fillIn = [&](QWidget &dialog) {
        for (int i : {0, 1, 3})
            seen << field(dialog, i)->text();
        QTest::keyClicks(field(dialog, 0), "e");
        QTest::keyClicks(field(dialog, 1), password);
        QTest::keyClicks(field(dialog, 2), "x");
        if (password.isEmpty())
            return; // the user gives up
        QTest::mouseClick(dialog.findChild<QPushButton *>(), Qt::LeftButton);
        // A refused one stays for a correction.
        QCOMPARE(dialog.isVisible(), password != "x");
    };
    const ModalWatcher dialogs(fillIn, "QDialog");
    const ModalWatcher refusals({}, "QDialog"); // the first one is still filling in
    QVERIFY(!window.button<QPushButton>("Edit")->isEnabled());
    click(list(window), "ann");
    QVERIFY(window.button<QPushButton>("Edit")->isEnabled());
    QTest::keyClick(&list(window), Qt::Key_Return);
    QCOMPARE(seen, (QStringList{"ann", "", "1"}));
    QCOMPARE(passwords(), "");
    QCOMPARE(storedUsers(window), withLines(Users));

    seen.clear();
    password = "x";
    const QPoint ann =
        list(window).visualItemRect(list(window).findItems("ann", Qt::MatchExactly)[0]).center();
    QTest::mouseDClick(list(window).viewport(), Qt::LeftButton, {}, ann);
    QCOMPARE(seen, (QStringList{"ann", "", "1"}));
    QCOMPARE(rows(list(window)), "carl|Chief/anne|1/bob|Guest");
    QCOMPARE(selected(list(window)), "anne");

    seen.clear();
    password = "y";
    press(window, "New");
    QCOMPARE(seen, (QStringList{"", "", "1"}));
    QCOMPARE(dialogs.count(), 3);
    QCOMPARE(refusals.title(), "accessdlgerr_pass");
    QCOMPARE(passwords(), "");
    QCOMPARE(list(window).topLevelItemCount(), 3);
}

void TestLists::movesByKeysAndSorts()
{
    DescribedWindow window(userPage(), {{"users", Users}, {"general", {}}});
    QTreeWidget &users = list(window);
    users.setFocus(Qt::TabFocusReason);
    QTest::keyClick(&users, Qt::Key_Home);
    QCOMPARE(selected(users), "carl");
    QTest::keyClick(&users, Qt::Key_Down);
    QCOMPARE(selected(users), "ann");
    QTest::keyClick(&users, Qt::Key_Up);
    QCOMPARE(selected(users), "carl");
    QTest::keyClick(&users, Qt::Key_End);
    QCOMPARE(selected(users), "bob");
    QTest::keyClick(&users, Qt::Key_PageUp);
    QCOMPARE(selected(users), "carl");
    QTest::keyClick(&users, Qt::Key_PageDown);
    QCOMPARE(selected(users), "bob");
    QTest::keyClicks(&users, "ca");
    QCOMPARE(selected(users), "carl");
    clickHeader(users, 0);
    QCOMPARE(rows(users), "ann|1/bob|Guest/carl|Chief");
    clickHeader(users, 0);
    clickHeader(users, 0); // the third time: as they stand in the file
    QCOMPARE(rows(users), "carl|Chief/ann|1/bob|Guest");
    clickHeader(users, 1); // by the level, not by its caption
    QCOMPARE(rows(users), "bob|Guest/ann|1/carl|Chief");
    QCOMPARE(storedUsers(window), withLines(Users));
    QTest::keyClick(&users, Qt::Key_Home);
    QTest::keyClick(&users, Qt::Key_Delete);
    QCOMPARE(selected(users), "ann");
    QCOMPARE(storedUsers(window), withLines(Users + "CNT=2\nNAME2=\nPASSWD2=\nLEVEL2="));
}

void TestLists::keepsWhatItCannotShow_data()
{
    QTest::addColumn<QByteArray>("users");
    QTest::addColumn<int>("shown");
    QTest::addColumn<QString>("message");
    QTest::newRow("none") << QByteArray("CNT=0\n") << 0 << "";
    QTest::newRow("no number") << QByteArray("CNT=many\nNAME0=ann\n") << 0 << "";
    QTest::newRow("less than none") << QByteArray("CNT=-7\nNAME0=ann\nPASSWD0=a\n") << 0 << "";
    QTest::newRow("more than there is room for")
        << QByteArray("CNT=2000000000\nNAME0=ann\nPASSWD0=a\n") << 10'000
        << "A list has 2000000000 rows; only the first 10000 are shown";
}

void TestLists::keepsWhatItCannotShow()
{
    QFETCH(QByteArray, users);
    QFETCH(int, shown);
    QFETCH(QString, message);
    DescribedWindow window(userPage(), {{"users", users}, {"general", {}}});
    QCOMPARE(list(window).topLevelItemCount(), shown);
    QCOMPARE(window.messages.texts(), message.isEmpty() ? QStringList() : QStringList(message));
    window.settle();
    press(window, "Remove");
    QCOMPARE(storedUsers(window), withLines(users));
    QCOMPARE(window.messages.texts().value(1),
             message.isEmpty() ? "" : "The list of users is not complete, so it cannot be changed");
}

void TestLists::asksBeforeAPackageGoes_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<QString>("dialog");
    QTest::newRow("none") << ""
                          << "";
    QTest::newRow("needed, in other letters") << "core"
                                              << "softcantdelete";
    QTest::newRow("optional") << "mail"
                              << "softdodelete";
    QTest::newRow("needed") << "usb"
                            << "softcantdelete";
}

void TestLists::asksBeforeAPackageGoes()
{
    QFETCH(QString, name);
    QFETCH(QString, dialog);
    DescribedWindow window(describePage("<item type='softlist'><key>soft/untitled</key><softlist/>" +
                                            call("softListSlot", "remove", "delete") + "</item>",
                                        ::dialog("softcantdelete") + ::dialog("softdodelete")),
                           {{"soft", Packages}, {"general", {}}});
    QTreeWidget &packages = list(window);
    clickHeader(packages, 1);
    QCOMPARE(rows(packages), "usb|||required/mail|4.9||optional/core|4.10|A core|Essential");
    ModalWatcher dialogs({}, "QDialog");
    if (!name.isEmpty())
        click(packages, name);
    QTest::keyClick(&packages, Qt::Key_Delete);
    QCOMPARE(dialogs.title(), dialog);
    QCOMPARE(window.value("general/remove_package/name"), dialog == "softdodelete" ? name : "");
    QCOMPARE(packages.topLevelItemCount(), 3);
}

void TestLists::marksRowsOfATable()
{
    DescribedWindow window(describePage("<item type='list' width='300'><column width='60'>Name</column>"
                                        "<column_source>users/untitled/NAME</column_source>"
                                        "<row_count>users/untitled/CNT</row_count><column/></item>"),
                           {{"users", QByteArray(Users).replace("=ann", "='ann of the long name'")}});
    QTreeWidget &table = list(window);
    table.setFocus(Qt::TabFocusReason);
    const QList<std::pair<Qt::Key, QString>> steps{
        {Qt::Key_End, "bob"},     {Qt::Key_Up, "ann of the long name"},
        {Qt::Key_Home, "carl"},   {Qt::Key_PageDown, "bob"},
        {Qt::Key_PageUp, "carl"}, {Qt::Key_Down, "ann of the long name"},
        {Qt::Key_C, "carl"}};
    for (const auto &[key, name] : steps) {
        QTest::keyClick(&table, key);
        QCOMPARE(selected(table), name);
    }
    click(table, "bob");
    QCOMPARE(selected(table), "bob");
    for (const char *name : {"bob", "ann of the long name"}) {
        const QPoint place = table.visualItemRect(table.findItems(name, Qt::MatchExactly)[0]).topLeft();
        QHelpEvent help(QEvent::ToolTip, place + QPoint(5, 5), table.mapToGlobal(place));
        QApplication::sendEvent(table.viewport(), &help);
        QCOMPARE(QTextDocumentFragment::fromHtml(QToolTip::text()).toPlainText(),
                 name == QString("bob") ? "" : name);
    }
}

void TestLists::refusesUnknownTags()
{
    DescribedWindow window(describePage("<item type='label'><accesslist/></item>"));
    window.window->accessListSlot("Edit");
    window.settle();
    window.window->softListSlot("new");
    window.settle();
    window.window->accessListSlot("edit");
    QCOMPARE(window.messages.texts(), (QStringList{"Unknown CWinMain::accessListSlot tag \"Edit\"",
                                                   "Unknown CWinMain::softListSlot tag \"new\"",
                                                   "No list of users has the tag \"accesslist\""}));
}

QTEST_MAIN(TestLists)
#include "tst_lists.moc"
