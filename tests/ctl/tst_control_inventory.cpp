#include "ControlProgram.h"
#include "recorder/RecorderServer.h"
#include "support/FullDisk.h"
#include "support/OwnUserFolders.h"
#include "support/TestTable.h"

#include <QFile>
#include <QJsonDocument>
#include <QJsonObject>
#include <QLockFile>
#include <QRegularExpression>
#include <QTemporaryDir>
#include <QTest>

using namespace paravue;
using namespace paravue::test;
using Kind = recorder::AnswerFault::Kind;

namespace
{

const QStringList Names{"gate", "hall", "yard"};

} // namespace

/// Three recorders: the gate, the hall and the yard, the last two in the group "inside".
class TestControlInventory : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void readsAllFormats_data();
    void readsAllFormats();
    void choosesRecorders_data();
    void choosesRecorders();
    void setsTheValuesOfGroups();
    void goesOnAfterAFailure_data();
    void goesOnAfterAFailure();
    void takesAnInterruptedRunUp();
    void stopsWhenItCannotNoteWhatIsDone();
    void tellsWhoComplies();
    void printsMetrics();
    void reportsOnEach();
    void refusesBadInventories_data();
    void refusesBadInventories();
    void refusesWhatFitsNoInventory_data();
    void refusesWhatFitsNoInventory();

private:
    QString host(int number) const
    {
        return "127.0.0.1:" + QString::number(m_recorders[size_t(number)]->port());
    }
    QString ownFile(const QString &name, QByteArray content) const;
    QString iniFile(const QByteArray &more = {}) const;
    ControlRun run(const QStringList &arguments) { return runControlProgram(arguments, "admin"); }
    QString addressOf(int number) const;

    OwnUserFolders m_user;
    std::unique_ptr<QTemporaryDir> m_folder;
    std::vector<std::unique_ptr<recorder::RecorderServer>> m_recorders;
};

void TestControlInventory::init()
{
    m_recorders.clear();
    m_folder = std::make_unique<QTemporaryDir>();
    for (const QString &name : Names) {
        m_recorders.push_back(std::make_unique<recorder::RecorderServer>(m_folder->filePath(name)));
        QVERIFY(m_recorders.back()->listen());
    }
}

/// "%1" and so on stand for the hosts.
QString TestControlInventory::ownFile(const QString &name, QByteArray content) const
{
    for (int i = 0; i < Names.size(); ++i)
        content.replace("%" + QByteArray::number(i + 1), host(i).toUtf8());
    QFile file(m_folder->filePath(name));
    return file.open(QIODevice::WriteOnly) && file.write(content) == content.size() ? file.fileName()
                                                                                    : QString();
}

QString TestControlInventory::iniFile(const QByteArray &more) const
{
    return ownFile("all.ini", "# ours\n[gate]\naddress=%1\n\n[hall]\naddress=%2\ngroups=inside\n"
                              "[yard]\naddress = %3\ngroups = inside, far\n" +
                                  more);
}

/// The address of the network that the recorder has.
QString TestControlInventory::addressOf(int number) const
{
    static const QRegularExpression Line("\\bIP *= *'([^']*)'");
    QFile file(m_recorders[size_t(number)]->filePath("net"));
    const QByteArray content = file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
    return Line.match(QString::fromUtf8(content)).captured(1);
}

void TestControlInventory::readsAllFormats_data()
{
    const TestTable<QString, QByteArray> row("name", "content");
    row("ini", "a.ini",
        "[gate]\r\naddress=%1\r\nsite=1\n[hall]\nsite=1\naddress=%2\n; no more\n[yard]\naddress=%3\n");
    row("json", "a.json",
        R"({"recorders":[{"name":"gate","address":"%1"},{"name":"hall","address":"%2","groups":["a","b"]},)"
        R"({"name":"yard","address":"%3"}]})");
    row("csv", "a.csv",
        "address,name,title,,\r\n%1,gate,\"a, \"\"b\"\"\",,\r\n\"%2\",hall,,,\n%3,yard,c,,\n\n");
}

