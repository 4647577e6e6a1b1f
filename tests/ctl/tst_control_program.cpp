#include "ControlTerminal.h"
#include "ControlTest.h"
#include "snapshots/SnapshotArchive.h"
#include "support/FullDisk.h"
#include "support/OwnerOnly.h"
#include "support/TestTable.h"

#include <QDir>
#include <QJsonDocument>
#include <QJsonObject>
#include <QProcess>
#include <QScopeGuard>
#include <QStandardPaths>

using namespace paravue;
using namespace paravue::test;
using recorder::AnswerFault;
using Kind = recorder::AnswerFault::Kind;

/// What the program reads, keeps and compares, and how it begins and fails.
class TestControlProgram : public ControlTest
{
    Q_OBJECT

private Q_SLOTS:
    void init() { startRecorder(); }
    void needsNoScreen();
    void getsValues_data();
    void getsValues();
    void printsCaptions();
    void hidesSecrets();
    void hidesSecretsThatDirectivesCopy_data();
    void hidesSecretsThatDirectivesCopy();
    void printsNothingThatSteersATerminal();
    void saysWhyItFails_data();
    void saysWhyItFails();
    void triesAgain();
    void takesPasswords_data();
    void takesPasswords();
    void keepsPasswordFilesOfOthersOut();
    void keepsASnapshot();
    void keepsASnapshotWhereTheWindowDoes();
    void comparesSources_data();
    void comparesSources();
    void hidesDifferingSecrets();
    void namesTheRecorderThatCannotBeCompared();
    void keepsNothingOnAFullDisk_data();
    void keepsNothingOnAFullDisk();
    void noticesThatItsOutputIsLost_data();
    void noticesThatItsOutputIsLost();
    void tellsTheHealthOfDisks();
    void tellsWhenItHasSaved();
    void asksForThePassword_data();
    void asksForThePassword();
    void stopsWhileItAsks_data();
    void stopsWhileItAsks();
    void describesWhatCanBeSet();
    void reportsWithoutSecrets();
    void reportsWhatHasFailed();
    void usesTheTerminal();
};

void TestControlProgram::needsNoScreen()
{
    QFile program(CONTROL_PROGRAM);
    QVERIFY(program.open(QIODevice::ReadOnly));
    const QByteArray bytes = program.readAll();
    QVERIFY(bytes.contains("Qt6Network"));
    QVERIFY(!bytes.contains("Qt6Gui") && !bytes.contains("Qt6Widgets"));
}

void TestControlProgram::getsValues_data()
{
    const TestTable<QStringList, QStringList> row("patterns", "paths");
    row("one value", {"net/untitled/IP"}, {"net/untitled/IP"});
    row("letters left open", {"net/*/DNS?"}, {"net/untitled/DNS1", "net/untitled/DNS2"});
    row("a section", {"state/identity"}, {"state/identity/DEVICE_NAME", "state/identity/LAST_LOGIN"});
    row("several patterns", {"state/identity/LAST*", "net/untitled/IP"},
        {"net/untitled/IP", "state/identity/LAST_LOGIN"});
    row("a file left open", {"*/untitled/DNS1"}, {"net/untitled/DNS1"});
    row("an open file and section", {"?et*DNS1"}, {"net/untitled/DNS1"});
    row("no part of a name", {"net/untitled/I"}, {});
    row("no part of a file", {"ne"}, {});
}

void TestControlProgram::getsValues()
{
    QFETCH(QStringList, patterns);
    QFETCH(QStringList, paths);
    const Run run = this->run(QStringList{"get", address(), "--json"} + patterns);
    QCOMPARE(run.exitCode, paths.isEmpty() ? 5 : 0);
    const QJsonObject document = QJsonDocument::fromJson(run.out.toUtf8()).object();
    QCOMPARE(document["format"].toString(), "paravue-values");
    QCOMPARE(document["version"].toInt(), 1);
    QCOMPARE(document["recorder"].toString(), host());
    QCOMPARE(pathsIn(run.out, "values"), paths);
}

void TestControlProgram::printsCaptions()
{
    const QString expected = "net/untitled/DHCP  off  (Network › Get the address from a DHCP server)\n";
    QCOMPARE(run({"get", address(), "net/*/DHCP", "--captions"}).out, expected);
}

