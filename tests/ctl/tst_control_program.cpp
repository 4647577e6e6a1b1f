#include "ControlProgram.h"
#include "ControlTerminal.h"
#include "recorder/RecorderServer.h"
#include "snapshots/RecorderLock.h"
#include "snapshots/SnapshotArchive.h"
#include "snapshots/SnapshotFolder.h"
#include "support/FullDisk.h"
#include "support/OwnUserFolders.h"
#include "support/OwnerOnly.h"
#include "support/TestTable.h"

#include <QDir>
#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QProcess>
#include <QStandardPaths>
#include <QTemporaryDir>
#include <QTest>
#include <QTimer>

using namespace paravue;
using namespace paravue::test;
using recorder::AnswerFault;
using Kind = recorder::AnswerFault::Kind;

class TestControlProgram : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void needsNoScreen();
    void getsValues_data();
    void getsValues();
    void printsCaptions();
    void hidesSecrets();
    void printsNothingThatSteersATerminal();
    void saysWhyItFails_data();
    void saysWhyItFails();
    void triesAgain();
    void takesPasswords_data();
    void takesPasswords();
    void keepsPasswordFilesOfOthersOut();
    void keepsASnapshot();
    void keepsASnapshotWhereTheWindowDoes();
    void sendsWhatAnEditNeeds_data();
    void sendsWhatAnEditNeeds();
    void confirmsWithTheNewPassword();
    void readsValuesFromAFile();
    void sendsNothingWithoutNeed_data();
    void sendsNothingWithoutNeed();
    void saysWhatTheRecorderHasNotKept();
    void saysWhatHasArrived();
    void stopsBetweenTwoFiles();
    void comparesSources_data();
    void comparesSources();
    void hidesDifferingSecrets();
    void namesTheRecorderThatCannotBeCompared();
    void restoresASnapshot_data();
    void restoresASnapshot();
    void refusesStrangeSnapshots();
    void leavesALockedRecorderAlone();
    void ignoresALockThatNobodyHolds();
    void runsOneAtATime();
    void survivesItsDeath();
    void keepsNothingOnAFullDisk_data();
    void keepsNothingOnAFullDisk();
    void tellsTheHealthOfDisks();
    void tellsWhenItHasSaved();
    void asksForThePassword_data();
    void asksForThePassword();
    void asksBeforeWhatIsDangerous_data();
    void asksBeforeWhatIsDangerous();
    void sendsOnlyWhatTheDescriptionAllows();
    void describesWhatCanBeSet();
    void reportsWithoutSecrets();
    void reportsWhatHasFailed();
    void usesTheTerminal();
    void runsFunctions_data();
    void runsFunctions();
    void keepsTheReport();

private:
    using Run = ControlRun;

    Run run(const QStringList &arguments, const QString &password = {})
    {
        return runControlProgram(arguments, password, &m_running);
    }
    QString host() const { return "127.0.0.1:" + QString::number(m_recorder->port()); }
    QString address() const { return "admin:admin@" + host(); }
    QByteArray fileOfRecorder(const QString &name) const;
    QString ownFile(const QString &name, const QByteArray &content) const;

    OwnUserFolders m_user;
    std::unique_ptr<QTemporaryDir> m_folder;
    std::unique_ptr<recorder::RecorderServer> m_recorder;
    QStringList m_received; ///< the files that the recorder has got
    QProcess *m_running = nullptr;
};

namespace
{

QStringList pathsIn(const QString &json, const QString &list)
{
    QStringList paths;
    for (const auto &row : QJsonDocument::fromJson(json.toUtf8()).object()[list].toArray())
        paths += row.toObject()["path"].toString();
    return paths;
}

} // namespace

void TestControlProgram::init()
{
    m_received.clear();
    m_folder = std::make_unique<QTemporaryDir>();
    m_recorder = std::make_unique<recorder::RecorderServer>(m_folder->filePath("data"));
    QVERIFY2(m_recorder->listen(), qPrintable(m_recorder->errorString()));
    connect(m_recorder.get(), &recorder::RecorderServer::fileReceived, this,
            [this](const QString &name) { m_received += name; });
}