void TestControlInventory::readsAllFormats()
{
    QFETCH(QString, name);
    QFETCH(QByteArray, content);
    const ControlRun run =
        this->run({"get", "net/untitled/IP", "--json", "--inventory", ownFile(name, content)});
    QVERIFY2(run.exitCode == 0, qPrintable(run.err));
    QStringList names;
    for (const QString &line : run.out.split('\n', Qt::SkipEmptyParts)) {
        const QJsonObject result = QJsonDocument::fromJson(line.toUtf8()).object();
        QCOMPARE(result["exitCode"].toInt(-1), 0);
        QCOMPARE(result["result"].toObject()["recorder"].toString(),
                 host(int(Names.indexOf(result["name"].toString()))));
        names << result["name"].toString();
    }
    names.sort();
    QCOMPARE(names, Names);
    QVERIFY2(run.err.contains("gate  done\nhall  done\nyard  done\n"), qPrintable(run.err));
}

void TestControlInventory::choosesRecorders_data()
{
    const TestTable<QStringList, QString> row("options", "table");
    row("all, one after the other", {"--jobs", "1"}, "gate  done\nhall  done\nyard  done\n");
    row("a group", {"--group", "inside"}, "hall  done\nyard  done\n");
    row("names", {"--limit", "?a*"}, "gate  done\nhall  done\nyard  done\n");
    row("names of a group", {"--group", "inside", "--limit", "h*"}, "hall  done\n");
}

void TestControlInventory::choosesRecorders()
{
    QFETCH(QStringList, options);
    QFETCH(QString, table);
    const ControlRun run =
        this->run(QStringList{"get", "net/untitled/IP", "--inventory", iniFile()} + options);
    QVERIFY2(run.exitCode == 0, qPrintable(run.err));
    QCOMPARE(run.out.section("\n\n", 1), table);
    for (const QString &line : table.split('\n', Qt::SkipEmptyParts))
        QVERIFY(run.out.contains(line.section(' ', 0, 0) + ": net/untitled/IP  192.168.10.20\n"));
}

void TestControlInventory::setsTheValuesOfGroups()
{
    const QString inventory =
        iniFile("[group all]\nsite=9\nnet/untitled/IP=10.0.0.{site}\n[group inside]\nsite=1\n"
                "[group far]\nnet/untitled/IP=10.0.0.3\n");
    const ControlRun run = this->run({"set", "streams/common/name=At {name}", "--inventory", inventory});
    QVERIFY2(run.exitCode == 0, qPrintable(run.err));
    QCOMPARE(addressOf(0), "10.0.0.9");
    QCOMPARE(addressOf(1), "10.0.0.1");
    QCOMPARE(addressOf(2), "10.0.0.3");
    QVERIFY(run.out.contains("hall: streams/common/name: Warehouse recorder -> At hall\n"));
    QCOMPARE(this->run({"set", "net/untitled/IP={place}", "--inventory", inventory}).exitCode, 2);
}

void TestControlInventory::goesOnAfterAFailure_data()
{
    const TestTable<QStringList, int, QString> row("options", "exit code", "states");
    row("as a rule", {}, 1, "done,failed (1),done");
    row("until so many have failed", {"--stop-after", "1", "--jobs", "1"}, 1, "done,failed (1),not begun");
    row("canaries that are done", {"--canary", "1"}, 1, "done,failed (1),done");
    row("canaries that are not", {"--canary", "2"}, 1, "done,failed (1),not begun");
}

void TestControlInventory::goesOnAfterAFailure()
{
    QFETCH(QStringList, options);
    QFETCH(QString, states);
    m_recorders[1]->setFaults({{Kind::Error, 0, "busy", "PUT NET CONFIG"}});
    const ControlRun run =
        this->run(QStringList{"set", "net/untitled/IP=10.0.0.1", "--inventory", iniFile()} + options);
    QTEST(run.exitCode, "exit code");
    const QStringList table = run.out.section("\n\n", 1).split('\n', Qt::SkipEmptyParts);
    QCOMPARE(table.size(), 3);
    const QStringList expected = states.split(',');
    for (int i = 0; i < 3; ++i)
        QVERIFY2(table[i].startsWith(Names[i] + "  " + expected[i]), qPrintable(table[i]));
    QVERIFY2(table[1].contains("busy"), qPrintable(table[1]));
    QCOMPARE(addressOf(2), expected[2] == "done" ? "10.0.0.1" : "192.168.10.20");
}