void TestControlProgram::hidesSecrets()
{
    const Run hidden = run({"get", address(), "users/untitled/PASSWD0", "net/untitled/IP"});
    QCOMPARE(hidden.exitCode, 0);
    QCOMPARE(hidden.out, QString::fromUtf8("net/untitled/IP         192.168.10.20\n"
                                           "users/untitled/PASSWD0  ••••••••\n"));
    const Run json = run({"get", address(), "users/untitled/PASSWD0", "--json"});
    const QJsonObject value =
        QJsonDocument::fromJson(json.out.toUtf8()).object()["values"].toArray().first().toObject();
    QVERIFY(value["secret"].toBool() && value["value"].isNull());
    QCOMPARE(run({"get", address(), "users/untitled/PASSWD0", "--secrets"}).out,
             "users/untitled/PASSWD0  admin\n");
}

void TestControlProgram::hidesSecretsThatDirectivesCopy_data()
{
    const TestTable<QByteArray, QByteArray> row("directives", "hidden");
    row("a secret", "#!s/COPY='[^{}']*'/COPY='{users/untitled/PASSWD0}'/\r\n", "state/untitled/COPY");
    row("what grows without end", QByteArray("#!s/a/aa{users/untitled/PASSWD0}/\r\n").repeated(12),
        "state/untitled/COPY state/untitled/OTHER");
    row("no secret", "#!s/COPY='[^{}']*'/COPY='{net/untitled/IP}'/\r\n", "");
}

void TestControlProgram::hidesSecretsThatDirectivesCopy()
{
    QFETCH(QByteArray, directives);
    QFile file(m_recorder->filePath("state"));
    QVERIFY(file.open(QIODevice::WriteOnly) && file.write("COPY='admin'\r\nOTHER='1'\r\n" + directives) > 0);
    file.close();
    const Run json = run({"get", address(), "state", "--json"});
    const QJsonObject document = QJsonDocument::fromJson(json.out.toUtf8()).object();
    QStringList hidden;
    for (const QJsonValue &value : document["values"].toArray()) {
        if (value["secret"].toBool() && value["value"].isNull())
            hidden << value["path"].toString();
    }
    QTEST(hidden.join(' ').toUtf8(), "hidden");
}

void TestControlProgram::printsNothingThatSteersATerminal()
{
    QFile file(m_recorder->filePath("net"));
    QVERIFY(file.open(QIODevice::WriteOnly) && file.write("IP='\x1b[2J\u202e'\n") > 0);
    file.close();
    QCOMPARE(run({"get", address(), "net"}).out, "net/untitled/IP  \uFFFD[2J\uFFFD\n");
    m_recorder->setFaults({{Kind::Error, 0, "\x1b[2Jbusy", "GET NET CONFIG"}});
    const Run refused = run({"get", address(), "net"});
    QCOMPARE(refused.exitCode, 1);
    QVERIFY2(refused.err.contains("busy") && !refused.err.contains('\x1b'), qPrintable(refused.err));
}

