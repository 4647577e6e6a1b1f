#include "snapshots/SnapshotArchive.h"
#include "snapshots/SnapshotFolder.h"
#include "support/FullDisk.h"
#include "support/OwnerOnly.h"
#include "support/TestTable.h"
#include "support/Waiting.h"

#include <QDir>
#include <QFileInfo>
#include <QProcess>
#include <QRandomGenerator>
#include <QTemporaryDir>
#include <QTextStream>

#include <thread>

#ifndef Q_OS_WIN
#include <sys/stat.h>
#endif

using namespace paravue;
using namespace paravue::test;

namespace
{

#ifdef Q_OS_WIN
// MinGW frees the memory of a thread's variables before it destroys them. Qt has such a variable for compiled
// patterns, and reads this once, early. A thread of this test uses patterns; those of the programs for
// Windows use none.
const bool isWithoutCompiledPatterns = qputenv("QT_ENABLE_REGEXP_JIT", "0");
#endif

FileContents filesOf(int number)
{
    return {{"net", "ID=" + QByteArray::number(number) + "\r\nPASSWORD=secret\r\n"},
            {"soft", "MODEL='R4'\r\nFIRMWARE='4.2'\r\n"}};
}

/// Is hard to compress, so that writing it takes a while.
QByteArray noise()
{
    QByteArray bytes(4 * 1024 * 1024, Qt::Uninitialized);
    QRandomGenerator random(1);
    random.fillRange(reinterpret_cast<quint32 *>(bytes.data()), bytes.size() / 4);
    return bytes;
}

/// The part of the program that is killed.
int keepForever(const QString &root)
{
    SnapshotFolder folder(root, "recorder");
    const QByteArray content = noise();
    for (int i = 0;; ++i) {
        folder.keep({{"net", content}}, SnapshotFolder::Secrets::Kept, 3);
        QTextStream(stdout) << i << Qt::endl;
    }
}

} // namespace

/// The folder that keeps the snapshots of a recorder.
class TestSnapshotFolder : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() { QVERIFY(m_root.isValid()); }
    void init() { m_folder = SnapshotFolder(m_root.filePath(QTest::currentTestFunction()), "recorder"); }
    void keepsTheNewest();
    void keepsEachOfTheSameTime();
    void keepsTheOneOfASetBackClock();
    void leavesSecretsToTheCaller();
    void isForItsOwner();
    void listsWhatIsDamaged();
    void hasASafeName_data();
    void hasASafeName();
    void tellsOfAFullDisk();
    void leavesNothingHalfWhenKilled();

private:
    QTemporaryDir m_root;
    SnapshotFolder m_folder{{}, {}};
};

void TestSnapshotFolder::keepsTheNewest()
{
    QDir().mkpath(m_folder.path());
    QFile other(m_folder.path() + "/notes.zip");
    QVERIFY(other.open(QIODevice::WriteOnly));
    other.close();
    QStringList paths;
    for (int i = 0; i < 33; ++i) {
        const auto [path, problem] = m_folder.keep(filesOf(i), SnapshotFolder::Secrets::Kept);
        QCOMPARE(problem, "");
        paths.prepend(path);
    }
    const QList<KeptSnapshot> kept = m_folder.list();
    QCOMPARE(kept.size(), SnapshotFolder::UsualCount);
    for (qsizetype i = 0; i < kept.size(); ++i) {
        QCOMPARE(kept[i].path, paths[i]);
        QCOMPARE(kept[i].info.recorder, "recorder");
        QCOMPARE(kept[i].info.model + ' ' + kept[i].info.firmware, "R4 4.2");
        QVERIFY(qAbs(kept[i].info.time.secsTo(QDateTime::currentDateTimeUtc())) < 60);
    }
    QCOMPARE(snapshotarchive::read(kept[2].path).snapshot.files, filesOf(30));
    QVERIFY(other.exists());
}

