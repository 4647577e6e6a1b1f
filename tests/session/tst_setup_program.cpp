#include "OwnConsole.h"
#include "OwnUserFolders.h"
#include "ProgramRun.h"
#include "device/OrbNetSetup.h"
#include "device/RememberedWindows.h"
#include "program/PortableSettings.h"
#include "setup/CommandLine.h"
#include "setup/LanguageChoice.h"
#include "snapshots/SnapshotStore.h"
#include "support/OwnerOnly.h"
#include "support/TestTable.h"
#include "support/UserLanguage.h"
#include "support/Waiting.h"

#include <QDirIterator>
#include <QJsonDocument>
#include <QSignalSpy>

#include <algorithm>

using namespace paravue;
using namespace paravue::test;

class TestSetupProgram : public ProgramTest
{
    Q_OBJECT

private Q_SLOTS:
    void init() { startRecorder(); }
    void readsAddresses_data();
    void readsAddresses();
    void refusesLettersThatWouldBeLost();
    void keepsSettingsOfAPortableCopyBesideIt();
    void showsTextWithoutAScreen();
    void speaksTheLanguageOfTheDesktop();
    void followsTheLanguageOfTheWindow();
    void refusesWrongUsage_data();
    void refusesWrongUsage();
    void checksDescriptions_data();
    void checksDescriptions();
    void showsWhyItEndsOnADesktop();
    void failsInsteadOfHanging_data();
    void failsInsteadOfHanging();
    void saysWhyItCannotStart_data();
    void saysWhyItCannotStart();
    void writesALogWithoutSecrets();
    void waitsNoLongerThanItMay();
    void leavesNoFilesWhenItIsEnded_data();
    void leavesNoFilesWhenItIsEnded();
    void leavesNoFilesOfAKilledRun_data();
    void leavesNoFilesOfAKilledRun();
    void leavesNoFilesOfARunKilledAtItsStart();

private:
    OwnUserFolders m_user;
};

void TestSetupProgram::readsAddresses_data()
{
    const TestTable<QStringList, QString> row("arguments", "address");
    row("no port", {"a:b@host"}, "a:b@host");
    row("port", {"a:b@host:32767"}, "a:b@host:32767");
    row("port beyond 15 bits", {"a:b@host:32768"}, "a:b@host:-32768");
    row("last port", {"a:b@host:65535"}, "a:b@host:-1");
    row("no login", {"host:40000", "--digest"}, "host:-25536");
    row("separators in login and password", {"a:b:c@d@host"}, "a:b:c@d@host");
    row("of a snapshot's edits", {"--open", "x", "--send-to", "host:40000"}, "host:-25536");
    row("typed password", {"admin:admin@host", "--digest"}, "admin:21232f297a57a5a743894a0e4a801fc3@host");
}

void TestSetupProgram::readsAddresses()
{
    QFETCH(QStringList, arguments);
    const CommandLine read = CommandLine::parse(QStringList("paravue-setup") + arguments);
    QCOMPARE(read.text, QString());
    QTEST(read.address, "address");
}

void TestSetupProgram::refusesLettersThatWouldBeLost()
{
    // Half of a surrogate pair is a letter that no encoding has.
    const QString password = QString(QChar(0xd800)) + "x";
    const CommandLine read = CommandLine::parse({"paravue-setup", "admin:" + password + "@host", "--digest"});
    QVERIFY2(read.text.contains("letters"), qPrintable(read.text));
}