void TestControlProgram::saysWhyItFails_data()
{
    // %1 is the host of the recorder.
    const TestTable<QStringList, QList<AnswerFault>, int, QString> row("arguments", "faults", "exit code",
                                                                       "message");
    const QStringList get{"get", "admin:admin@%1"};
    const QStringList set{"set", "admin:admin@%1", "net/untitled/IP=10.0.0.1"};
    row("no command", {}, {}, 2, "no command was given");
    row("unknown command", {"frob", "%1"}, {}, 2, "there is no command \"frob\"");
    row("no address", {"get"}, {}, 2, "no address was given");
    row("option of another command", get + QStringList("--dry-run"), {}, 2, "--dry-run is not for");
    row("half an assignment", {"set", "%1", "net/untitled/IP"}, {}, 2, "FILE/SECTION/KEY=VALUE");
    row("a key twice", set + QStringList("net/untitled/IP=10.0.0.2"), {}, 2, "net/untitled/IP is set twice");
    row("the clock", {"set", "%1", "time/untitled/YYYYMMDDHHMMSS=1"}, {}, 2, "is never sent");
    row("a file that is not taken", {"set", "admin:admin@%1", "soft/untitled/MODEL=1"}, {}, 2, "\"soft\"");
    row("no recorder", {"get", "admin:admin@127.0.0.1:1"}, {}, 3, "refuses the connection");
    row("no answer", get + QStringList{"--timeout", "1"}, {{Kind::Never}}, 3, "No answer from the recorder");
    row("no end of answers", get + QStringList{"--timeout", "1", "--time-limit", "1"}, {{Kind::Late, 400}}, 3,
        "longer than 1 s");
    row("wrong password", {"get", "admin:wrong@%1"}, {}, 4, "refused the login");
    row("unknown file", {"set", "admin:admin@%1", "x/y/z=1"}, {}, 5, "no file \"x\"");
    row("unknown key", {"set", "admin:admin@%1", "net/untitled/X=1"}, {}, 5, "no value net/untitled/X");
    row("no file of values", set + QStringList{"--file", "/nowhere"}, {}, 6, "cannot read /nowhere");
    row("refused", set, {{Kind::Error, 0, "busy", "PUT NET CONFIG"}}, 1, "busy");
    row("no answer of a recorder", get, {{Kind::NoAnswerLine, 0, {}, "GET NET CONFIG"}}, 7, "answer");
}

void TestControlProgram::saysWhyItFails()
{
    QFETCH(QStringList, arguments);
    QFETCH(QString, message);
    QFETCH(QList<AnswerFault>, faults);
    m_recorder->setFaults(faults);
    const Run run = this->run(arguments.replaceInStrings("%1", host()));
    QTEST(run.exitCode, "exit code");
    QVERIFY2(run.err.contains(message), qPrintable(run.err));
    QVERIFY2(!run.err.contains("wrong@"), qPrintable(run.err));
    QCOMPARE(m_received.contains("net"), arguments.value(0) == "set" && run.exitCode == 1);
}

void TestControlProgram::triesAgain()
{
    // At once: on Windows the program may be back before a posted event is.
    connect(m_recorder.get(), &recorder::RecorderServer::logged, this, [this](const QString &line) {
        if (line.contains("fault: "))
            m_recorder->setFaults({});
    });
    m_recorder->setFaults({{Kind::CloseBefore}});
    const Run run = this->run({"get", address(), "net/untitled/IP", "--retries", "1"});
    QCOMPARE(run.exitCode, 0);
    QCOMPARE(run.out, "net/untitled/IP  192.168.10.20\n");
}

void TestControlProgram::takesPasswords_data()
{
    const TestTable<QByteArray, QString, int> row("file", "variable", "exit code");
    row("of a file", "admin\n", {}, 0);
    row("of the environment", {}, "admin", 0);
    row("the file is asked first", "admin\r\n", "wrong", 0);
    row("wrong", "wrong\n", "admin", 4);
    row("none", {}, {}, 4);
}

void TestControlProgram::takesPasswords()
{
    QFETCH(QByteArray, file);
    QFETCH(QString, variable);
    QStringList arguments{"get", host(), "net/untitled/IP"};
    if (!file.isEmpty())
        arguments << "--password-file" << ownFile("password", file);
    const Run run = this->run(arguments, variable);
    QTEST(run.exitCode, "exit code");
    QVERIFY2(!run.err.contains("warning"), qPrintable(run.err));
}

void TestControlProgram::keepsPasswordFilesOfOthersOut()
{
#ifdef Q_OS_WIN
    QSKIP("Qt knows no rights of files there");
#endif
    const QString path = ownFile("password", "admin\n");
    QVERIFY(QFile::setPermissions(path, QFile::ReadOwner | QFile::ReadGroup));
    const Run run = this->run({"get", host(), "--password-file", path});
    QCOMPARE(run.exitCode, 6);
    QVERIFY2(run.err.contains("other users may read"), qPrintable(run.err));
}

