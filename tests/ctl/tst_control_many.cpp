#include "ControlProgram.h"
#include "ManyRecorders.h"
#include "support/OwnUserFolders.h"

#include <QTest>

#include <memory>

#ifndef Q_OS_WIN
#include <sys/resource.h>
#endif

using namespace paravue::test;

/// Many recorders in a second process: a thousand when the environment variable PARAVUE_SOAK is set.
class TestControlMany : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void readsAll();
    void setsAndChecksAll();
    void makesDoWithFewOpenFiles();

private:
    ControlRun run(const QStringList &arguments, int jobs = 200)
    {
        return runControlProgram(arguments + QStringList{"--inventory", m_recorders->inventory(), "--jobs",
                                                         QString::number(jobs), "--timeout", "60"},
                                 "admin");
    }

    /// The rows of the table that are not done, and the messages.
    static QByteArray notDone(const ControlRun &run)
    {
        QStringList rows = run.out.section("\n\n", 1).split('\n', Qt::SkipEmptyParts);
        rows.removeIf([](const QString &row) { return row.endsWith("  done"); });
        return (rows.join('\n') + run.err).toUtf8();
    }

    const int m_count = qEnvironmentVariableIsSet("PARAVUE_SOAK") ? 1000 : 20;
    OwnUserFolders m_user;
    std::unique_ptr<ManyRecorders> m_recorders;
};

void TestControlMany::initTestCase()
{
    m_recorders = std::make_unique<ManyRecorders>(m_count);
    QVERIFY(m_recorders->areListening());
}

void TestControlMany::readsAll()
{
    const ControlRun run = this->run({"get", "net/untitled/IP"});
    QVERIFY2(run.exitCode == 0, notDone(run));
    QCOMPARE(run.out.count(": net/untitled/IP  192.168.10.20\n"), m_count);
    QCOMPARE(run.out.section("\n\n", 1).count(" done\n"), m_count);
}

void TestControlMany::setsAndChecksAll()
{
    // The simulated recorders wait ten seconds for a login, in which an unoptimized build does not
    // get through the descriptions of 200 sessions.
    const ControlRun set = run({"set", "net/untitled/IP=10.0.0.1"}, 32);
    QVERIFY2(set.exitCode == 0, notDone(set));
    const ControlRun one = run({"set", "net/untitled/IP=10.0.0.2", "--limit", "r7"});
    QVERIFY2(one.exitCode == 0, qPrintable(one.out + one.err));
    const ControlRun check = run({"check", "net/untitled/IP=10.0.0.1"});
    QCOMPARE(check.exitCode, 5);
    QCOMPARE(check.out.section("\n\n", 1).count(" done\n"), m_count - 1);
    QVERIFY2(check.out.contains("r7: net/untitled/IP: 10.0.0.2 -> 10.0.0.1\n"), qPrintable(check.out));
}

void TestControlMany::makesDoWithFewOpenFiles()
{
#ifdef Q_OS_WIN
    QSKIP("sockets are no files on Windows");
#else
    rlimit before{};
    QCOMPARE(::getrlimit(RLIMIT_NOFILE, &before), 0);
    // The program raises a low limit, and says when the system does not let it.
    rlimit low = before;
    low.rlim_cur = 30;
    QCOMPARE(::setrlimit(RLIMIT_NOFILE, &low), 0);
    const ControlRun raised = run({"get", "net/untitled/IP", "--limit", "r1?"});
    QCOMPARE(::setrlimit(RLIMIT_NOFILE, &before), 0);
    QCOMPARE(raised.exitCode, 0);
    QVERIFY2(!raised.err.contains("open files"), qPrintable(raised.err));

    const QString command =
        QString("ulimit -n 60; exec '%1' get net/untitled/IP --limit 'r1?' --jobs 200 --inventory '%2'")
            .arg(CONTROL_PROGRAM, m_recorders->inventory());
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert("PARAVUE_PASSWORD", "admin");
    const ControlRun limited = runProgram("sh", {"-c", command}, environment);
    QCOMPARE(limited.exitCode, 0);
    QVERIFY2(limited.err.contains("the limit of open files allows 3 jobs, not 200"), qPrintable(limited.err));
    QCOMPARE(limited.out.count(": net/untitled/IP  "), 10);
#endif
}

QTEST_GUILESS_MAIN(TestControlMany)
#include "tst_control_many.moc"
