#include "DescribedWindow.h"
#include "store/OrbSettings.h"
#include "support/FullDisk.h"
#include "ui/binding/FileAccessGuard.h"
#include "ui/commands/FileCommands.h"

#include <QApplication>
#include <QClipboard>
#include <QComboBox>
#include <QFileDialog>
#include <QLineEdit>
#include <QPushButton>
#include <QSignalSpy>

using namespace paravue;
using namespace paravue::test;

namespace
{

const QByteArray Page =
    "<item type='edit'><key>net/untitled/NAME</key></item>"
    "<item type='edit' row='1'><key>tmp/untitled/PATH</key><typed/></item>"
    "<item type='pushbutton' row='2'><text>Type</text><action type='call' "
    "param='/nowhere/described'>typed</action></item>"
    "<item type='pushbutton' row='7'><text>Paste</text><action type='call' slot='paste'>typed</action></item>"
    "<item type='pushbutton' row='3'><text>Write</text><action type='call' slot='setValue' "
    "param='tmp/untitled/PATH//nowhere/described'>self</action></item>"
    "<item type='pushbutton' row='9'><text>Break</text><action type='call' slot='setValue' "
    "param=\"tmp/untitled/A/1'&#10;PATH = '/nowhere/described\">self</action></item>"
    "<item type='pushbutton' row='10'><text>Blanks</text><action type='call' slot='setValue' "
    "param='tmp/untitled/ PATH //nowhere/described'>self</action></item>"
    "<item type='dropdown' row='4'><text>one<key>tmp/untitled/PATH//a</key></text>"
    "<text>two<key>tmp/untitled/PATH//nowhere/described</key></text></item>"
    "<item type='setup' row='5'><recorder/></item>"
    "<item type='pushbutton' row='6'><text>Install</text><action type='call' slot='callSetup' "
    "param='soft_istall_packet,tmp/untitled/PATH'>recorder</action></item>"
    "<item type='pushbutton' row='8'><text>Install as well</text><action type='call' slot=' callSetup ' "
    "param='soft_istall_packet,tmp/untitled/PATH'>recorder</action></item>";

const QByteArray Rest = "<settings><key>net/untitled/NAME</key><group><key>net/untitled/PORT/80</key></group>"
                        "<key>net/untitled/NAME/again</key><regexp_key>cam/cam\\d/.*</regexp_key></settings>"
                        "<box><title>Full</title><filewriteerror/></box>";

const DescribedWindow::Files Files{{"net", "NAME='Вход'\r\nOTHER=1\r\n"},
                                   {"cam", "[ cam0 ]\r\nTEXT=\"it's\"\r\nRATE=25\r\n[ misc ]\r\nTEXT=x\r\n"},
                                   {"tmp", "A=1\r\n"}};

struct FileWindow : DescribedWindow {
    explicit FileWindow(Files files = ::Files) : DescribedWindow(describePage(Page, Rest), std::move(files))
    {
        window->setPathQuestion([this](const QString &path, FileUse use) {
            questions << (use == FileUse::Read ? "read " : "write ") + path;
            return allow;
        });
    }

    void press(const QString &text) { QTest::mouseClick(button<QPushButton>(text), Qt::LeftButton); }
    QString path(const QString &name) const { return folder.filePath(name); }
    void setPath(const QString &path) { fixture.store().setValue("tmp/untitled/PATH/" + path); }

    QTemporaryDir folder;
    QStringList questions;
    bool allow = true;
};

QByteArray content(const QString &path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray("cannot be opened");
}

} // namespace

class TestFileCommands : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void reportsWrongTexts_data();
    void reportsWrongTexts();
    void letsTheUserChoose();
    void takesTheFirstExtension_data();
    void takesTheFirstExtension();
    void writesAndReadsSettings();
    void showsTheDialogOfAFailedWrite();
    void keepsTheOldFileOnAFullDisk_data();
    void keepsTheOldFileOnAFullDisk();
    void copiesAFile();
    void asksAboutPathsOfTheRecorder_data();
    void asksAboutPathsOfTheRecorder();
    void guardsTheInstallation();
    void asksInABox();
};