void TestControlProgram::keepsASnapshot()
{
    const QString path = m_folder->filePath("kept.zip");
    const Run run = this->run({"backup", address(), "-o", path});
    QCOMPARE(run.exitCode, 0);
    QCOMPARE(run.out, path + "\n");
    QVERIFY(isForOwnerOnly(path));
    const auto kept = snapshotarchive::read(path);
    QCOMPARE(kept.problem, QString());
    QCOMPARE(kept.snapshot.info.recorder, host());
    QVERIFY(kept.snapshot.files["net"].contains("IP='192.168.10.20'"));
    QVERIFY(kept.snapshot.info.isLeftOut("users/untitled/PASSWD0"));
    QVERIFY(!kept.snapshot.files["users"].contains("PASSWD0='admin'"));

    QCOMPARE(this->run({"backup", address(), "-o", path}).exitCode, 6);
    QCOMPARE(this->run({"backup", address(), "-o", path, "--force", "--secrets"}).exitCode, 0);
    QVERIFY(snapshotarchive::read(path).snapshot.files["users"].contains("PASSWD0='admin'"));
}

void TestControlProgram::keepsASnapshotWhereTheWindowDoes()
{
    const Run run = this->run({"backup", address(), "--json"});
    QCOMPARE(run.exitCode, 0);
    const QJsonObject document = QJsonDocument::fromJson(run.out.toUtf8()).object();
    QCOMPARE(document["format"].toString(), "paravue-backup");
    QCOMPARE(document["version"].toInt(), 1);
    QCOMPARE(document["recorder"].toString(), host());
    const QString path = document["path"].toString();
    QVERIFY2(path.contains("/Paravue/snapshots/"), qPrintable(path));
    QCOMPARE(snapshotarchive::read(path).problem, QString());
}

void TestControlProgram::comparesSources_data()
{
    // The recorder has another address by the time of the comparison. %1 is the recorder, "snapshot",
    // "folder" and the others are files.
    const TestTable<QString, QString, QStringList, int, QString> row("first", "second", "patterns",
                                                                     "exit code", "text");
    const QString change = "net/untitled/IP: 192.168.10.20 -> 10.0.0.1\n";
    row("with itself", "%1", "%1", {}, 0, "");
    row("with a snapshot", "snapshot", "%1", {}, 5, change);
    row("with a folder", "folder", "%1", {}, 5,
        change + "only in %1: disk, soft, state, streams, time, timers, users\n");
    row("the other way round", "%1", "snapshot", {}, 5, "net/untitled/IP: 10.0.0.1 -> 192.168.10.20\n");
    row("a part that is the same", "snapshot", "%1", {"users", "net/*/DNS?"}, 0, "");
    row("a part that is not", "snapshot", "%1", {"net/*/I?"}, 5, change);
    row("a part that there is not", "snapshot", "%1", {"net/untitled/I"}, 5, "");
    row("with what it has", "kept", "%1", {}, 0, "");
    row("with what it has not", "%1", "missing", {}, 5,
        "net/untitled/X: (none) -> 1\nother/a/b: (none) -> 2\n");
    row("with a file that is damaged", "%1", "damaged", {}, 7, "");
    row("with none", "%1", "./none", {}, 6, "");
}

void TestControlProgram::comparesSources()
{
    QFETCH(QString, first);
    QFETCH(QString, second);
    QFETCH(QStringList, patterns);
    QFETCH(QString, text);
    const QDir folder(m_folder->path());
    QCOMPARE(run({"backup", address(), "-o", folder.filePath("snapshot")}).exitCode, 0);
    QVERIFY(folder.mkdir("folder") &&
            QFile::copy(m_recorder->filePath("net"), folder.filePath("folder/net")));
    ownFile("kept", "net/untitled/IP=10.0.0.1\nnet/untitled/X=\n");
    ownFile("missing", "net/untitled/IP=10.0.0.1\nnet/untitled/X=1\nother/a/b=2\n");
    ownFile("damaged", "PK\x03\x04 is how archives begin");
    QCOMPARE(run({"set", address(), "net/untitled/IP=10.0.0.1"}).exitCode, 0);

    const auto named = [&](const QString &source) {
        return folder.exists(source) || source.contains('/') ? folder.filePath(source)
                                                             : source.arg(address());
    };
    const Run run = this->run(QStringList{"diff", named(first), named(second)} + patterns);
    QTEST(run.exitCode, "exit code");
    const QString only = text.section("only in", 1).section(": ", 1).trimmed();
    QString expected = text.section("only in", 0, 0);
    for (const QString &file : only.split(", ", Qt::SkipEmptyParts))
        expected += "only in " + host() + ": " + file + "\n";
    QCOMPARE(run.out, expected);
}

