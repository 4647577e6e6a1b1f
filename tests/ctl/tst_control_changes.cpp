#include "ControlTerminal.h"
#include "ControlTest.h"
#include "snapshots/RecorderLock.h"
#include "snapshots/SnapshotArchive.h"
#include "snapshots/SnapshotFolder.h"
#include "support/TestTable.h"

#include <QProcess>

using namespace paravue;
using namespace paravue::test;
using Kind = recorder::AnswerFault::Kind;

/// Commands that change a recorder: set, restore and run.
class TestControlChanges : public ControlTest
{
    Q_OBJECT

private Q_SLOTS:
    void init() { startRecorder(); }
    void sendsWhatAnEditNeeds_data();
    void sendsWhatAnEditNeeds();
    void confirmsWithTheNewPassword();
    void readsValuesFromAFile();
    void sendsNothingWithoutNeed_data();
    void sendsNothingWithoutNeed();
    void sendsNothingThatIsNotReadBack_data();
    void sendsNothingThatIsNotReadBack();
    void saysWhatTheRecorderHasNotKept();
    void saysWhatHasArrived_data();
    void saysWhatHasArrived();
    void stopsBetweenTwoFiles();
    void restoresASnapshot_data();
    void restoresASnapshot();
    void namesWhatItCannotRestore();
    void refusesStrangeSnapshots();
    void leavesALockedRecorderAlone();
    void ignoresALockThatNobodyHolds();
    void runsOneAtATime();
    void survivesItsDeath_data();
    void survivesItsDeath();
    void asksBeforeWhatIsDangerous_data();
    void asksBeforeWhatIsDangerous();
    void sendsOnlyWhatTheDescriptionAllows();
    void runsFunctions_data();
    void runsFunctions();
    void keepsTheReport();
};

void TestControlChanges::sendsWhatAnEditNeeds_data()
{
    const TestTable<QStringList, QStringList> row("values", "files");
    row("the file of the value", {"net/untitled/IP=10.0.0.1"}, {"net"});
    row("and the state file that names it", {"streams/common/name=Gate"}, {"state", "streams"});
    row("several", {"net/untitled/IP=10.0.0.1", "users/untitled/NAME3=guard"}, {"net", "users"});
}

void TestControlChanges::sendsWhatAnEditNeeds()
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

void TestControlChanges::confirmsWithTheNewPassword()
{
    QCOMPARE(run({"set", address(), "users/untitled/PASSWD0=new"}).exitCode, 0);
    QCOMPARE(run({"get", address(), "net"}).exitCode, 4);
    QCOMPARE(run({"get", "admin:new@" + host(), "net"}).exitCode, 0);
}

void TestControlChanges::readsValuesFromAFile()
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

void TestControlChanges::sendsNothingWithoutNeed_data()
{
    const TestTable<QStringList, QString> row("arguments", "printed");
    row("a dry run", {"net/untitled/IP=10.0.0.1", "--dry-run"},
        "net/untitled/IP: 192.168.10.20 -> 10.0.0.1\nNot sent: net\n");
    const QString none = "The recorder has these values already.\n";
    row("the present value", {"net/untitled/IP=192.168.10.20"}, none);
    row("an empty value and no such key", {"net/untitled/DNS3="}, none);
    row("the same by force", {"net/untitled/DNS3=", "--force"}, none);
}

void TestControlChanges::sendsNothingWithoutNeed()
{
    QFETCH(QStringList, arguments);
    const Run run = this->run(QStringList{"set", address()} + arguments);
    QCOMPARE(run.exitCode, 0);
    QTEST(run.out, "printed");
    QCOMPARE(m_received, QStringList());
}

void TestControlChanges::sendsNothingThatIsNotReadBack_data()
{
    // The recorder has a quote in streams/common/place. %1 is a snapshot with one in net/untitled/IP.
    const TestTable<QStringList, QString> row("command", "named");
    row("a quote", {"set", "net/untitled/IP=Bob's", "--force"}, "net/untitled/IP");
    row("a quote in a snapshot", {"restore", "%1", "--force"}, "net/untitled/IP");
    row("a space in a key", {"set", "net/untitled/A B=1", "--force"}, "net/untitled/A B");
    row("a semicolon in a key", {"set", "net/untitled/A;B=1", "--force"}, "net/untitled/A;B");
    row("a space in a section", {"set", "timers/a b/c=1", "--force"}, "timers/a b/c");
    row("another value of the file", {"set", "streams/common/location=Gate"}, "streams/common/place");
    row("what a directive would put into a state file", {"set", "net/untitled/IP=1.2.3.4"}, "state/a/place");
    row("what the recorder has", {"set", "streams/common/place=Bob's"}, {});
    row("in its place", {"set", "streams/common/place=Gate"}, {});
}

