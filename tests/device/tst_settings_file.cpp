#include "NotedStore.h"
#include "OwnUserFolders.h"
#include "device/RememberedWindows.h"
#include "device/dialog/Authorization.h"
#include "device/login/FileLock.h"
#include "device/login/SavedCredentials.h"
#include "device/login/SettingsFile.h"
#include "store/PasswordDigest.h"
#include "support/FullDisk.h"
#include "support/OwnerOnly.h"
#include "support/TestTable.h"

#include <QDir>
#include <QProcess>
#include <QRegularExpression>
#include <QTemporaryFile>
#include <QTextStream>

using namespace paravue;
using namespace paravue::test;

namespace
{

constexpr int Programs = 4;
constexpr int SavedByEach = 10;

Credentials record(const QByteArray &url, const QByteArray &login, int level = 0)
{
    return {true, url, "Gate", level, login, passwordDigest(login)};
}

QString logins(const SettingsMap &settings)
{
    QStringList found;
    const int count = settings.value("authorization/count").toInt();
    for (int i = 0; i < count; ++i) {
        const QString number = QString::number(i);
        found << settings.value("authorization/login" + number) + '@' +
                     settings.value("authorization/url" + number);
    }
    return found.join(' ');
}

} // namespace

class TestSettingsFile : public QObject
{
    Q_OBJECT

public:
    static int actAs(const QString &role);

private Q_SLOTS:
    void init();
    void findsItsFile_data();
    void findsItsFile();
    void readsWhatItWrites_data();
    void readsWhatItWrites();
    void worksWithoutAFolder();
    void keepsTheOldFileOnAFullDisk();
    void giveUpWhenNothingIsInstalled();
    void keepsWhatSeveralProgramsSave();
    void writesLaterWhenAnotherProgramHoldsTheLock();
    void keepsRecordsBehindAGap_data();
    void keepsRecordsBehindAGap();
    void savesOneRecordForEachRecorder_data();
    void savesOneRecordForEachRecorder();
    void fillsInWithoutAsking();
    void remembersWindows();

private:
    std::unique_ptr<OwnUserFolders> m_user;
};

/// What this program does when a test starts it again.
int TestSettingsFile::actAs(const QString &role)
{
    if (role == "nothing installed") {
        auto places = SettingsFile::Places::standard();
        places.shippedFile = "/nowhere/settings.ini";
        places.builtInFile.clear();
        const SettingsFile file(places);
        return 0;
    }
    if (role.startsWith("lock ")) {
        const FileLock lock(role.mid(5), 0);
        QTextStream(stdout) << "locked" << Qt::endl;
        QTextStream(stdin).readLine();
        return 0;
    }
    if (role == "save and look") {
        Save(record("second", "admin"));
        const bool isKnown = savedCredentials(SettingsFile::shared()->all(), "second").has_value();
        QTextStream(stdout) << (isKnown ? "remembered" : "forgotten") << Qt::endl;
        return 0;
    }
    for (int i = 0; i < SavedByEach; ++i)
        Save(record((role + QString::number(i)).toUtf8(), "admin"));
    return 0;
}

void TestSettingsFile::init()
{
    m_user = std::make_unique<OwnUserFolders>();
}

void TestSettingsFile::findsItsFile_data()
{
    const TestTable<QByteArray, QByteArray, QByteArray, bool> row("user", "shipped", "remember", "isDamaged");
    const QByteArray no = "[authorization]\nremember=6e6f\n"; // "no"
    const QByteArray off = "[default]\r\nauthorization/remember=6f6666\r\n";
    row("none", "", "", "true", false);
    row("none, a default beside the program", "", off, "off", false);
    row("none, a damaged default beside the program", "", "\1\2", "true", false);
    row("its own value before the default", off + no, "", "no", false);
    row("as QSettings writes it", "; x\n[default]\nauthorization\\remember=6F6666\n[a]\nb=\n", no, "off",
        false);
    row("no line of settings", no + "rubbish\n", off, "off", true);
    row("value without its last digit", "[authorization]\nremember=6e6", "", "true", true);
    row("value in plain text", "[authorization]\nremember=yes\n", "", "true", true);
    row("key that would read as a comment", no + "[a/;]\nb=31\n", "", "true", true);
    row("group that would read as a key", no + "[ a= ]\nb=31\n", "", "true", true);
    row("far too large", "; " + QByteArray(5'000'000, 'x'), "", "true", true);
}