void TestControlProgram::hidesDifferingSecrets()
{
    const QStringList command{"diff", ownFile("wanted", "users/untitled/PASSWD0=other\n"), address()};
    QCOMPARE(run(command).out, QString::fromUtf8("users/untitled/PASSWD0: •••••••• -> ••••••••\n"));
    const QString json = run(command + QStringList("--json")).out;
    QCOMPARE(pathsIn(json, "differences"), QStringList("users/untitled/PASSWD0"));
    QVERIFY2(!json.contains("other") && !json.contains("\"admin\""), qPrintable(json));
    QCOMPARE(run(command + QStringList("--secrets")).out, "users/untitled/PASSWD0: other -> admin\n");
}

void TestControlProgram::namesTheRecorderThatCannotBeCompared()
{
    const Run run = this->run({"diff", address(), "admin:admin@127.0.0.1:1"});
    QCOMPARE(run.exitCode, 3);
    QVERIFY2(run.err.contains("127.0.0.1:1: "), qPrintable(run.err));
    QCOMPARE(this->run({"diff", address()}).exitCode, 2);
}

void TestControlProgram::keepsNothingOnAFullDisk_data()
{
    const TestTable<QStringList> row("command");
    row("a snapshot", {"backup"});
    row("a support bundle", {"report", "--yes"});
}

void TestControlProgram::keepsNothingOnAFullDisk()
{
    QFETCH(QStringList, command);
    SKIP_WITHOUT_FULL_DISK();
    command.insert(1, address());
    const QString path = m_folder->filePath("kept");
    // There is room for the local copy of each file, but not for all that is in them.
    QFile description(m_recorder->filePath("interface"));
    QVERIFY(description.open(QIODevice::WriteOnly) && description.write("<pvsetup/>") > 0);
    description.close();
    const QString limited = QString("trap '' XFSZ; ulimit -f 5; exec '%1' '%2' -o '%3'")
                                .arg(CONTROL_PROGRAM, command.join("' '"), path);
    const Run run = runProgram("sh", {"-c", limited}, QProcessEnvironment::systemEnvironment());
    QCOMPARE(run.exitCode, 6);
    QVERIFY2(!QFile::exists(path) && run.err.contains(path), qPrintable(run.err));
    QCOMPARE(run.err.count('\n'), 2); // the warning, and one line
}

void TestControlProgram::noticesThatItsOutputIsLost_data()
{
    // %1 is the recorder, %2 an inventory with it.
    const TestTable<QString> row("command");
    row("values", "get %1 --json");
    row("differences", "diff %1 %1 --json");
    row("figures", "metrics %1");
    row("figures of many", "metrics --inventory %2");
    row("many", "get --inventory %2 --json");
    row("the help", "--help");
}

void TestControlProgram::noticesThatItsOutputIsLost()
{
    if (!QFile::exists("/dev/full"))
        QSKIP("there is no device that is always full");
    QFETCH(QString, command);
    command.replace("%1", host())
        .replace("%2", ownFile("one.ini", "[gate]\naddress=" + host().toUtf8() + "\n"));
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert("PARAVUE_PASSWORD", "admin");
    const Run run =
        runProgram("sh", {"-c", QString("'%1' %2 > /dev/full").arg(CONTROL_PROGRAM, command)}, environment);
    QCOMPARE(run.exitCode, 6);
    QCOMPARE(run.err.count("standard output cannot be written\n"), 1);
}

void TestControlProgram::tellsTheHealthOfDisks()
{
    m_recorder = std::make_unique<recorder::RecorderServer>(m_folder->filePath("other"), "everything");
    QVERIFY(m_recorder->listen());
    const Run run = this->run({"metrics", address()});
    QCOMPARE(run.exitCode, 0);
    const QString sample = QString("paravue_disk_health_percent{disk=\"SMART%1\",recorder=\"%2\"} %3\n");
    for (const auto &[disk, health] : {std::pair("1", "90"), {"2", "38"}, {"3", "12"}})
        QVERIFY2(run.out.contains(sample.arg(disk, host(), health)), qPrintable(run.out));
}