void TestSnapshotFolder::keepsEachOfTheSameTime()
{
    constexpr int Each = 10;
    const QDateTime time = QDateTime::currentDateTimeUtc();
    const auto keep = [&](int first) {
        SnapshotFolder folder = m_folder;
        for (int i = first; i < first + Each; ++i) {
            Snapshot snapshot;
            snapshot.files = filesOf(i);
            snapshot.info.time = time;
            folder.keep(snapshot);
        }
    };
    std::thread other(keep, Each);
    keep(0);
    other.join();
    QSet<QByteArray> kept;
    for (const KeptSnapshot &snapshot : m_folder.list())
        kept.insert(snapshotarchive::read(snapshot.path).snapshot.files["net"]);
    QCOMPARE(kept.size(), 2 * Each);
    QCOMPARE(QDir(m_folder.path()).entryList(QDir::Files | QDir::Hidden).size(), 2 * Each);
}

void TestSnapshotFolder::keepsTheOneOfASetBackClock()
{
    m_folder.keep(filesOf(1), SnapshotFolder::Secrets::Kept, 1);
    Snapshot snapshot;
    snapshot.files = filesOf(2);
    snapshot.info.time = QDateTime::currentDateTimeUtc().addYears(-1);
    m_folder.keep(snapshot, 1);
    QCOMPARE(m_folder.list().size(), 1);
    QCOMPARE(snapshotarchive::read(m_folder.list().constFirst().path).snapshot.files, filesOf(2));
}

void TestSnapshotFolder::leavesSecretsToTheCaller()
{
    m_folder.keep(filesOf(1), SnapshotFolder::Secrets::Kept);
    m_folder.keep(filesOf(1));
    const QList<KeptSnapshot> kept = m_folder.list();
    QCOMPARE(kept[0].info.leftOut, QStringList("net/untitled/PASSWORD"));
    QVERIFY(!snapshotarchive::read(kept[0].path).snapshot.files["net"].contains("secret"));
    QVERIFY(kept[0].info.isLeftOut("net/untitled/PASSWORD") && !kept[0].info.isLeftOut("net/untitled/ID"));
    QCOMPARE(kept[1].info.leftOut, QStringList());
    QVERIFY(snapshotarchive::read(kept[1].path).snapshot.files["net"].contains("secret"));
}

void TestSnapshotFolder::isForItsOwner()
{
#ifndef Q_OS_WIN
    const mode_t before = ::umask(0);
#endif
    QDir().mkpath(m_folder.path()); // an older one that others can read
    const QString path = m_folder.keep(filesOf(1), SnapshotFolder::Secrets::Kept).path;
#ifndef Q_OS_WIN
    ::umask(before);
#endif
    for (const QString &own : {path, m_folder.path()})
        QVERIFY2(isForOwnerOnly(own), qPrintable(own));
#ifndef Q_OS_WIN
    // The host may have other things in the folder around it, for others to read.
    QVERIFY(!isForOwnerOnly(QFileInfo(m_folder.path()).path()));
#endif
}

void TestSnapshotFolder::listsWhatIsDamaged()
{
    const QString path = m_folder.keep(filesOf(1), SnapshotFolder::Secrets::Kept).path;
    m_folder.keep(filesOf(2), SnapshotFolder::Secrets::Kept);
    QFile file(path);
    QVERIFY(file.open(QIODevice::WriteOnly)); // empties it
    file.close();
    const QList<KeptSnapshot> kept = m_folder.list();
    QCOMPARE(kept.size(), 2);
    QCOMPARE(kept[0].problem, "");
    QVERIFY(kept[1].problem.contains("no snapshot"));
    QVERIFY(qAbs(kept[1].info.time.secsTo(QDateTime::currentDateTimeUtc())) < 60);
    QVERIFY(!snapshotarchive::read(path + ".none").problem.isEmpty());
}