void TestSettingsFile::findsItsFile()
{
    QFETCH(QByteArray, user);
    QFETCH(QByteArray, shipped);
    QFETCH(QByteArray, remember);
    QFETCH(bool, isDamaged);
    auto places = SettingsFile::Places::standard();
    QTemporaryDir program;
    places.shippedFile = program.filePath("settings.ini");
    const auto write = [](const QString &path, const QByteArray &text) {
        QFile file(path);
        if (!text.isEmpty())
            QVERIFY(QDir().mkpath(QFileInfo(path).path()) && file.open(QIODevice::WriteOnly) &&
                    file.write(text) > 0);
    };
    write(places.shippedFile, shipped);
    write(m_user->settingsPath(), user);
    if (isDamaged)
        QTest::ignoreMessage(QtWarningMsg, QRegularExpression("settings.ini was damaged; it is kept as"));

    const QByteArray anyBytes("a\0\n='\xff", 6);
    {
        SettingsFile file(places);
        QCOMPARE(file.value("authorization/remember"), remember);
        QVERIFY(isForOwnerOnly(m_user->settingsPath()));
        file.setValue("new/key", anyBytes);
    }
    QCOMPARE(SettingsFile(places).value("authorization/remember"), remember);
    QCOMPARE(SettingsFile(places).value("new/key"), anyBytes);
    const QString notice = SettingsFile::takeNotice();
    QCOMPARE(!notice.isEmpty(), isDamaged);
    const QDir folder = QFileInfo(m_user->settingsPath()).dir();
    const QStringList aside = folder.entryList({"settings.ini.damaged*"});
    QCOMPARE(aside.size(), isDamaged ? 1 : 0);
    QVERIFY(!isDamaged ||
            (notice.contains(aside.first()) && contentOf(folder.filePath(aside.first())) == user));
}

void TestSettingsFile::readsWhatItWrites_data()
{
    const TestTable<QByteArray, SettingsMap> row("text", "settings");
    row("group", "[a]\nb=00\n", {{"a/b", QByteArray(1, '\0')}});
    row("slash in a group", "[a/b]\nc=31\n[a]\nd=32\n", {{"a/b/c", "1"}, {"a/d", "2"}});
    row("slash written as a backslash", "[a/\\]\nb\\c=31\n", {{"a///b/c", "1"}});
    row("group that begins with a slash", "[/]\nn=31\n[/a]\nm=32\n", {{"//n", "1"}, {"/a/m", "2"}});
}

void TestSettingsFile::readsWhatItWrites()
{
    QFETCH(QByteArray, text);
    QFETCH(SettingsMap, settings);
    QCOMPARE(parseSettings(text), settings);
    QCOMPARE(parseSettings(settingsText(settings)), settings);
}

void TestSettingsFile::worksWithoutAFolder()
{
    auto places = SettingsFile::Places::standard();
    QTemporaryFile inTheWay;
    QVERIFY(inTheWay.open());
    places.folder = inTheWay.fileName() + "/Paravue";
    QTest::ignoreMessage(QtWarningMsg, QRegularExpression("nothing will be remembered"));
    QTest::ignoreMessage(QtWarningMsg, QRegularExpression("nothing is remembered"));
    SettingsFile file(places);
    file.setValue("authorization/remember", "false");
    file.sync();
    QCOMPARE(file.value("authorization/remember"), "false");
}