void TestSetupProgram::keepsSettingsOfAPortableCopyBesideIt()
{
    const QByteArray before = qgetenv("PARAVUE_DATA_HOME");
    const auto restore = qScopeGuard([&] { qputenv("PARAVUE_DATA_HOME", before); });
    // Letters of more than one code page.
    const QString program = m_folder->filePath(QString::fromUtf8("Программа ñ"));
    QVERIFY(QDir().mkdir(program));
    qunsetenv("PARAVUE_DATA_HOME");
    QVERIFY(!keepSettingsBesideProgram(program));
    QFile marker(program + "/portable.txt");
    QVERIFY(marker.open(QIODevice::WriteOnly));
    qputenv("PARAVUE_DATA_HOME", before);
    QVERIFY(!keepSettingsBesideProgram(program));
    QCOMPARE(qgetenv("PARAVUE_DATA_HOME"), before);
    qunsetenv("PARAVUE_DATA_HOME");
    QVERIFY(keepSettingsBesideProgram(program));
    rememberWindow("probe", "1");
    QVERIFY(QFile::exists(program + "/settings/Paravue/settings.ini"));
    QVERIFY(snapshotsFolder().startsWith(program + "/settings/"));
}

void TestSetupProgram::showsTextWithoutAScreen()
{
    const Run help = runProgram({"--help"}, "nosuchplatform");
    QCOMPARE(help.exitCode, 0);
    QVERIFY2(help.out.contains("--screenshot") && help.out.contains("Exit code"), qPrintable(help.out));
    QVERIFY2(help.out.startsWith("Usage: paravue-setup [options] [ADDRESS]\n"), qPrintable(help.out));
    const Run version = runProgram({"--version"}, "nosuchplatform");
    QCOMPARE(version.exitCode, 0);
    QCOMPARE(version.out.trimmed(), "paravue-setup " PARAVUE_VERSION);
    const Run zones = runProgram({"--time-zones", "--language", "ru"}, "nosuchplatform");
    QCOMPARE(zones.exitCode, 0);
    QVERIFY(zones.out.split('\n').contains(QString("UTC-3").leftJustified(44) +
                                           "UTC+3, Москва, Минск, Стамбул, Эр-Рияд"));
}

void TestSetupProgram::speaksTheLanguageOfTheDesktop()
{
#ifdef Q_OS_WIN
    QSKIP("the language is that of the system, whatever the environment says");
#endif
    const UserLanguage russian("ru_RU.UTF-8");
    const Run help = runProgram({"--help"}, "nosuchplatform");
    QVERIFY2(help.out.contains("Код завершения") && !help.out.contains("Usage"), qPrintable(help.out));
    const Run usage = runProgram({"--demo", "recorder"}, "nosuchplatform");
    QVERIFY2(usage.err.endsWith("Смотрите paravue-setup --help.\n"), qPrintable(usage.err));
}

/// As in a session, in which the store is loaded and then edited.
void TestSetupProgram::followsTheLanguageOfTheWindow()
{
    const QTemporaryDir folder;
    recorder::RecorderServer recorder(folder.path(), "standard");
    QVERIFY(recorder.listen());
    OrbNetSetup store(OrbNetSetup::deviceAddress("admin", "admin", "127.0.0.1", recorder.port()));
    const LanguageChoice language(store, "ru");
    const auto refresh = [] { return QCoreApplication::translate("paravue::StatusLine", "Refresh"); };
    QSignalSpy loaded(&store, &OrbSetup::loadDone);
    store.load();
    AWAIT_COMPARE(loaded.size(), 1);
    QCOMPARE(refresh(), "Обновить");
    store.setValue("streams/common/language/en");
    QCOMPARE(refresh(), "Refresh");
    store.setValue("streams/common/language/ru");
    QCOMPARE(refresh(), "Обновить");
    store.setValue("streams/common/language/en");
}