QByteArray TestControlProgram::fileOfRecorder(const QString &name) const
{
    QFile file(m_recorder->filePath(name));
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

QString TestControlProgram::ownFile(const QString &name, const QByteArray &content) const
{
    QFile file(m_folder->filePath(name));
    if (!file.open(QIODevice::WriteOnly) || file.write(content) != content.size())
        return {};
    file.setPermissions(QFile::ReadOwner | QFile::WriteOwner);
    return file.fileName();
}

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
    row("no part of a name", {"net/untitled/I"}, {});
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
    int logins = 0;
    connect(m_recorder.get(), &recorder::RecorderServer::logged, this, [&](const QString &) {
        if (++logins == 1)
            QTimer::singleShot(0, this, [this] { m_recorder->setFaults({}); });
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
    const Run run = this->run({"backup", address()});
    QCOMPARE(run.exitCode, 0);
    const QString path = run.out.trimmed();
    QVERIFY2(path.contains("/Paravue/snapshots/"), qPrintable(path));
    QCOMPARE(snapshotarchive::read(path).problem, QString());
}

void TestControlProgram::sendsWhatAnEditNeeds_data()
{
    const TestTable<QStringList, QStringList> row("values", "files");
    row("the file of the value", {"net/untitled/IP=10.0.0.1"}, {"net"});
    row("and the state file that names it", {"streams/common/name=Gate"}, {"state", "streams"});
    row("several", {"net/untitled/IP=10.0.0.1", "users/untitled/NAME3=guard"}, {"net", "users"});
}

void TestControlProgram::sendsWhatAnEditNeeds()
{
    QFETCH(QStringList, values);
    const QByteArray time = fileOfRecorder("time");
    const Run run = this->run(QStringList{"set", address(), "--json"} + values);
    QVERIFY2(run.exitCode == 0, qPrintable(run.err));
    m_received.sort();
    QTEST(m_received, "files");
    QCOMPARE(fileOfRecorder("time"), time);
    const QJsonObject document = QJsonDocument::fromJson(run.out.toUtf8()).object();
    QCOMPARE(document["format"].toString(), "paravue-changes");
    QVERIFY(document["confirmed"].toBool());
    QCOMPARE(document["changes"].toArray().size(), values.size());
    for (const QString &value : values) {
        const QString path = value.section('=', 0, 0);
        const QString got = this->run({"get", address(), path}).out;
        QCOMPARE(got, path + "  " + value.section('=', 1) + "\n");
    }
}

void TestControlProgram::confirmsWithTheNewPassword()
{
    QCOMPARE(run({"set", address(), "users/untitled/PASSWD0=new"}).exitCode, 0);
    QCOMPARE(run({"get", address(), "net"}).exitCode, 4);
    QCOMPARE(run({"get", "admin:new@" + host(), "net"}).exitCode, 0);
}

void TestControlProgram::readsValuesFromAFile()
{
    const QString path =
        ownFile("wanted", "# the gate\r\n\r\nstreams/common/name=Gate = 1\nnet/untitled/IP=\n");
    const Run run = this->run({"set", address(), "--file", path});
    QCOMPARE(run.exitCode, 0);
    QCOMPARE(run.out, "net/untitled/IP: 192.168.10.20 -> \n"
                      "streams/common/name: Warehouse recorder -> Gate = 1\n"
                      "Sent and confirmed: net, state, streams\n");
    const QString bad = ownFile("bad", "net/untitled/IP=1\nnet/IP=secret\n");
    const Run refused = this->run({"set", address(), "--file", bad});
    QCOMPARE(refused.exitCode, 7);
    QVERIFY2(refused.err.contains(bad + ":2:") && !refused.err.contains("secret"), qPrintable(refused.err));
    QCOMPARE(this->run({"set", address(), "--file", ownFile("latin", "a/b/c=\xe4\n")}).exitCode, 7);
}

void TestControlProgram::sendsNothingWithoutNeed_data()
{
    const TestTable<QStringList, QString> row("arguments", "printed");
    row("a dry run", {"net/untitled/IP=10.0.0.1", "--dry-run"},
        "net/untitled/IP: 192.168.10.20 -> 10.0.0.1\nNot sent: net\n");
    row("the present value", {"net/untitled/IP=192.168.10.20"}, "The recorder has these values already.\n");
}

void TestControlProgram::sendsNothingWithoutNeed()
{
    QFETCH(QStringList, arguments);
    const Run run = this->run(QStringList{"set", address()} + arguments);
    QCOMPARE(run.exitCode, 0);
    QTEST(run.out, "printed");
    QCOMPARE(m_received, QStringList());
}

void TestControlProgram::saysWhatTheRecorderHasNotKept()
{
    const QByteArray before = fileOfRecorder("net");
    connect(m_recorder.get(), &recorder::RecorderServer::fileReceived, this, [&](const QString &name) {
        QFile file(m_recorder->filePath(name));
        if (name == "net" && file.open(QIODevice::WriteOnly))
            file.write(before);
    });
    const Run run = this->run({"set", address(), "net/untitled/IP=10.0.0.1", "users/untitled/NAME3=guard"});
    QCOMPARE(run.exitCode, 5);
    QVERIFY2(run.err.contains("not kept net/untitled/IP as"), qPrintable(run.err));
}

void TestControlProgram::saysWhatHasArrived()
{
    m_recorder->setFaults({{Kind::CloseBefore, 0, {}, "PUT USER CONFIG"}});
    const Run run = this->run({"set", address(), "net/untitled/IP=10.0.0.1", "users/untitled/NAME3=guard"});
    QCOMPARE(run.exitCode, 3);
    QVERIFY2(run.err.contains("; arrived: net; not confirmed: users"), qPrintable(run.err));
}

void TestControlProgram::stopsBetweenTwoFiles()
{
#ifdef Q_OS_WIN
    QSKIP("only a console can end a program there");
#endif
    m_recorder->setReplyDelay(200); // the answer comes behind the signal
    connect(m_recorder.get(), &recorder::RecorderServer::fileReceived, this,
            [this] { m_running->terminate(); });
    const Run run = this->run({"set", address(), "streams/stream_0/name=Gate", "net/untitled/IP=10.0.0.1",
                               "users/untitled/NAME3=guard"});
    QCOMPARE(run.exitCode, 8);
    QVERIFY2(run.err.endsWith("stopped; arrived: streams; not confirmed: net, users\n"), qPrintable(run.err));
    QCOMPARE(m_received, QStringList("streams"));
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

void TestControlProgram::restoresASnapshot_data()
{
    // The edits are made after the snapshot, with or without secrets, was taken.
    const TestTable<QStringList, bool, QStringList, int, QStringList> row("edits", "secrets", "arguments",
                                                                          "exit code", "restored");
    const QStringList edits{"net/untitled/DNS1=10.0.0.2", "net/untitled/IP=10.0.0.1",
                            "streams/common/name=Gate"};
    // Setting the name has set that in the state file, too.
    const QStringList all{"net/untitled/DNS1", "net/untitled/IP", "state/identity/DEVICE_NAME",
                          "streams/common/name"};
    row("everything", edits, false, {}, 0, all);
    row("some values", edits, false, {"net/*/IP", "users"}, 0, {"net/untitled/IP"});
    row("a dry run", edits, false, {"--dry-run"}, 0, all);
    row("a value that it lacks", edits, false, {"net/untitled/X"}, 5, {});
    row("no password that was left out", {"net/untitled/IP=10.0.0.1", "users/untitled/PASSWD1=new"}, false,
        {}, 0, {"net/untitled/IP"});
    row("a password", {"users/untitled/PASSWD1=new"}, true, {}, 0, {"users/untitled/PASSWD1"});
    const QStringList moved{"net/untitled/IP=10.0.0.1", "users/untitled/LEVEL1=5",
                            "users/untitled/NAME1=guard", "users/untitled/PASSWD1=new"};
    row("a list that has moved as a whole", moved, true, {"users/*/LEVEL1"}, 0,
        {"users/untitled/LEVEL1", "users/untitled/NAME1", "users/untitled/PASSWD1"});
    row("no list that has moved without its passwords", moved, false, {}, 5, {"net/untitled/IP"});
}

void TestControlProgram::restoresASnapshot()
{
    QFETCH(QStringList, edits);
    QFETCH(bool, secrets);
    QFETCH(QStringList, arguments);
    const QString path = m_folder->filePath("kept.zip");
    QStringList backup{"backup", address(), "-o", path};
    if (secrets)
        backup << "--secrets";
    QCOMPARE(run(backup).exitCode, 0);
    QCOMPARE(run(QStringList{"set", address()} + edits).exitCode, 0);
    const QByteArray time = fileOfRecorder("time");
    m_received.clear();

    const Run run = this->run(QStringList{"restore", address(), path, "--json"} + arguments);
    QTEST(run.exitCode, "exit code");
    QTEST(pathsIn(run.out, "changes"), "restored");
    QCOMPARE(fileOfRecorder("time"), time);
    const bool isSent = !m_received.isEmpty();
    const Run compared = this->run({"diff", path, address(), "--json"});
    for (const QString &changed : pathsIn(run.out, "changes"))
        QCOMPARE(pathsIn(compared.out, "differences").contains(changed), !isSent);
    QCOMPARE(isSent, !arguments.contains("--dry-run") && !pathsIn(run.out, "changes").isEmpty());
}

void TestControlProgram::refusesStrangeSnapshots()
{
    const QString path = m_folder->filePath("kept.zip");
    QCOMPARE(run({"backup", address(), "-o", path}).exitCode, 0);
    QCOMPARE(run({"set", address(), "net/untitled/IP=10.0.0.1"}).exitCode, 0);
    for (const bool isOfAnother : {true, false}) {
        Snapshot snapshot = snapshotarchive::read(path).snapshot;
        (isOfAnother ? snapshot.info.recorder : snapshot.info.model) = "other";
        QCOMPARE(snapshotarchive::write(snapshot, path), QString());
        const Run run = this->run({"restore", address(), path});
        QCOMPARE(run.exitCode, 5);
        QVERIFY2(run.err.contains("other") && run.err.contains("--force"), qPrintable(run.err));
    }
    QVERIFY(fileOfRecorder("net").contains("10.0.0.1"));
    QCOMPARE(run({"restore", address(), path, "--force"}).exitCode, 0);
    QVERIFY(!fileOfRecorder("net").contains("10.0.0.1"));
    QCOMPARE(run({"restore", address(), "/nowhere"}).exitCode, 6);
    QCOMPARE(run({"restore", address(), ownFile("text", "a")}).exitCode, 7);
}

void TestControlProgram::leavesALockedRecorderAlone()
{
    const QStringList command{"set", address(), "net/untitled/IP=10.0.0.1"};
    {
        const RecorderLock lock(SnapshotFolder(SnapshotFolder::usualRoot(), host()));
        QCOMPARE(lock.problem(), QString());
        const Run run = this->run(command);
        QCOMPARE(run.exitCode, 6);
        const QString holder = QString::number(QCoreApplication::applicationPid());
        QVERIFY2(run.err.contains("process " + holder), qPrintable(run.err));
        QCOMPARE(this->run(command + QStringList("--dry-run")).exitCode, 0);
    }
    QCOMPARE(m_received, QStringList());
    QCOMPARE(run(command).exitCode, 0);
}

/// A program was killed before it could write its name into the lock.
void TestControlProgram::ignoresALockThatNobodyHolds()
{
    const SnapshotFolder folder(SnapshotFolder::usualRoot(), host());
    QCOMPARE(folder.make(), QString());
    QFile lock(folder.path() + "/changing.lock");
    QVERIFY(lock.open(QIODevice::WriteOnly));
    const QStringList command{"set", address(), "net/untitled/IP=10.0.0.1"};
    QCOMPARE(run(command).exitCode, 6);
    QVERIFY(lock.setFileTime(QDateTime::currentDateTime().addSecs(-90), QFileDevice::FileModificationTime));
    QCOMPARE(run(command).exitCode, 0);
}

/// Two programs, with a recorder that answers late.
void TestControlProgram::runsOneAtATime()
{
    const QStringList command{"set", address(), "net/untitled/IP=10.0.0.1", "users/untitled/NAME3=guard"};
    ControlRun second;
    connect(m_recorder.get(), &recorder::RecorderServer::fileReceived, this, [&](const QString &name) {
        if (name == "net")
            second = runControlProgram(command, {});
    });
    QProcess *first = nullptr;
    const Run run = runControlProgram(command, {}, &first);
    QCOMPARE(run.exitCode, 0);
    QCOMPARE(second.exitCode, 6);
    QVERIFY2(second.err.contains("paravue-ctl on ") && second.err.contains("(process "),
             qPrintable(second.err));
    QCOMPARE(m_received, QStringList({"net", "users"}));
}

/// A program that was killed in the middle of a save keeps no later one out, which completes what it began.
void TestControlProgram::survivesItsDeath()
{
    const QStringList command{"set", address(), "net/untitled/IP=10.0.0.1", "users/untitled/NAME3=guard"};
    const QByteArray users = fileOfRecorder("users");
    m_recorder->setReplyDelay(200); // the answer comes behind the end
    const auto connection = connect(m_recorder.get(), &recorder::RecorderServer::fileReceived, this,
                                    [this] { m_running->kill(); });
    run(command);
    disconnect(connection);
    QVERIFY(fileOfRecorder("net").contains("10.0.0.1"));
    QCOMPARE(fileOfRecorder("users"), users);
    m_recorder->setReplyDelay(0);
    const Run again = run(command);
    QVERIFY2(again.exitCode == 0, qPrintable(again.err));
    QVERIFY2(again.out.contains("Sent and confirmed: users\n"), qPrintable(again.out));
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

void TestControlProgram::asksBeforeWhatIsDangerous_data()
{
    const TestTable<QStringList, QByteArray, int> row("command", "typed", "exit code");
    row("a function, yes", {"run", "soft_reset"}, "yes\n", 0);
    row("a function, no", {"run", "soft_reset"}, "no\n", 5);
    row("a function, only a letter", {"run", "soft_reset"}, "y\n", 5);
    row("a report, yes", {"report", "-o", "report.txt"}, "yes\n", 0);
    row("a report, no answer", {"report", "-o", "report.txt"}, "\x04", 5);
}

void TestControlProgram::asksBeforeWhatIsDangerous()
{
#ifdef Q_OS_WIN
    QSKIP("there are no pseudo terminals");
#else
    QFETCH(QStringList, command);
    QFETCH(QByteArray, typed);
    command.insert(1, address());
    command.replaceInStrings("report.txt", m_folder->filePath("report.txt"));
    const Run run = runOnTerminal(command, {{"(yes/no)? ", typed}});
    QTEST(run.exitCode, "exit code");
    QCOMPARE(run.out.count("(yes/no)?"), 1);
    if (command.contains("-o"))
        QCOMPARE(QFile::exists(m_folder->filePath("report.txt")), run.exitCode == 0);
#endif
}

void TestControlProgram::sendsOnlyWhatTheDescriptionAllows()
{
    const QStringList command{"set", address(), "streams/stream_0/bitrate=20000", "net/untitled/DNS1=x y"};
    const Run run = this->run(command);
    QCOMPARE(run.exitCode, 1);
    QVERIFY2(run.err.contains("streams/stream_0/bitrate is not allowed: it is above 16384; "),
             qPrintable(run.err));
    QVERIFY2(run.err.contains("net/untitled/DNS1 is not allowed"), qPrintable(run.err));
    QCOMPARE(m_received, QStringList());
    QCOMPARE(this->run(command + QStringList("--force")).exitCode, 0);
    // What the recorder has already is not judged.
    QCOMPARE(this->run(command).exitCode, 0);
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

void TestControlProgram::runsFunctions_data()
{
    const TestTable<QStringList, int, QString, QString> row("arguments", "exit code", "request", "message");
    row("one without danger", {"send_test_email"}, 0, "SEND TEST EMAIL", "");
    row("a dangerous one", {"soft_reset"}, 5, "", "--yes runs it");
    row("a confirmed one", {"format_usb", "--yes"}, 0, "DO FORMAT", "");
    row("with a value of the recorder", {"set_time_ntp"}, 0, "PUT TIME CONFIG", "");
    row("with an argument", {"remove_package", "motion-detector", "-y"}, 0, "PUT SOFT CONFIG", "");
    row("with a file", {"soft_istall_packet", CONTROL_PROGRAM}, 1, "INSTALL DEB", "Device error");
    row("an argument that is missing", {"set_time"}, 2, "", "set_time needs an argument");
    row("an argument too many", {"soft_reboot", "now"}, 2, "", "takes no argument");
    row("lines in an argument", {"remove_package", "a\nTIME=1", "-y"}, 2, "", "cannot be the argument");
    row("a file that there is not", {"soft_istall_packet", "/nowhere"}, 6, "", "/nowhere cannot be read");
    row("none", {"save_settings"}, 2, "", "the functions are clear_email_usb, ");
}

void TestControlProgram::runsFunctions()
{
    QFETCH(QStringList, arguments);
    QFETCH(QString, request);
    QFETCH(QString, message);
    QStringList log;
    connect(m_recorder.get(), &recorder::RecorderServer::logged, this,
            [&log](const QString &line) { log += line; });
    const Run run = this->run(QStringList{"run", address()} + arguments);
    QTEST(run.exitCode, "exit code");
    QVERIFY2(run.err.contains(message), qPrintable(run.err));
    const bool isRequested = log.join('\n').contains(request.isEmpty() ? "PUT" : request);
    QVERIFY2(isRequested != request.isEmpty(), qPrintable(log.join('\n')));
}

void TestControlProgram::keepsTheReport()
{
    const QString path = m_folder->filePath("report");
    const QString line = "UPTIME_DAYS = '41'";
    const Run shown = run({"run", address(), "get_report"});
    QVERIFY2(shown.exitCode == 0 && shown.out.contains(line), qPrintable(shown.out));
    QCOMPARE(run({"run", address(), "get_report", "-o", path}).exitCode, 0);
    QFile file(path);
    QVERIFY(file.open(QIODevice::ReadOnly) && file.readAll().contains(line.toUtf8()));
    QCOMPARE(run({"run", address(), "get_report", "-o", path}).exitCode, 6);
}

QTEST_GUILESS_MAIN(TestControlProgram)
#include "tst_control_program.moc"