void TestSnapshotFolder::hasASafeName_data()
{
    const TestTable<QString> row("recorder");
    row("host", "recorder.example.net");
    row("port", "recorder.example.net:5050");
    row("device", "con");
    row("device with a domain", "nul.example.net");
    row("climbs out", "../../etc");
    row("folders", "a/b\\c");
    row("drive", "c:");
    row("wildcards", "*?<>|\"");
    row("line end", "a\nb");
    row("end of a text", QString("a") + QChar(0) + "b");
    row("other letters", "регистратор");
    row("dots", "...");
    row("long", QString(3000, 'a'));
    row("empty", "");
}

void TestSnapshotFolder::hasASafeName()
{
    static const QRegularExpression safe("^recorder-[a-z0-9._-]*-[0-9a-f]{8}$");
    static QSet<QString> names;
    QFETCH(QString, recorder);
    const SnapshotFolder folder(m_root.path(), recorder);
    const QString name = QFileInfo(folder.path()).fileName();
    QCOMPARE(QFileInfo(folder.path()).path(), m_root.path());
    QVERIFY2(safe.match(name).hasMatch() && name.size() <= 100, qPrintable(name));
    QVERIFY(!names.contains(name));
    names.insert(name);
    QCOMPARE(folder.list().size(), 0);
}

void TestSnapshotFolder::tellsOfAFullDisk()
{
    SKIP_WITHOUT_FULL_DISK();
    m_folder.keep(filesOf(1), SnapshotFolder::Secrets::Kept, 1);
    const auto [path, problem] = [this] {
        const FullDisk full;
        return m_folder.keep(filesOf(2), SnapshotFolder::Secrets::Kept, 1);
    }();
    QCOMPARE(path, "");
    QVERIFY2(problem.contains("cannot be written"), qPrintable(problem));
    QCOMPARE(QDir(m_folder.path()).entryList(QDir::Files).size(), 1);
    QCOMPARE(snapshotarchive::read(m_folder.list().constFirst().path).snapshot.files, filesOf(1));
}

void TestSnapshotFolder::leavesNothingHalfWhenKilled()
{
    const QString root = QFileInfo(m_folder.path()).path();
    for (int kill = 0; kill < 6; ++kill) {
        QProcess writer;
        writer.start(QCoreApplication::applicationFilePath(), {"keep", root});
        AWAIT_VERIFY_WITHIN(writer.canReadLine(), 30'000); // a program that has just started is slow
        const qint64 wait = kill * 13;                     // another place in the middle of a write each time
        const QDeadlineTimer end(wait);
        waitUntil([&] { return end.hasExpired(); });
        writer.kill();
        QVERIFY(writer.waitForFinished());
        const QList<KeptSnapshot> kept = m_folder.list();
        QVERIFY(!kept.isEmpty() && kept.size() <= 4);
        for (const KeptSnapshot &snapshot : kept)
            QCOMPARE(snapshotarchive::read(snapshot.path).problem, "");
    }
    // What was left of a file in the middle of a write goes, once nobody can be writing it any more.
    const QString left = m_folder.path() + "/2024-05-01T115802.125Z.zip.Abcdef";
    QFile file(left);
    QVERIFY(file.open(QIODevice::WriteOnly) && file.write("half") == 4 && file.flush());
    m_folder.keep(filesOf(1), SnapshotFolder::Secrets::Kept);
    QVERIFY(file.exists());
    QVERIFY(file.setFileTime(QDateTime::currentDateTime().addDays(-1), QFileDevice::FileModificationTime));
    file.close();
    m_folder.keep(filesOf(1), SnapshotFolder::Secrets::Kept);
    QVERIFY(!file.exists());
}

int main(int argc, char **argv)
{
    QCoreApplication application(argc, argv);
    const QStringList words = QCoreApplication::arguments();
    if (words.value(1) == "keep")
        return keepForever(words.value(2));
    TestSnapshotFolder test;
    return QTest::qExec(&test, argc, argv);
}
#include "tst_snapshot_folder.moc"