void TestSetupProgram::refusesWrongUsage_data()
{
    const TestTable<QStringList, QString> row("arguments", "reason");
    const QString address = "admin:s3cret@host";
    row("nothing", {}, "no address");
    row("two addresses", {address, address}, "more than one address");
    row("unknown option", {address, "--nonsense"}, "nonsense");
    row("no login", {"s3cret@host"}, "[login:password@]host[:port]");
    row("no host", {"admin:s3cret@"}, "names no host");
    row("port 0", {address + ":0"}, "port must be");
    row("port too large", {address + ":65536"}, "port must be");
    row("port is a word", {address + ":http"}, "port must be");
    row("IPv6", {"admin:s3cret@::1"}, "IPv6");
    row("demo and address", {"--demo", address}, "takes no address");
    row("demo data without demo", {"--demo-data", "x", address}, "needs --demo");
    row("no folder for pictures", {address, "--screenshot", ""}, "needs a value");
    row("check nothing", {"--check", ""}, "--check needs a value");
    row("check and address", {"--check", "x", address}, "take no recorder");
    row("preview and demo", {"--preview", "x", "--demo"}, "take no recorder");
    row("check and preview", {"--check", "x", "--preview", "x"}, "exclude");
    row("pictures of a check", {"--check", "x", "--screenshot", "x"}, "no window");
    row("files of a recorder", {address, "--files", "x"}, "--files needs");
    row("preview for programs", {"--preview", "x", "--json"}, "--json needs");
    row("open nothing", {"--open", ""}, "--open needs a value");
    row("open a recorder", {"--open", "x", address}, "use --send-to");
    row("open a preview", {"--open", "x", "--preview", "x"}, "--open excludes");
    row("send nothing", {address, "--send-to", "host"}, "--send-to needs --open");
    row("send to nobody", {"--open", "x", "--send-to", "admin:s3cret@"}, "names no host");
    row("pictures of a question", {"--open", "x", "--send-to", "host", "--screenshot", "x"}, "asks");
    row("time without a unit", {address, "--timeout", "soon"}, "--timeout takes a number of seconds");
    row("unknown style", {address, "--style", "fusion"}, "--style takes light, dark or system");
    row("no file for the log", {address, "--log", ""}, "needs a value");
    row("language with a value", {address, "--language", "en/x"}, "a language is");
}

void TestSetupProgram::refusesWrongUsage()
{
    QFETCH(QStringList, arguments);
    QFETCH(QString, reason);
    const Run run = runProgram(arguments, "nosuchplatform");
    QCOMPARE(run.exitCode, 2);
    QCOMPARE(run.out, QString());
    QVERIFY2(run.err.contains(reason), qPrintable(run.err));
    QVERIFY2(!run.err.contains("s3cret"), qPrintable(run.err));
}

void TestSetupProgram::checksDescriptions_data()
{
    // %1: the file
    const TestTable<QByteArray, QStringList, int, QString> row("text", "options", "exitCode", "out");
    const QByteArray broken("<pvsetup><buttonOK><action type='call' slot='accept'>w</action></buttonOK>\n "
                            "<window><w/><timetask type='x'/><width>y</width></window>\n</pvsetup>");
    row("clean", "<pvsetup/>", {}, 0, "%1: errors: 0, warnings: 0\n");
    row("warning", "<pvsetup><window><width>y</width></window></pvsetup>", {}, 0,
        "%1:1:1: warning: OK does nothing: there is no \"buttonOK\" with a call\n"
        "%1:1:18: warning: \"y\" is no number and counts as 0\n"
        "%1: errors: 0, warnings: 2\n");
    row("error", broken, {}, 1,
        "%1:2:14: error: Unknown time task \"x\"\n"
        "%1:2:34: warning: \"y\" is no number and counts as 0\n"
        "%1: errors: 1, warnings: 1\n");
    row("for programs", broken, {"--json"}, 1,
        R"({"errors":1,"file":"%1","problems":[{"column":14,"line":2,)"
        R"("severity":"error","text":"Unknown time task \"x\""},{"column":34,)"
        R"("line":2,"severity":"warning","text":"\"y\" is no number and )"
        R"(counts as 0"}],"warnings":1})");
    row("no such folder", broken, {"--files", "nosuch"}, 6, "");
}

void TestSetupProgram::checksDescriptions()
{
    QFETCH(QByteArray, text);
    QFETCH(QStringList, options);
    QFETCH(QString, out);
    QFile file(m_folder->filePath("described"));
    QVERIFY(file.open(QIODevice::WriteOnly) && file.write(text) == text.size());
    file.close();
    const Run run = runProgram(QStringList{"--check", file.fileName()} + options, "nosuchplatform");
    QTEST(run.exitCode, "exitCode");
    const QJsonDocument json = QJsonDocument::fromJson(run.out.toUtf8());
    QCOMPARE(json.isNull() ? run.out : QString(json.toJson(QJsonDocument::Compact)),
             QString(out).replace("%1", file.fileName()));
    const Run piped = runProgram(QStringList{"--check", "-"} + options, "nosuchplatform", QDir::tempPath(),
                                 file.fileName());
    QCOMPARE(piped.exitCode, run.exitCode);
    QCOMPARE(piped.out, QString(run.out).replace(file.fileName(), "<stdin>"));
}