void TestControlInventory::takesAnInterruptedRunUp()
{
    const QString journal = m_folder->filePath("journal");
    const QStringList command{"set",      "--file", ownFile("wanted", "net/untitled/IP=10.0.0.1\n"),
                              "--json",   "--jobs", "1",
                              "--resume", journal,  "--inventory",
                              iniFile()};
    const auto done = [](const ControlRun &run) {
        QStringList names;
        for (const QString &line : run.out.split('\n', Qt::SkipEmptyParts))
            names << QJsonDocument::fromJson(line.toUtf8()).object()["name"].toString();
        return names;
    };
    m_recorders[1]->setFaults({{Kind::Error, 0, "busy", "PUT NET CONFIG"}});
    QCOMPARE(run(command).exitCode, 1);
    m_recorders[1]->setFaults({});
    QFile file(journal);
    QVERIFY(file.open(QIODevice::Append) && file.write("{\"done\":\"ha") > 0); // cut off
    file.close();
    const ControlRun again = run(command);
    QCOMPARE(again.exitCode, 0);
    QCOMPARE(done(again), QStringList("hall"));
    QCOMPARE(run(command).out, "");
    // Other values are other work.
    ownFile("wanted", "net/untitled/IP=10.0.0.2\n");
    QCOMPARE(done(run(command)), Names);
    QCOMPARE(addressOf(0), "10.0.0.2");
    iniFile("[group inside]\nnet/untitled/DNS2=10.0.0.{place}\nplace=4\n");
    QCOMPARE(done(run(command)), Names.mid(1));
    iniFile("[group inside]\nnet/untitled/DNS2=10.0.0.{place}\nplace=4\n[group far]\nplace=5\n");
    QCOMPARE(run(command).out, ""); // the group "inside" comes first
    iniFile("[group inside]\nnet/untitled/DNS2=10.0.0.{place}\nplace=5\n");
    QCOMPARE(done(run(command)), Names.mid(1));

    const ControlRun other = run({"get", "net", "--inventory", iniFile(), "--resume", journal});
    QCOMPARE(other.exitCode, 7);
    QVERIFY(file.open(QIODevice::ReadOnly) && !file.readAll().contains("10.0.0.1"));
    QLockFile lock(journal + ".lock");
    QVERIFY(lock.tryLock());
    const ControlRun second = run(command);
    QCOMPARE(second.exitCode, 6);
    QVERIFY2(second.err.contains("another run uses " + journal), qPrintable(second.err));
}

void TestControlInventory::stopsWhenItCannotNoteWhatIsDone()
{
    SKIP_WITHOUT_FULL_DISK();
    const QString journal = m_folder->filePath("journal");
    const QStringList command{"get",      "net/untitled/IP", "--jobs",      "1",
                              "--resume", journal,           "--inventory", iniFile()};
    QCOMPARE(run(command + QStringList{"--limit", "gate"}).exitCode, 0);
    QFile file(journal);
    QVERIFY(file.open(QIODevice::Append) && file.write(QByteArray(2 << 20, ' ') + '\n') > 0);
    file.close();
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert("PARAVUE_PASSWORD", "admin");
    const QString limited =
        QString("trap '' XFSZ; ulimit -f 4096; exec '%1' '%2'").arg(CONTROL_PROGRAM, command.join("' '"));
    const ControlRun run = runProgram("sh", {"-c", limited}, environment);
    QCOMPARE(run.exitCode, 6);
    QVERIFY2(run.err.startsWith("paravue-ctl: cannot write " + journal + ": "), qPrintable(run.err));
    QVERIFY2(run.out.contains("\nhall  done\nyard  not begun\n"), qPrintable(run.out));
}