void TestControlChanges::sendsNothingThatIsNotReadBack()
{
    QFETCH(QStringList, command);
    QFETCH(QString, named);
    const QString path = m_folder->filePath("quoted.zip");
    Snapshot snapshot;
    snapshot.info.time = QDateTime::currentDateTimeUtc();
    snapshot.files["net"] = fileOfRecorder("net").replace("'192.168.10.20'", "\"Bob's\"");
    QCOMPARE(snapshotarchive::write(snapshot, path), QString());
    QFile streams(m_recorder->filePath("streams"));
    QVERIFY(streams.open(QIODevice::Append) && streams.write("\n[ common ]\nplace = \"Bob's\"\n") > 0);
    streams.close();
    QFile state(m_recorder->filePath("state"));
    QVERIFY(state.open(QIODevice::Append) &&
            state.write("\n#!s/place=[^{}\\r\\n]*(?=[\\r\\n])/place='{streams/common/place}'/\n"
                        "#!s/ip=[^{}\\r\\n]*(?=[\\r\\n])/ip='{net/untitled/IP}'/\n"
                        "[ a ]\nplace=\"Bob's\"\nip=1\n") > 0);
    state.close();
    command.insert(1, address());
    const Run run = this->run(command.replaceInStrings("%1", path));
    QCOMPARE(run.exitCode, named.isEmpty() ? 0 : 7);
    QVERIFY2(run.err.endsWith(named.isEmpty() ? "\n" : "nothing was sent: " + named + '\n'),
             qPrintable(run.err));
    QCOMPARE(m_received.isEmpty(), command.last() != "streams/common/place=Gate");
}

void TestControlChanges::saysWhatTheRecorderHasNotKept()
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

void TestControlChanges::saysWhatHasArrived_data()
{
    const TestTable<Kind, QString> row("fault", "message");
    row("a break", Kind::CloseBefore, "closed the connection; ");
    row("the end of its time", Kind::Late, "longer than 3 s; ");
}