void TestSettingsFile::keepsTheOldFileOnAFullDisk()
{
    SKIP_WITHOUT_FULL_DISK();
    Save(record("first", "admin"));
    QTest::ignoreMessage(QtWarningMsg, QRegularExpression("nothing is remembered"));
    {
        const FullDisk full;
        SettingsFile file;
        file.setValue("authorization/login", "second");
        file.sync();
        QCOMPARE(file.value("authorization/login"), "second");
    }
    QCOMPARE(QFileInfo(m_user->settingsPath()).dir().entryList(QDir::Files | QDir::Hidden),
             QStringList({"settings.ini", "settings.ini.lock"}));
    QVERIFY(savedCredentials(SettingsFile().all(), "first"));
}

void TestSettingsFile::giveUpWhenNothingIsInstalled()
{
    QProcess program;
    program.start(QCoreApplication::applicationFilePath(), {"--act-as", "nothing installed"});
    QVERIFY(program.waitForFinished());
    QCOMPARE(program.exitStatus(), QProcess::CrashExit);
    QVERIFY(program.readAllStandardError().contains(
        "File /nowhere/settings.ini not found. Please reinstall the application."));
}

void TestSettingsFile::keepsWhatSeveralProgramsSave()
{
    QProcess programs[Programs];
    for (int i = 0; i < Programs; ++i)
        programs[i].start(QCoreApplication::applicationFilePath(), {"--act-as", QString("host%1-").arg(i)});
    for (QProcess &program : programs) {
        QVERIFY(program.waitForFinished());
        QCOMPARE(program.exitCode(), 0);
    }
    const SettingsFile file;
    QCOMPARE(file.value("authorization/count").toInt(), Programs * SavedByEach);
    for (int i = 0; i < Programs * SavedByEach; ++i) {
        const QString url = QString("host%1-%2").arg(i % Programs).arg(i / Programs);
        QVERIFY2(savedCredentials(file.all(), url.toUtf8()), qPrintable(url));
    }
}

void TestSettingsFile::writesLaterWhenAnotherProgramHoldsTheLock()
{
    Save(record("first", "admin"));
    const QString lock = m_user->settingsPath() + ".lock";
    QVERIFY(isForOwnerOnly(lock));
    QProcess holder;
    holder.start(QCoreApplication::applicationFilePath(), {"--act-as", "lock " + lock});
    AWAIT_VERIFY(holder.canReadLine());
    {
        QProcess program;
        program.start(QCoreApplication::applicationFilePath(), {"--act-as", "save and look"});
        // It is told before the lock is free.
        AWAIT_VERIFY(program.canReadLine());
        QCOMPARE(program.readLine().trimmed(), "remembered");
        QVERIFY(!savedCredentials(SettingsFile().all(), "second"));
        Save(record("third", "admin"));
        QVERIFY(savedCredentials(SettingsFile::shared()->all(), "third"));
        holder.kill(); // a program that was killed holds no lock
        QVERIFY(holder.waitForFinished());
        QVERIFY(program.waitForFinished());
        QCOMPARE(program.exitCode(), 0);
    }
    QVERIFY(savedCredentials(SettingsFile().all(), "second")); // written at the end of the program
    SettingsFile::shared();
    for (const char *url : {"first", "second", "third"})
        QVERIFY2(savedCredentials(SettingsFile().all(), url), url);
}

void TestSettingsFile::keepsRecordsBehindAGap_data()
{
    const TestTable<QStringList, QByteArray, QString> row("numbers", "count", "kept");
    row("counted", {"0", "2"}, "2", "l0@u0 l2@u2 x@x");
    row("numbers counted", {"0", "2"}, "3", "l0@u0 l2@u2 x@x");
    row("count of the unbroken list", {"0", "2"}, "1", "l0@u0 l2@u2 x@x");
    row("far behind", {"0", "1", "500"}, "3", "l0@u0 l1@u1 l500@u500 x@x");
    row("none at 0", {"7", "9", "10"}, "1", "l7@u7 l9@u9 l10@u10 x@x");
    row("no count", {"3"}, "", "l3@u3 x@x");
    row("longer than any number", {"0", "99999999999999999999"}, "2",
        "l0@u0 l99999999999999999999@u99999999999999999999 x@x");
}

