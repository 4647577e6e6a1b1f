#include "ControlProgram.h"
#include "recorder/RecorderServer.h"
#include "snapshots/SnapshotArchive.h"
#include "support/OwnUserFolders.h"
#include "support/TestTable.h"

#include <QFile>
#include <QTemporaryDir>
#include <QTest>

using namespace paravue;
using namespace paravue::test;

namespace
{

/// The lines of a file without what may be written otherwise: quotes, spaces and the ends of lines.
QByteArrayList linesOf(QByteArray content)
{
    for (const char *written : {"'", "\"", " ", "\r"})
        content.replace(written, "");
    QByteArrayList lines = content.split('\n');
    lines.removeAll({});
    return lines;
}

} // namespace

/// Each fault of the simulated recorder, against the commands that change something.
class TestControlFaults : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void isWholeUnderFaults_data();
    void isWholeUnderFaults();

private:
    QByteArray fileOfRecorder(const QString &name) const;
    QString address() const { return "admin:admin@127.0.0.1:" + QString::number(m_recorder->port()); }

    OwnUserFolders m_user;
    std::unique_ptr<QTemporaryDir> m_folder;
    std::unique_ptr<recorder::RecorderServer> m_recorder;
};

void TestControlFaults::init()
{
    m_folder = std::make_unique<QTemporaryDir>();
    m_recorder = std::make_unique<recorder::RecorderServer>(m_folder->filePath("data"));
    QVERIFY2(m_recorder->listen(), qPrintable(m_recorder->errorString()));
}

QByteArray TestControlFaults::fileOfRecorder(const QString &name) const
{
    QFile file(m_recorder->filePath(name));
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

void TestControlFaults::isWholeUnderFaults_data()
{
    const TestTable<QString, bool> row("fault", "isSet");
    for (const QString &form : recorder::answerFaultForms()) {
        QString fault = form.section('[', 0, 0); // with a value that it may have
        fault.replace("=MS", "=50").replace("=N|less|more|none", "=less");
        for (const char *place : {"", "@PUT NET CONFIG"}) {
            // Some are possible in the answer to one request only, which is not this one.
            if (QString reason; !recorder::readAnswerFault(fault + place, reason))
                continue;
            row(qPrintable("set, " + fault + place), fault + place, true);
            row(qPrintable("restore, " + fault + place), fault + place, false);
        }
    }
}

void TestControlFaults::isWholeUnderFaults()
{
    QFETCH(QString, fault);
    QFETCH(bool, isSet);
    QString reason;
    const auto read = recorder::readAnswerFault(fault, reason);
    QVERIFY2(read, qPrintable(reason));
    const QStringList values{"net/untitled/IP=10.0.0.1", "users/untitled/NAME2=guard"};
    QStringList command = QStringList{"set", address()} + values;
    if (!isSet) {
        const QString path = m_folder->filePath("wanted.zip");
        FileContents files{{"net", fileOfRecorder("net")}, {"users", fileOfRecorder("users")}};
        files["net"].replace("192.168.10.20", "10.0.0.1");
        files["users"].replace("guest", "guard");
        Snapshot snapshot;
        snapshot.files = files;
        snapshot.info.time = QDateTime::currentDateTimeUtc();
        QCOMPARE(snapshotarchive::write(snapshot, path), QString());
        command = {"restore", address(), path};
    }
    const QByteArray oldNet = fileOfRecorder("net");
    const QByteArray oldUsers = fileOfRecorder("users");
    m_recorder->setFaults({*read});
    const ControlRun run = runControlProgram(command + QStringList{"--timeout", "1"}, {});
    m_recorder->setFaults({});
    QVERIFY2(run.exitCode >= 0 && run.exitCode <= 7, qPrintable(run.err));
    QVERIFY2(!run.err.contains("snapshot") && !run.err.contains(m_folder->path()), qPrintable(run.err));
    const bool hasAddress = fileOfRecorder("net").contains("10.0.0.1");
    const bool hasName = fileOfRecorder("users").contains("guard");
    // Each file is the old or the new one as a whole.
    QCOMPARE(linesOf(fileOfRecorder("net").replace("10.0.0.1", "192.168.10.20")), linesOf(oldNet));
    QCOMPARE(linesOf(fileOfRecorder("users").replace("guard", "guest")), linesOf(oldUsers));
    if (run.exitCode == 0)
        QVERIFY(hasAddress && hasName && run.out.contains("Sent and confirmed: net, users"));
    else if (!hasAddress && !hasName)
        QVERIFY2(!run.err.contains("; arrived"), qPrintable(run.err));
    else if (!run.err.contains("everything has arrived")) {
        const QString named = run.err.section("; arrived: ", 1) + run.err.section("; not confirmed: ", 1);
        QVERIFY2(!hasAddress || named.contains("net"), qPrintable(run.err));
        QVERIFY2(!hasName || named.contains("users"), qPrintable(run.err));
    }
    // The warning, and one line.
    if (run.exitCode != 0)
        QCOMPARE(run.err.count('\n'), 2);
}

QTEST_GUILESS_MAIN(TestControlFaults)
#include "tst_control_faults.moc"