void TestFileCommands::reportsWrongTexts_data()
{
    QTest::addColumn<QByteArray>("slot");
    QTest::addColumn<QString>("param");
    QTest::addColumn<QString>("message");
    const auto row = [](const char *slot, const char *param, const char *message) {
        QTest::addRow("%s(%s)", slot, param) << QByteArray(slot) << QString(param) << QString(message);
    };
    row("fileDialog", "open,Title,filter", "Wrong CWinMain::fileDialog param \"open,Title,filter\"");
    row("fileDialog", "", "Wrong CWinMain::fileDialog param \"\"");
    row("fileDialog", "close,%1,%0,tmp/untitled/PATH", "Wrong CWinMain::fileDialog action \"close\"");
    row("settingsSlot", "write,%1", "Wrong CWinMain::settingsSlot param \"write,%1\"");
    row("settingsSlot", "write,tmp/untitled/PATH,nowhere",
        "Wrong CWinMain::settingsSlot param \"write,tmp/untitled/PATH,nowhere\"");
    row("settingsSlot", "read,tmp/untitled/A,settings,more",
        "Wrong CWinMain::settingsSlot param \"read,tmp/untitled/A,settings,more\"");
    row("settingsSlot", "send,tmp/untitled/PATH,settings", "Wrong CWinMain::settingsSlot action \"send\"");
    row("settingsSlot", "read,tmp/untitled/A,settings", "Can't open file\"1\"");
    row("saveFileAs", "net", "Wrong arguments CWinMain::saveFileAs(net)");
    row("saveFileAs", "net,a,b", "Wrong arguments CWinMain::saveFileAs(net,a,b)");
    row("saveFileAs", "net,tmp/untitled/PATH", "Can't open file\"\"");
    row("saveFileAs", "none,tmp/untitled/PATH", "File \"none\" does not exist");
}

void TestFileCommands::reportsWrongTexts()
{
    QFETCH(QByteArray, slot);
    QFETCH(QString, param);
    QFETCH(QString, message);
    FileWindow window;
    QVERIFY(QMetaObject::invokeMethod(window.window.get(), slot, Q_ARG(QString, param)));
    QCOMPARE(window.messages.texts(), QStringList(message));
}

void TestFileCommands::letsTheUserChoose()
{
    FileWindow window;
    QDir(window.folder.path()).mkdir("sub");
    window.setPath(window.path("sub/old.ini"));
    QStringList seen;
    ModalWatcher dialogs(
        [&](QWidget &shown) {
            auto &dialog = static_cast<QFileDialog &>(shown);
            seen << dialog.directory().dirName() << dialog.nameFilters().join('|') << dialog.defaultSuffix();
            window.window->fileDialog("open,Second,(*),net/untitled/NAME"); // one at a time
            if (dialogs.count() == 1)
                return; // closed by its own button
            auto *name = dialog.findChild<QLineEdit *>("fileNameEdit");
            name->selectAll();
            QTest::keyClicks(name, "new");
            QTest::keyClick(name, Qt::Key_Return);
        },
        "QFileDialog");
    for (int round = 0; round < 2; ++round)
        window.window->fileDialog("save,Export,Settings (*.ini);;Text, plain (*.txt),tmp/untitled/PATH");
    const QStringList once{"sub", "Settings (*.ini)|Text, plain (*.txt)", "ini"};
    QCOMPARE(seen, once + once);
    QCOMPARE(dialogs.title(), "Export");
    QCOMPARE(window.value("tmp/untitled/PATH"), window.path("sub/new.ini"));
    QCOMPARE(window.widget<QLineEdit>(1)->text(), window.path("sub/new.ini"));
}

void TestFileCommands::takesTheFirstExtension_data()
{
    QTest::addColumn<QString>("filter");
    QTest::addColumn<QString>("suffix");
    QTest::newRow("two filters") << "Text (*.txt);;All (*.*)"
                                 << "txt";
    QTest::newRow("two extensions") << "Packages (*.deb *.tar.gz)"
                                    << "deb";
    QTest::newRow("behind a comma") << "Text, plain (*.txt)"
                                    << "";
    QTest::newRow("everything") << "All (*)"
                                << "";
}