void TestControlProgram::tellsWhenItHasSaved()
{
    const QString name = "paravue_last_save_timestamp_seconds{";
    const Run before = run({"metrics", address()});
    QVERIFY(before.exitCode == 0 && !before.out.contains(name));
    QCOMPARE(run({"set", address(), "net/untitled/IP=10.0.0.1", "--dry-run"}).exitCode, 0);
    QVERIFY(!run({"metrics", address()}).out.contains(name));
    const qint64 begun = QDateTime::currentSecsSinceEpoch();
    QCOMPARE(run({"set", address(), "net/untitled/IP=10.0.0.1"}).exitCode, 0);
    const QString saved =
        run({"metrics", address()}).out.section(name, 1).section("} ", 1).section('\n', 0, 0);
    QVERIFY2(saved.toLongLong() >= begun && saved.toLongLong() <= QDateTime::currentSecsSinceEpoch(),
             qPrintable(saved));
}

void TestControlProgram::asksForThePassword_data()
{
    const TestTable<QByteArray, int> row("typed", "exit code");
    row("the right one", "admin\n", 0);
    row("another one", "guess\n", 4);
    row("none", "\x04", 4);
}

void TestControlProgram::asksForThePassword()
{
#ifdef Q_OS_WIN
    QSKIP("there are no pseudo terminals");
#else
    QFETCH(QByteArray, typed);
    const Run run = runOnTerminal({"get", host(), "net/untitled/IP"}, {{"Password of admin at ", typed}});
    QTEST(run.exitCode, "exit code");
    QCOMPARE(run.out.count("Password of "), 1); // nobody is asked twice
    QVERIFY2(!run.out.contains(QString::fromUtf8(typed).trimmed() + '\r'), qPrintable(run.out));
    QCOMPARE(run.out.contains("192.168.10.20"), run.exitCode == 0);
#endif
}

void TestControlProgram::stopsWhileItAsks_data()
{
    // %1 is the host of the recorder, %2 a folder.
    const TestTable<QStringList, QString> row("arguments", "prompt");
    row("for the password", {"get", "%1"}, "Password of admin at ");
    row("for the password before a save", {"set", "%1", "net/untitled/IP=10.0.0.1"}, "Password of admin at ");
    row("before it writes", {"report", "admin:admin@%1", "-o", "%2/report"}, "(yes/no)? ");
    row("before it begins", {"run", "admin:admin@%1", "soft_reboot"}, "(yes/no)? ");
}

void TestControlProgram::stopsWhileItAsks()
{
#ifdef Q_OS_WIN
    QSKIP("there are no pseudo terminals");
#else
    QFETCH(QStringList, arguments);
    QFETCH(QString, prompt);
    // The local copies of the recorder's files are there.
    const QTemporaryDir copies;
    const auto usual = qScopeGuard(
        [before = qgetenv("TMPDIR")] { before.isNull() ? qunsetenv("TMPDIR") : qputenv("TMPDIR", before); });
    qputenv("TMPDIR", copies.path().toLocal8Bit());
    bool echoes = false;
    arguments.replaceInStrings("%1", host()).replaceInStrings("%2", m_folder->path());
    const Run run = runOnTerminal(arguments, {{prompt, "\x03"}}, &echoes); // Ctrl+C
    QCOMPARE(run.exitCode, 8);
    QVERIFY2(run.out.contains("paravue-ctl: stopped\r\n"), qPrintable(run.out));
    QVERIFY(echoes);
    QCOMPARE(QDir(copies.path()).entryList(QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot),
             QStringList());
#endif
}