void TestSetupProgram::showsWhyItEndsOnADesktop()
{
#ifdef Q_OS_WIN
    FreeConsole(); // the program would use that of its parent
    QProcess process;
    // Left out, they would be those of this process.
    process.setCreateProcessArgumentsModifier([](QProcess::CreateProcessArguments *arguments) {
        STARTUPINFOW &streams = *arguments->startupInfo;
        streams.hStdInput = streams.hStdOutput = streams.hStdError = nullptr;
    });
    process.start(SETUP_PROGRAM, {"--nonsense"});
    const auto box = [] { return FindWindowW(L"#32770", L"Paravue Setup"); };
    AWAIT_VERIFY_WITHIN(box(), 20'000);
    PostMessageW(box(), WM_CLOSE, 0, 0);
    AWAIT_COMPARE_WITHIN(process.state(), QProcess::NotRunning, 20'000);
    QCOMPARE(process.exitCode(), 2);
#else
    QSKIP("Here desktops keep what programs write.");
#endif
}

void TestSetupProgram::failsInsteadOfHanging_data()
{
    const TestTable<QString, bool, int, QString> row("account", "isListening", "exitCode", "reason");
    row("wrong password", "admin:s3cret", true, 4,
        "Authorization failed: The recorder has refused the login");
    row("nobody listens", "admin:s3cret", false, 3, "Network error 0: The recorder refuses the connection");
    row("description is no XML", "admin:admin", true, 7, ":1.9");
}

void TestSetupProgram::failsInsteadOfHanging()
{
    QFETCH(QString, account);
    QFETCH(bool, isListening);
    QFETCH(int, exitCode);
    QFETCH(QString, reason);
    const QString address = addressOf(*m_recorder, account);
    if (!isListening)
        m_recorder->close();
    QFile description(m_recorder->filePath("interface"));
    QVERIFY(description.open(QIODevice::WriteOnly));
    description.write("<pvsetup>");
    description.close();

    const Run run = runProgram({address, "--screenshot", m_folder->filePath("pictures")});
    QCOMPARE(run.exitCode, exitCode);
    QVERIFY2(!run.err.contains("s3cret"), qPrintable(run.err));
    QVERIFY2(run.err.contains(reason), qPrintable(run.err));
}

void TestSetupProgram::saysWhyItCannotStart_data()
{
    const TestTable<QStringList, QString, int, QString> row("arguments", "platform", "exitCode", "reason");
    row("no screen", {"nobody:x@127.0.0.1:1"}, "xcb", 2, "there is no screen");
    row("no pictures without a screen", {"--demo", "--screenshot", "x"}, "xcb", 2, "there is no screen");
    row("unknown screen", {"-platform", "nosuch", "nobody:x@127.0.0.1:1"}, "offscreen", 2,
        "there is no screen");
    row("second screen of a list", {"nobody:x@127.0.0.1:1", "--screenshot", "x"}, "nosuch:a;offscreen", 3,
        "refuses the connection");
    row("unknown model", {"--demo", "--model", "other", "--screenshot", "x"}, "offscreen", 2,
        "there is no model \"other\", only: standard, everything");
    row("nothing to check", {"--check", "/no/such/file"}, "none", 6, "/no/such/file cannot be read: ");
    row("no folder for the log", {"--demo", "--log", "/no/such/folder/log"}, "offscreen", 6,
        "The log /no/such/folder/log cannot be written");
}

void TestSetupProgram::saysWhyItCannotStart()
{
    QFETCH(QStringList, arguments);
    QFETCH(QString, platform);
    QFETCH(QString, reason);
    qunsetenv("DISPLAY");
    qunsetenv("WAYLAND_DISPLAY");
    const Run run = runProgram(arguments, platform);
    QTEST(run.exitCode, "exitCode");
    QVERIFY2(run.err.contains(reason), qPrintable(run.err));
}

void TestSetupProgram::writesALogWithoutSecrets()
{
    QFile accounts(m_recorder->filePath("users"));
    QVERIFY(accounts.open(QIODevice::WriteOnly));
    accounts.write("CNT=1\nNAME0=admin\nPASSWD0=a141c47927929bc2d1fb6d336a256df4\nLEVEL0=2\n");
    accounts.close();
    const QString log = m_folder->filePath("log");
    const Run run = runProgram({addressOf(*m_recorder, "admin:abc1234"), "--digest", "--log", log,
                                "--screenshot", m_folder->filePath("pictures")});
    QVERIFY2(run.exitCode == 0, qPrintable(run.err));
    QFile file(log);
    QVERIFY(file.open(QIODevice::ReadOnly));
    const QString text = QString::fromUtf8(file.readAll());
    for (const char *part :
         {"paravue.link", "connecting to 127.0.0.1", "logging in as admin", "logged in",
          "sent GET NET CONFIG for net", "answered, ", "exchange ended", "description shown, ",
          "paravue.pictures", "connected", "first picture", "closed, rejected"})
        QVERIFY2(text.contains(part), part);
    for (const char *secret : {"abc1234", "a141c47927929bc2d1fb6d336a256df4"})
        QVERIFY2(!text.contains(secret), secret);
    QVERIFY(isForOwnerOnly(file.fileName()));
    QVERIFY2(!run.err.contains("paravue-setup:"), qPrintable(run.err)); // nothing has failed
}

void TestSetupProgram::waitsNoLongerThanItMay()
{
    m_recorder->setReplyDelay(60'000);
    const Run run = runProgram({addressOf(*m_recorder, "admin:admin"), "--timeout", "1", "--screenshot",
                                m_folder->filePath("pictures")});
    QCOMPARE(run.exitCode, 3);
    QVERIFY2(run.err.contains("No answer from the recorder for 1 s"), qPrintable(run.err));
}

void TestSetupProgram::leavesNoFilesWhenItIsEnded_data()
{
    const TestTable<Ending> row("ending");
#ifdef Q_OS_UNIX
    row("asked", SIGTERM);
    row("Ctrl+C", SIGINT);
    row("terminal closed", SIGHUP);
    row("killed", SIGKILL);
#else
    row("Ctrl+C", Ending::CtrlC);
    row("console closed", Ending::ConsoleClosed);
    row("logged off or shut down", Ending::LoggedOff);
    row("killed", Ending::Killed);
#endif
}

void TestSetupProgram::leavesNoFilesWhenItIsEnded()
{
    QFETCH(Ending, ending);
    QVERIFY(QDir(m_folder->path()).mkdir("local"));
    const QDir local(m_folder->filePath("local"));
    const auto copies = [&local] {
        QDirIterator copy(local.path(), QDir::Files, QDirIterator::Subdirectories);
        int count = 0;
        for (; copy.hasNext(); copy.next())
            ++count;
        return count;
    };
    const int bothCopiesOfAllFiles = 18;
    OwnConsole console;
    QProcess process;
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    setTemporaryPlace(environment, local.path());
    process.setProcessEnvironment(environment);
    console.prepare(process);
    process.start(SETUP_PROGRAM, {addressOf(*m_recorder, "admin:admin")});
    AWAIT_VERIFY_WITHIN(copies() >= bothCopiesOfAllFiles, 20'000);
    QCOMPARE(local.entryList(QDir::Dirs | QDir::NoDotAndDotDot).size(), 1);
    console.end(process, ending);
    AWAIT_COMPARE_WITHIN(process.state(), QProcess::NotRunning, 20'000);
    if (ending != KilledProgram) {
        QCOMPARE(process.exitStatus(), QProcess::NormalExit);
        QCOMPARE(process.exitCode(), 8);
        QVERIFY(local.isEmpty());
        return;
    }
    QVERIFY(!local.isEmpty());
    // The next session finds the copies when it starts.
    const Run next = runProgram({"nobody:x@127.0.0.1:1", "--screenshot", m_folder->filePath("pictures")},
                                "offscreen", local.path());
    QCOMPARE(next.exitCode, 3); // nobody listens
    QVERIFY2(local.isEmpty(), qPrintable(local.entryList().join(' ')));
}

void TestSetupProgram::leavesNoFilesOfAKilledRun_data()
{
    const TestTable<QStringList> row("arguments");
    row("preview", {"--preview", "%1", "--files", "%2"});
    row("demo", {"--demo"});
}

/// What it could not remove goes when the next one starts.
void TestSetupProgram::leavesNoFilesOfAKilledRun()
{
    QFETCH(QStringList, arguments);
    arguments.replaceInStrings("%1", m_recorder->filePath("interface"));
    arguments.replaceInStrings("%2", m_folder->filePath("data"));
    QVERIFY(QDir(m_folder->path()).mkdir("local"));
    const QDir local(m_folder->filePath("local"));
    const auto folders = [&local] { return local.entryList(QDir::Dirs | QDir::NoDotAndDotDot); };
    QProcess process;
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    setTemporaryPlace(environment, local.path());
    process.setProcessEnvironment(environment);
    process.start(SETUP_PROGRAM, arguments);
    // Of the program or its simulator, whose lock gets its contents late, and of the session with that. Each
    // is locked once it holds something.
    const qsizetype count = arguments.contains("--demo") ? 2 : 1;
    const auto isLocked = [&](const QString &name) {
        const QDir folder(local.filePath(name));
        return name.startsWith("paravue-program-") ? QFileInfo(folder.filePath("lock")).size() > 0
                                                   : !folder.isEmpty();
    };
    const auto areLocked = [&] {
        const QStringList all = folders();
        return all.size() == count && std::all_of(all.cbegin(), all.cend(), isLocked);
    };
    AWAIT_VERIFY_WITHIN(areLocked(), 20'000);
    process.kill();
    AWAIT_COMPARE_WITHIN(process.state(), QProcess::NotRunning, 20'000);
    QVERIFY(!folders().isEmpty());
    // The simulator of a demo ends by itself.
    if (arguments.contains("--demo"))
        AWAIT_COMPARE(folders().size(), 1);
    const QStringList next = arguments + QStringList{"--screenshot", m_folder->filePath("pictures")};
    QCOMPARE(runProgram(next, "offscreen", local.path()).exitCode, 0);
    AWAIT_COMPARE(folders(), QStringList());
}

/// Its lock has no contents yet: after a minute nobody is about to write them.
void TestSetupProgram::leavesNoFilesOfARunKilledAtItsStart()
{
    QVERIFY(QDir(m_folder->path()).mkdir("local"));
    const QDir local(m_folder->filePath("local"));
    const QDateTime now = QDateTime::currentDateTime();
    for (const auto &[name, time] : {std::pair("paravue-program-killed", now.addSecs(-120)),
                                     std::pair("paravue-program-starting", now)}) {
        QVERIFY(local.mkpath(QString(name) + "/files"));
        QFile lock(local.filePath(QString(name) + "/lock"));
        QVERIFY(lock.open(QIODevice::WriteOnly) && lock.setFileTime(time, QFile::FileModificationTime));
    }
    const QStringList preview{"--preview",    m_recorder->filePath("interface"),
                              "--files",      m_folder->filePath("data"),
                              "--screenshot", m_folder->filePath("pictures")};
    QCOMPARE(runProgram(preview, "offscreen", local.path()).exitCode, 0);
    AWAIT_COMPARE(local.entryList(QDir::Dirs | QDir::NoDotAndDotDot),
                  QStringList("paravue-program-starting"));
}

QTEST_MAIN(TestSetupProgram)
#include "tst_setup_program.moc"
