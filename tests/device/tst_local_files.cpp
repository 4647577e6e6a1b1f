#include "device/LocalFiles.h"
#include "device/SessionFolder.h"
#include "support/OwnerOnly.h"
#include "support/TemporaryPlace.h"
#include "support/TestTable.h"
#include "support/Waiting.h"

#include <QDir>
#include <QFileInfo>
#include <QProcess>
#include <QTemporaryDir>
#include <QTextStream>

#ifdef Q_OS_UNIX
#include <unistd.h>
#endif

using namespace paravue;

#ifdef Q_OS_WIN
constexpr int SessionFiles = 3; ///< with the lock, which is a file there
#else
constexpr int SessionFiles = 2;
#endif

/// What stays in the temporary folder, whatever way the sessions before have ended.
class TestLocalFiles : public QObject
{
    Q_OBJECT

public:
    static int beSession();

private Q_SLOTS:
    void init();
    void belongsToItsOwner();
    void removesOnlyWhatEndedSessionsLeft();
    void leavesWhatIsNotItsOwn_data();
    void leavesWhatIsNotItsOwn();
    void worksWhenItsFolderIsGone();

private:
    QStringList entries() const
    {
        return QDir(m_temporary->path()).entryList(QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot);
    }

    const QString m_usual = QDir::tempPath();
    std::unique_ptr<QTemporaryDir> m_temporary;
};

/// Makes local copies and waits to be ended.
int TestLocalFiles::beSession()
{
    LocalFiles files;
    files.add("users", "PASSWD0='21232f297a57a5a743894a0e4a801fc3'");
    QTextStream(stdout) << QFileInfo(files.add("users", "PASSWD0=''")).path() << Qt::endl;
    QTextStream(stdin).readLine();
    return 0;
}

void TestLocalFiles::init()
{
    m_temporary = std::make_unique<QTemporaryDir>(m_usual + "/local-XXXXXX");
    qputenv(test::TemporaryFolderVariable, QFile::encodeName(m_temporary->path()));
}

void TestLocalFiles::belongsToItsOwner()
{
    {
        LocalFiles files;
        QCOMPARE(entries(), QStringList());
        const QFileInfo file(files.add("users", "1"));
        QCOMPARE(entries().size(), 1);
        QVERIFY(test::isForOwnerOnly(file.filePath()));
        QVERIFY(test::isForOwnerOnly(file.path()));
        // A writer of the copy may have left its own file beside it.
        QFile beside(file.path() + "/left");
        QVERIFY(beside.open(QIODevice::WriteOnly));
    }
    QCOMPARE(entries(), QStringList());
}

void TestLocalFiles::removesOnlyWhatEndedSessionsLeft()
{
    LocalFiles own;
    const QString ownCopy = own.add("users", "1");
    QProcess other;
    QProcess killed;
    for (QProcess *process : {&other, &killed}) {
        process->start(QCoreApplication::applicationFilePath(), {"--be-session"});
        AWAIT_VERIFY(process->canReadLine());
    }
    const QString otherFolder = QString::fromUtf8(other.readLine()).trimmed();
    const QString killedFolder = QString::fromUtf8(killed.readLine()).trimmed();
    QCOMPARE(entries().size(), 3);
    killed.kill();
    QVERIFY(killed.waitForFinished());
    QCOMPARE(QDir(killedFolder).entryList(QDir::Files).size(), SessionFiles);

    LocalFiles next;
    QVERIFY(!QFile::exists(killedFolder));
    QVERIFY(QFile::exists(ownCopy));
    QCOMPARE(QDir(otherFolder).entryList(QDir::Files).size(), SessionFiles);
    const QString nextCopy = next.add("users", "2");
    const LocalFiles third;
    QVERIFY(QFile::exists(ownCopy) && QFile::exists(nextCopy));
    other.write("\n");
    QVERIFY(other.waitForFinished());
    QVERIFY(!QFile::exists(otherFolder));
}

void TestLocalFiles::leavesWhatIsNotItsOwn_data()
{
    const test::TestTable<QString, bool> row("kind", "isLeft");
    row("ended session", "folder", false);
    row("link to a folder", "link", true);
    row("file", "file", true);
    row("open to others", "open", true);
    row("of another user", "foreign", true);
    row("holds a folder", "nested", true);
}

void TestLocalFiles::leavesWhatIsNotItsOwn()
{
#ifdef Q_OS_WIN
    QSKIP("An ended session leaves a file more there.");
#else
    QFETCH(QString, kind);
    const QDir temporary(m_temporary->path());
    QString name;
    {
        LocalFiles files;
        name = QFileInfo(QFileInfo(files.add("users", "1")).path()).fileName();
    }
    const auto makeFolder = [&](const QString &folder) {
        QFile file(temporary.filePath(folder + "/users"));
        return temporary.mkdir(folder, QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner) &&
               file.open(QIODevice::WriteOnly);
    };
    const QString target = kind == "link" ? "target" : name;
    if (kind == "file") {
        QFile file(temporary.filePath(name));
        QVERIFY(file.open(QIODevice::WriteOnly));
    } else {
        QVERIFY(makeFolder(target));
    }
    const QByteArray path = QFile::encodeName(temporary.filePath(name));
    if (kind == "link")
        QVERIFY(QFile::link(temporary.filePath(target), temporary.filePath(name)));
    else if (kind == "open")
        QVERIFY(QFile::setPermissions(temporary.filePath(name), QFile::Permissions(0x7755)));
    else if (kind == "nested")
        QVERIFY(temporary.mkdir(name + "/inner"));
    else if (kind == "foreign" && ::chown(path.constData(), 65534, 65534) != 0)
        QSKIP("Only the superuser can give a folder away.");

    const LocalFiles next;
    QTEST(entries().contains(name), "isLeft");
    if (kind != "folder" && kind != "file" && kind != "nested")
        QVERIFY(QFile::exists(temporary.filePath(target + "/users")));
#endif
}

void TestLocalFiles::worksWhenItsFolderIsGone()
{
    LocalFiles files;
    const QString folder = QFileInfo(files.add("users", "1")).path();
    QVERIFY(QDir(folder).removeRecursively());
    QVERIFY(QFile::exists(files.add("users", "2")));
}

int main(int argc, char **argv)
{
    QCoreApplication application(argc, argv);
    if (QCoreApplication::arguments().value(1) == "--be-session")
        return TestLocalFiles::beSession();
    TestLocalFiles test;
    return QTest::qExec(&test, argc, argv);
}

#include "tst_local_files.moc"