void TestFileCommands::takesTheFirstExtension()
{
    QFETCH(QString, filter);
    QTEST(defaultSuffix(filter), "suffix");
}

void TestFileCommands::writesAndReadsSettings()
{
    FileWindow window;
    const QString path = window.path("export.ini");
    window.setPath(path);
    window.window->settingsSlot("write,tmp/untitled/PATH,settings");
    const QByteArray written = "net/untitled/NAME = 'Вход'\r\nnet/untitled/PORT = '80'\r\n"
                               "cam/cam0/RATE = '25'\r\ncam/cam0/TEXT = \"it's\"\r\n";
    QCOMPARE(content(path), written);
    OrbSettings reader(path);
    QCOMPARE(reader.value("untitled/cam/cam0/TEXT").toString(), "it's");

    // What is not listed stays, and the controls show what was read.
    QFile file(path);
    QVERIFY(file.open(QIODevice::Append));
    file.write("net/untitled/OTHER = '2'\r\ncam/misc/TEXT = 'y'\r\ncam/cam7/NEW = ''\r\nNAME = 'z'\r\n[ a ]");
    file.close();
    window.fixture.store().setValue("net/untitled/NAME/changed");
    window.fixture.store().setValue("cam/cam0/RATE/1");
    window.window->settingsSlot("read, tmp/untitled/PATH, settings");
    QCOMPARE(window.widget<QLineEdit>()->text(), "Вход");
    QCOMPARE(window.value("cam/cam0/RATE"), "25");
    QCOMPARE(window.value("cam/cam7/NEW/default"), "");
    QCOMPARE(window.value("net/untitled/OTHER") + window.value("cam/misc/TEXT"), "1x");

    // A value without a line that reads back is left out and named.
    window.fixture.store().setValue("cam/cam0/RATE/\"it's\"");
    window.fixture.store().setValue("cam/cam7/NEW/two\nlines");
    window.window->settingsSlot("write,tmp/untitled/PATH,settings");
    QCOMPARE(content(path), QByteArray(written).replace("cam/cam0/RATE = '25'\r\n", ""));
    QVERIFY(window.messages.texts().value(0).endsWith("cam/cam0/RATE, cam/cam7/NEW"));
}

void TestFileCommands::showsTheDialogOfAFailedWrite()
{
    FileWindow window;
    window.setPath(window.folder.path()); // a folder
    ModalWatcher dialogs({}, "QDialog");
    window.window->settingsSlot("write,tmp/untitled/PATH,settings");
    QCOMPARE(dialogs.title(), "Full");
    QCOMPARE(window.messages.texts(), QStringList());
}

void TestFileCommands::keepsTheOldFileOnAFullDisk_data()
{
    QTest::addColumn<QString>("slot");
    QTest::addColumn<QString>("param");
    QTest::newRow("settings") << "settingsSlot"
                              << "write,tmp/untitled/PATH,settings";
    QTest::newRow("copy") << "saveFileAs"
                          << "net,tmp/untitled/PATH";
}

void TestFileCommands::keepsTheOldFileOnAFullDisk()
{
    SKIP_WITHOUT_FULL_DISK();
    QFETCH(QString, slot);
    QFETCH(QString, param);
    FileWindow window;
    QFile file(window.path("export.ini"));
    QVERIFY(file.open(QIODevice::WriteOnly) && file.write("old") == 3);
    file.close();
    window.setPath(file.fileName());
    ModalWatcher dialogs({}, "QDialog");
    {
        const FullDisk full;
        QVERIFY(QMetaObject::invokeMethod(window.window.get(), qPrintable(slot), Q_ARG(QString, param)));
    }
    QCOMPARE(content(file.fileName()), "old");
    QCOMPARE(QDir(window.folder.path()).entryList(QDir::Files | QDir::Hidden), QStringList("export.ini"));
    QCOMPARE(dialogs.count() + window.messages.count(), 1);
}