void TestControlInventory::tellsWhoComplies()
{
    QCOMPARE(run({"set", "net/untitled/IP=10.0.0.1", "--inventory", iniFile(), "--limit", "hall"}).exitCode,
             0);
    // One after the other, as lines come in the order of the answers.
    const ControlRun run = this->run({"check", "--inventory", iniFile(), "--jobs", "1", "--wanted",
                                      ownFile("wanted", "net/untitled/IP=10.0.0.1\n")});
    QCOMPARE(run.exitCode, 5);
    QCOMPARE(run.out, "gate: net/untitled/IP: 192.168.10.20 -> 10.0.0.1\n"
                      "yard: net/untitled/IP: 192.168.10.20 -> 10.0.0.1\n"
                      "\n"
                      "gate  differs  values that differ: 1\n"
                      "hall  done\n"
                      "yard  differs  values that differ: 1\n");
}

void TestControlInventory::printsMetrics()
{
    m_recorders[1]->setFaults({{Kind::Error, 0, "busy", "GET NET CONFIG"}});
    const ControlRun run = this->run({"metrics", "--inventory", iniFile()});
    QCOMPARE(run.exitCode, 1);
    static const QRegularExpression Line(
        "^(# (HELP|TYPE) ([a-z_]+) .+|([a-z_]+)\\{[a-z]+=\"[^\"]*\"(,[a-z]+=\"[^\"]*\")*\\} -?[0-9.e+]+)$");
    QStringList metrics; // in their order: those of one metric stand together
    QStringList lines = run.out.split('\n', Qt::SkipEmptyParts);
    QCOMPARE(lines.removeDuplicates(), 0);
    for (const QString &line : std::as_const(lines)) {
        const auto match = Line.match(line);
        QVERIFY2(match.hasMatch(), qPrintable(line));
        const QString metric = match.captured(3) + match.captured(4);
        if (metrics.isEmpty() || metrics.last() != metric) {
            QVERIFY2(!metrics.contains(metric) && line.startsWith("# HELP"), qPrintable(line));
            metrics << metric;
        }
    }
    for (const char *sample :
         {"paravue_up{recorder=\"gate\"} 1\n", "paravue_up{recorder=\"hall\"} 0\n",
          "paravue_recorder_info{firmware=\"4.2.1\",model=\"", "paravue_users{recorder=\"yard\"} ",
          "paravue_disk_temperature_celsius{disk=\"DISC1\",recorder=\"gate\"} 38\n"})
        QVERIFY2(run.out.contains(sample), sample);
    static const QRegularExpression Clock(
        "paravue_clock_difference_seconds\\{recorder=\"gate\"\\} (-?[0-9]+)\n");
    const auto clock = Clock.match(run.out);
    QVERIFY2(clock.hasMatch() && qAbs(clock.captured(1).toInt()) < 60, qPrintable(run.out));
}

void TestControlInventory::reportsOnEach()
{
    const QStringList command{"report", "--inventory", iniFile(), "-o", m_folder->filePath("{name}.txt")};
    QCOMPARE(run(command).exitCode, 5); // nobody is asked
    m_recorders[1]->setFaults({{Kind::Error, 0, "busy", "GET DISK CONFIG"}});
    const ControlRun run = this->run(command + QStringList{"--yes", "--json"});
    QCOMPARE(run.exitCode, 1);
    QStringList paths;
    for (const QString &line : run.out.split('\n', Qt::SkipEmptyParts)) {
        const QJsonObject row = QJsonDocument::fromJson(line.toUtf8()).object();
        QCOMPARE(row["exitCode"].toInt(-1), row["name"] == "hall" ? 1 : 0);
        paths << row["result"].toObject()["path"].toString();
    }
    paths.sort();
    QCOMPARE(paths.size(), Names.size());
    for (int i = 0; i < Names.size(); ++i) {
        QFile file(m_folder->filePath(Names[i] + ".txt"));
        QCOMPARE(paths[i], file.fileName());
        QVERIFY(file.open(QIODevice::ReadOnly));
        const QString text = QString::fromUtf8(file.readAll());
        QVERIFY(text.contains(i == 1 ? "outcome: 1" : "outcome: 0"));
        const QString log = text.section("==== log", 1).section("====", 0, 0);
        QVERIFY2(log.contains(" logging in as admin\n"), qPrintable(log));
        QCOMPARE(log.contains("exchange ended"), i != 1);
        // What the others have said is not for those who read of this one.
        for (int other = 0; other < Names.size(); ++other)
            QCOMPARE(log.count(QString(host(other)).replace(":", " port ")), i == other ? 1 : 0);
        QCOMPARE(log.count("busy"), i == 1 ? 1 : 0);
    }
}