void TestControlChanges::saysWhatHasArrived()
{
    QFETCH(Kind, fault);
    QFETCH(QString, message);
    m_recorder->setFaults({{fault, 20'000, {}, "PUT USER CONFIG"}});
    const Run run = this->run(
        {"set", address(), "net/untitled/IP=10.0.0.1", "users/untitled/NAME3=guard", "--time-limit", "3"});
    QCOMPARE(run.exitCode, 3);
    QVERIFY2(run.err.contains(message) && run.err.contains("; arrived: net; not confirmed: users"),
             qPrintable(run.err));
}

void TestControlChanges::stopsBetweenTwoFiles()
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

void TestControlChanges::restoresASnapshot_data()
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

void TestControlChanges::restoresASnapshot()
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

void TestControlChanges::namesWhatItCannotRestore()
{
    const QString path = m_folder->filePath("kept.zip");
    QCOMPARE(run({"backup", address(), "-o", path}).exitCode, 0);
    Snapshot snapshot = snapshotarchive::read(path).snapshot;
    snapshot.files["net"].replace("192.168.10.20'", "10.0.0.1'\nA/B=1");
    QCOMPARE(snapshotarchive::write(snapshot, path), QString());
    for (const QString expected :
         {"net/untitled/IP: 192.168.10.20 -> 10.0.0.1\nSent and confirmed: net\n", ""}) {
        const Run run = this->run({"restore", address(), path});
        QCOMPARE(run.exitCode, 5);
        QCOMPARE(run.out, expected);
        QVERIFY2(run.err.endsWith("not restored: net/untitled/A/B\n"), qPrintable(run.err));
    }
    QCOMPARE(run({"restore", address(), path, "net/untitled/I*"}).exitCode, 0);
}

void TestControlChanges::refusesStrangeSnapshots()
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

void TestControlChanges::leavesALockedRecorderAlone()
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
void TestControlChanges::ignoresALockThatNobodyHolds()
{
    const SnapshotFolder folder(SnapshotFolder::usualRoot(), host());
    QCOMPARE(folder.make(), QString());
    QFile lock(folder.path() + "/changing.lock");
    QVERIFY(lock.open(QIODevice::WriteOnly));
    const QStringList command{"set", address(), "net/untitled/IP=10.0.0.1"};
    QCOMPARE(run(command).exitCode, 6);
    QVERIFY(lock.setFileTime(QDateTime::currentDateTime().addSecs(-90), QFileDevice::FileModificationTime));
    lock.close();
    QCOMPARE(run(command).exitCode, 0);
}

/// Two programs, with a recorder that answers late.
void TestControlChanges::runsOneAtATime()
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

void TestControlChanges::survivesItsDeath_data()
{
    // %1 is a snapshot with another name.
    const TestTable<QStringList, QString> row("command", "rest");
    row("two files", {"set", "net/untitled/IP=10.0.0.1", "users/untitled/NAME3=guard"}, "users");
    row("a state file", {"set", "streams/common/name=Gate"}, "state");
    row("a state file, restored", {"restore", "%1", "streams/common/*"}, "state");
}

/// A program that was killed in the middle of a save keeps no later one out, which completes what it began.
void TestControlChanges::survivesItsDeath()
{
    QFETCH(QStringList, command);
    QFETCH(QString, rest);
    const QString path = m_folder->filePath("kept.zip");
    Snapshot snapshot;
    snapshot.info.time = QDateTime::currentDateTimeUtc();
    snapshot.files["streams"] = fileOfRecorder("streams").replace("Warehouse recorder", "Gate");
    QCOMPARE(snapshotarchive::write(snapshot, path), QString());
    command.insert(1, address());
    command.replaceInStrings("%1", path);
    const QByteArray before = fileOfRecorder(rest);
    m_recorder->setReplyDelay(50); // the answer comes behind the end
    const auto connection = connect(m_recorder.get(), &recorder::RecorderServer::fileReceived, this,
                                    [this] { m_running->kill(); });
    const QString shown = run(command).out;
    QCOMPARE(shown.count(" -> "), rest == "users" ? 2 : 1);
    disconnect(connection);
    QCOMPARE(m_received.size(), 1);
    QCOMPARE(fileOfRecorder(rest), before);
    m_recorder->setReplyDelay(0);
    const Run again = run(command);
    QVERIFY2(again.exitCode == 0, qPrintable(again.err));
    QVERIFY2(again.out.endsWith("Sent and confirmed: " + rest + '\n'), qPrintable(again.out));
    QVERIFY(fileOfRecorder(rest).contains(rest == "state" ? "DEVICE_NAME = 'Gate'" : "guard"));
    QCOMPARE(run(command).out, "The recorder has these values already.\n");
}

void TestControlChanges::asksBeforeWhatIsDangerous_data()
{
    const TestTable<QStringList, QByteArray, int> row("command", "typed", "exit code");
    row("a function, yes", {"run", "soft_reset"}, "yes\n", 0);
    row("a function, no", {"run", "soft_reset"}, "no\n", 5);
    row("a function, only a letter", {"run", "soft_reset"}, "y\n", 5);
    row("a report, yes", {"report", "-o", "report.txt"}, "yes\n", 0);
    row("a report, no answer", {"report", "-o", "report.txt"}, "\x04", 5);
}

void TestControlChanges::asksBeforeWhatIsDangerous()
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

void TestControlChanges::sendsOnlyWhatTheDescriptionAllows()
{
    const QStringList command{"set", address(), "streams/stream_0/bitrate=20000", "net/untitled/DNS1=x y"};
    const Run run = this->run(command);
    QCOMPARE(run.exitCode, 1);
    QVERIFY2(run.err.contains("streams/stream_0/bitrate is not allowed: it is above 16384; "),
             qPrintable(run.err));
    QVERIFY2(run.err.contains("net/untitled/DNS1 is not allowed"), qPrintable(run.err));
    QCOMPARE(m_received, QStringList());
    QCOMPARE(this->run(command + QStringList("--force")).exitCode, 0);
    // What the recorder has already is not judged, in a snapshot neither.
    QCOMPARE(this->run(command).exitCode, 0);
    const QStringList restore{"restore", address(), m_folder->filePath("kept.zip")};
    QCOMPARE(this->run({"backup", address(), "-o", restore.last()}).exitCode, 0);
    const QString allowed = "net/untitled/DNS1=10.0.0.2";
    QCOMPARE(this->run({"set", address(), "streams/common/name=Gate", allowed}).exitCode, 0);
    const Run restored = this->run(restore);
    QCOMPARE(restored.exitCode, 1);
    QCOMPARE(restored.err.count("is not allowed"), 1);
    QVERIFY2(restored.err.contains("net/untitled/DNS1 is not allowed"), qPrintable(restored.err));
    QVERIFY(fileOfRecorder("streams").contains("Gate"));
    QCOMPARE(this->run(restore + QStringList("--force")).exitCode, 0);
}

void TestControlChanges::runsFunctions_data()
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

void TestControlChanges::runsFunctions()
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

void TestControlChanges::keepsTheReport()
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

QTEST_GUILESS_MAIN(TestControlChanges)
#include "tst_control_changes.moc"