void TestControlProgram::describesWhatCanBeSet()
{
    const Run run = this->run({"describe", address(), "streams/stream_0/bitrate", "net/*/DHCP"});
    QCOMPARE(run.exitCode, 0);
    QVERIFY2(run.out.contains("streams/stream_0/bitrate  text  64..16384, pattern [0-9]{1,5}  Cameras › "),
             qPrintable(run.out));
    QVERIFY2(run.out.contains("net/untitled/DHCP         switch  on, off  "), qPrintable(run.out));
    const QString json = this->run({"describe", address(), "--json", "streams/stream_0/codec"}).out;
    const QJsonObject codec =
        QJsonDocument::fromJson(json.toUtf8()).object()["values"].toArray().at(0).toObject();
    QCOMPARE(codec["type"].toString(), "choice");
    QCOMPARE(codec["choices"].toArray().at(0).toObject()["value"].toString(), "h264");
    // Where a user types a new login, for example, is no value of the recorder.
    QCOMPARE(this->run({"describe", address(), "general"}).exitCode, 5);
}

void TestControlProgram::reportsWithoutSecrets()
{
    QCOMPARE(run({"set", address(), "users/untitled/PASSWD1=hunter2"}).exitCode, 0);
    const QString path = m_folder->filePath("report.txt");
    const Run refused = run({"report", address(), "-o", path});
    QCOMPARE(refused.exitCode, 5);
    QVERIFY2(!QFile::exists(path) && refused.err.contains("--yes"), qPrintable(refused.err));
    QCOMPARE(run({"report", address(), "-o", path, "--yes"}).exitCode, 0);
    QFile file(path);
    QVERIFY(file.open(QIODevice::ReadOnly));
    const QString text = QString::fromUtf8(file.readAll());
    for (const char *part : {"firmware: 4.2.1", "==== file net\n", "users/untitled/PASSWD1 (secret)\n",
                             " exchange ended\n", "IP='192.168.10.20'", "outcome: 0\n"})
        QVERIFY2(text.contains(part), part);
    QVERIFY(!text.contains("hunter2") && !text.contains("admin:admin"));
    QCOMPARE(run({"report", address(), "-o", path, "--yes"}).exitCode, 6);
}

void TestControlProgram::reportsWhatHasFailed()
{
    m_recorder->setFaults({{Kind::Error, 0, "busy", "GET DISK CONFIG"}});
    const Run run = this->run({"report", address()});
    QCOMPARE(run.exitCode, 1);
    QVERIFY2(run.out.contains("outcome: 1 ") && run.out.contains("==== file net\n"),
             qPrintable(run.out.left(2000)));
    QVERIFY2(run.out.contains("busy"), qPrintable(run.out.left(2000)));
    const Run json = this->run({"report", address(), "--json"});
    QCOMPARE(json.exitCode, 1);
    const QJsonObject document = QJsonDocument::fromJson(json.out.toUtf8()).object();
    QCOMPARE(document["format"].toString(), "paravue-report");
    QCOMPARE(document["version"].toInt(), 1);
    QCOMPARE(document["recorder"].toString(), host());
    QVERIFY(document["files"].toArray().contains("net") && !document["files"].toArray().contains("disk"));
    QVERIFY(document["secrets"].toArray().contains("streams/stream_0/password"));
    QVERIFY(document["report"].toString().contains("outcome: 1 "));
}

void TestControlProgram::usesTheTerminal()
{
    const QString script = QStandardPaths::findExecutable("script"); // gives a program a terminal
    if (script.isEmpty())
        QSKIP("there is no script(1)");
    const QString command = CONTROL_PROGRAM " set " + address() + " --dry-run net/untitled/IP=10.0.0.1";
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert("TERM", "xterm");
    const QString plain = "net/untitled/IP: 192.168.10.20 -> 10.0.0.1";
    const QString coloured = "net/untitled/IP: \x1b[31m192.168.10.20\x1b[0m -> \x1b[32m10.0.0.1\x1b[0m";
    Run run = runProgram(script, {"-qec", command, "/dev/null"}, environment);
    QVERIFY2(run.out.contains(coloured) && run.out.contains(host() + ": 0 %"), qPrintable(run.out));
    environment.insert("NO_COLOR", "1");
    run = runProgram(script, {"-qec", command, "/dev/null"}, environment);
    QVERIFY2(run.out.contains(plain), qPrintable(run.out));
}

QTEST_GUILESS_MAIN(TestControlProgram)
#include "tst_control_program.moc"