void TestFileCommands::copiesAFile()
{
    FileWindow window;
    window.setPath(window.path("copy"));
    window.window->saveFileAs("net,tmp/untitled/PATH");
    window.window->saveFileAs("cam,tmp/untitled/PATH");
    QCOMPARE(content(window.path("copy")), Files["cam"]);
    QCOMPARE(QDir(window.folder.path()).entryList(QDir::Files), QStringList("copy"));
    QCOMPARE(window.questions + window.messages.texts(), QStringList());
}

void TestFileCommands::asksAboutPathsOfTheRecorder_data()
{
    QTest::addColumn<QString>("source");
    QTest::addColumn<bool>("asked");
    QTest::newRow("the host") << "host" << false;
    QTest::newRow("the host, through the window") << "window" << false;
    QTest::newRow("typed") << "typed" << false;
    QTest::newRow("a field filled by an action") << "Type" << true;
    QTest::newRow("pasted by an action") << "Paste" << true;
    QTest::newRow("written by an action") << "Write" << true;
    QTest::newRow("entry of a list") << "dropdown" << true;
    QTest::newRow("a second line by an action") << "Break" << true;
    QTest::newRow("another key by an action") << "Blanks" << true;
    QTest::newRow("fetched") << "fetched" << true;
    QTest::newRow("fetched and changed by a directive") << "directive" << true;
    QTest::newRow("default of an address") << "default" << true;
}

void TestFileCommands::asksAboutPathsOfTheRecorder()
{
    QFETCH(QString, source);
    QFETCH(bool, asked);
    auto files = Files;
    if (source == "fetched")
        files["tmp"] = files["tmp.original"] = "PATH='/nowhere/described'\r\n";
    if (source == "directive") {
        files["tmp"] = "PATH='/nowhere/described'\r\n";
        files["tmp.original"] = "PATH='x'\r\n";
    }
    FileWindow window(files);
    QApplication::clipboard()->setText("/nowhere/described");
    if (source == "host")
        window.setPath("/nowhere/described");
    else if (source == "window")
        window.window->setValue("tmp/untitled/PATH//nowhere/described");
    else if (source == "typed")
        QTest::keyClicks(window.widget<QLineEdit>(1), "/nowhere/described");
    else if (source == "dropdown")
        QTest::keyClick(window.widget<QComboBox>(), Qt::Key_Down);
    else if (source != "fetched" && source != "directive" && source != "default")
        window.press(source);
    window.fixture.store().flush(); // and what was written is read again
    const QString address =
        source == "default" ? "tmp/untitled/NONE//nowhere/described" : "tmp/untitled/PATH";
    QCOMPARE(window.value(address), "/nowhere/described");
    // Each use is a question of its own, and one that was allowed is not asked again.
    for (int round = 0; round < 2; ++round) {
        window.window->settingsSlot("read," + address + ",settings");
        window.window->saveFileAs("net," + address);
        window.settle();
    }
    QCOMPARE(window.questions,
             asked ? QStringList({"read /nowhere/described", "write /nowhere/described"}) : QStringList());
}

void TestFileCommands::guardsTheInstallation()
{
    FileWindow window;
    window.allow = false;
    QSignalSpy installed(&window.fixture.store(), &OrbSetup::progress);
    window.press("Write");
    window.press("Install");
    window.press("Install as well");
    QCOMPARE(window.questions, QStringList(2, "read /nowhere/described"));
    QCOMPARE(installed.size(), 0);
    window.setPath("/chosen");
    window.press("Install");
    QCOMPARE(installed.size(), 1);
}

void TestFileCommands::asksInABox()
{
    DescribedWindow window(describePage(Page, Rest), Files);
    QTest::mouseClick(window.button<QPushButton>("Write"), Qt::LeftButton);
    window.window->saveFileAs("net,tmp/untitled/PATH");
    QCOMPARE(window.messages.count(), 1); // closing it is no
    QVERIFY(window.messages.texts().first().contains("/nowhere/described"));
}

QTEST_MAIN(TestFileCommands)
#include "tst_filecommands.moc"