void TestSettingsFile::keepsRecordsBehindAGap()
{
    QFETCH(QStringList, numbers);
    QFETCH(QByteArray, count);
    SettingsMap settings{{"authorization/count", count}};
    for (const QString &number : numbers) {
        settings["authorization/url" + number] = 'u' + number.toUtf8();
        settings["authorization/login" + number] = 'l' + number.toUtf8();
    }
    saveCredentials(settings, record("x", "x"));
    QTEST(logins(settings), "kept");
}

void TestSettingsFile::savesOneRecordForEachRecorder_data()
{
    const TestTable<QByteArray, bool, QString> row("url", "remember", "kept");
    row("another", "c", true, "a@Host b@host:7000 c@c");
    row("same, in other letters", "hOST", true, "b@host:7000 c@hOST");
    row("same, with the usual port", "host:5049", true, "b@host:7000 c@host:5049");
    row("port beyond 15 bits", "host:-25536", true, "a@Host b@host:7000 c@host:-25536");
    row("to be forgotten", "HOST:7000", false, "a@Host");
}

void TestSettingsFile::savesOneRecordForEachRecorder()
{
    QFETCH(QByteArray, url);
    QFETCH(bool, remember);
    // The last one is left over from a longer list.
    SettingsMap settings{{"authorization/count", "2"},       {"authorization/url0", "Host"},
                         {"authorization/login0", "a"},      {"authorization/url1", "host:7000"},
                         {"authorization/login1", "b"},      {"authorization/url2", "old"},
                         {"authorization/remember", "false"}};
    Credentials added = record(url, "c", 2);
    added.remember = remember;
    saveCredentials(settings, added);
    QTEST(logins(settings), "kept");
    QVERIFY(!settings.contains("authorization/url3") && !logins(settings).contains("old"));
    QCOMPARE(settings.value("authorization/remember"), "false");
    const auto found = savedCredentials(settings, url.toLower());
    QCOMPARE(found.has_value(), remember);
    QVERIFY(!found || (found->password == passwordDigest("c") && found->level == 2 && found->name == "Gate"));
}

void TestSettingsFile::remembersWindows()
{
    const QString model = QString::fromUtf8("R4 [\xc3\xbc] = / \n");
    QCOMPARE(rememberedWindow(model), QByteArray());
    rememberWindow(model, "1 2");
    rememberWindow("R5", "3 4");
    rememberWindow(model, "5 6");
    QCOMPARE(rememberedWindow(model), "5 6");
    QCOMPARE(rememberedWindow("R5"), "3 4");
    QVERIFY(QFile::exists(m_user->settingsPath()));
}

void TestSettingsFile::fillsInWithoutAsking()
{
    Save(record("Host", "operator", 1));
    // The bytes are on the disk, and no value stands there as it is.
    QVERIFY(contentOf(m_user->settingsPath()).contains("url0=486f7374\r\n"));
    Credentials known{false, "host:5049", "", 0, "", ""};
    QVERIFY(OrbNetSetup::lookUpCredentials(known));
    QCOMPARE(known.login + ' ' + known.password + ' ' + QByteArray::number(known.level),
             "operator " + passwordDigest("operator") + " 1");
    for (const int level : {0, 1}) {
        Credentials unknown{false, "other", "", level, "", ""};
        QVERIFY(OrbNetSetup::lookUpCredentials(unknown));
        QCOMPARE(unknown.login, level == 0 ? "guest" : "admin");
        QCOMPARE(unknown.password, "d41d8cd98f00b204e9800998ecf8427e");
    }
}

int main(int argc, char **argv)
{
    QCoreApplication application(argc, argv);
    const QStringList arguments = QCoreApplication::arguments();
    if (arguments.value(1) == "--act-as")
        return TestSettingsFile::actAs(arguments.value(2));
    TestSettingsFile test;
    return QTest::qExec(&test, argc, argv);
}

#include "tst_settings_file.moc"