void TestControlInventory::refusesBadInventories_data()
{
    const TestTable<QString, QByteArray, QString> row("name", "content", "message");
    row("nothing", "a.ini", "", "there are no recorders");
    row("a name twice", "a.ini", "[a]\naddress=h\n[a]\naddress=g\n", "3: \"a\" comes twice");
    row("a recorder twice", "a.ini", "[a]\naddress=h\n[b]\naddress=H:5049\n",
        "\"a\" and \"b\" have one address");
    row("no address", "a.ini", "[a]\nlogin=x\n", "\"a\" has no address");
    row("a password", "a.ini", "[a]\naddress=x:secret@h\n", "the address of \"a\" has a login");
    row("no section", "a.ini", "address=h\n", "1: a line is [NAME] or FIELD=VALUE");
    row("an unknown field", "a.ini", "[a]\nip address=h\n", "2: \"ip address\" is no field");
    row("no UTF-8", "a.ini", "[\xe4]\n", "no UTF-8");
    row("no JSON", "a.json", "{", "a.json: ");
    row("a number", "a.json", R"({"recorders":[{"name":"a","address":1}]})",
        "\"address\" of \"a\" is no text");
    row("an array of a value", "a.json",
        R"({"recorders":[{"name":"a","address":"h","net/untitled/IP":["1"]}]})",
        "\"net/untitled/IP\" of \"a\" is no text");
    row("a group that is no text", "a.json", R"({"recorders":[{"name":"a","address":"h","groups":["b",1]}]})",
        "\"groups\" of \"a\" is no text");
    row("a field twice", "a.ini", "[a]\naddress=h\nsite=1\n\nsite=2\n", "5: \"site\" comes twice");
    row("a column twice", "a.csv", "name,site,address,site\na,1,h,\n", "1: \"site\" comes twice");
    row("no column of names", "a.csv", "address\nh\n", "no column \"name\"");
    row("an open quote", "a.csv", "name,address\na,\"h\n", "2: a quote is not closed");
    row("a missing column", "a.csv", "name,address\na\n", "2: there are 1 columns in place of 2");
}

void TestControlInventory::refusesBadInventories()
{
    QFETCH(QString, name);
    QFETCH(QByteArray, content);
    QFETCH(QString, message);
    const ControlRun run = this->run({"get", "--inventory", ownFile(name, content)});
    QCOMPARE(run.exitCode, 7);
    QVERIFY2(run.err.contains(message) && !run.err.contains("secret"), qPrintable(run.err));
}

void TestControlInventory::refusesWhatFitsNoInventory_data()
{
    const TestTable<QStringList, int> row("arguments", "exit code");
    row("no inventory", {"--inventory", "/nowhere", "get"}, 6);
    row("no such group", {"--group", "x", "get"}, 2);
    row("no such name", {"--limit", "x", "get"}, 2);
    row("another command", {"diff", "a", "b"}, 2);
    row("one file for all", {"backup", "-o", "/tmp/kept.zip"}, 2);
    row("no file for reports", {"report", "--yes"}, 2);
    row("a wrong number", {"get", "--jobs", "0"}, 2);
}

void TestControlInventory::refusesWhatFitsNoInventory()
{
    QFETCH(QStringList, arguments);
    if (!arguments.contains("--inventory"))
        arguments << "--inventory" << iniFile();
    QTEST(run(arguments).exitCode, "exit code");
    QCOMPARE(run({"get", host(0), "--jobs", "2"}).exitCode, 2);
}

QTEST_GUILESS_MAIN(TestControlInventory)
#include "tst_control_inventory.moc"
