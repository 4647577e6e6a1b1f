#include "device/login/SettingsFile.h"
#include "store/WholeFile.h"
#include "support/TestTable.h"
#include "support/Waiting.h"

#include <QElapsedTimer>
#include <QProcess>
#include <QRandomGenerator>
#include <QTemporaryDir>
#include <QTextStream>
#include <QThread>

#include <array>

#include <sys/resource.h>

using namespace paravue;

namespace
{

constexpr int UsualKills = 6;
constexpr int AllKills = 100;
constexpr std::array Letters{'a', 'b', 'c'};

/// Each has its own size, so that neither a shorter nor a longer one passes for another.
QByteArray contentOf(char letter)
{
    return QByteArray((1 << 18) + 1000 * (letter - 'a'), letter);
}

bool isWhole(const QByteArray &content)
{
    return !content.isEmpty() && content == contentOf(content.front());
}

SettingsFile::Places placesIn(const QString &folder)
{
    auto places = SettingsFile::Places::standard();
    places.folder = folder;
    places.shippedFile.clear();
    return places;
}

void write(const QString &kind, const QString &folder, char letter)
{
    if (kind == "export") {
        writeWholeFile(folder + "/export.ini", contentOf(letter));
        return;
    }
    SettingsFile settings(placesIn(folder));
    settings.setValue("test/letter", QByteArray(1, letter));
    settings.setValue("test/value", contentOf(letter));
}

/// Writes one content after the other until it is killed: by the test or, with \a limit bytes, by the system
/// as soon as a file grows beyond that.
int writeForever(const QString &kind, const QString &folder, rlim_t limit)
{
    for (qsizetype i = 0;; ++i) {
        QElapsedTimer clock;
        clock.start();
        write(kind, folder, Letters[i % Letters.size()]);
        if (i != 1)
            continue;
        QTextStream(stdout) << clock.nsecsElapsed() / 1000 << Qt::endl;
        const rlimit files{limit, limit};
        const rlimit cores{0, 0};
        ::setrlimit(RLIMIT_CORE, &cores);
        if (limit > 0)
            ::setrlimit(RLIMIT_FSIZE, &files);
    }
}

} // namespace

/// A program that is killed while it writes leaves the old file or the new one.
class TestKilledWrites : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void leaveAWholeFile_data();
    void leaveAWholeFile();
};

void TestKilledWrites::leaveAWholeFile_data()
{
    const test::TestTable<QString> row("kind");
    row("settings", "settings");
    row("exported file", "export");
}

void TestKilledWrites::leaveAWholeFile()
{
    QFETCH(QString, kind);
    QTemporaryDir folder;
    const int kills = qEnvironmentVariableIsSet("PARAVUE_SOAK") ? AllKills : UsualKills;
    for (int i = 0; i < kills; ++i) {
        // A moment within a write would often fall between its system calls. So every second program is ended
        // when a part of the file stands there.
        const bool isKilledByTest = i % 2 == 0;
        auto *random = QRandomGenerator::global();
        const quint32 limit = isKilledByTest ? 0 : random->bounded(1u, quint32(contentOf('a').size()));
        QProcess writer;
        writer.start(QCoreApplication::applicationFilePath(),
                     {"--write", kind, folder.path(), QString::number(limit)});
        AWAIT_VERIFY(writer.canReadLine());
        const quint32 microseconds = writer.readLine().trimmed().toUInt();
        if (isKilledByTest) {
            QThread::usleep(random->bounded(2 * microseconds + 1));
            writer.kill();
        }
        AWAIT_COMPARE(writer.state(), QProcess::NotRunning);
        QCOMPARE(writer.exitStatus(), QProcess::CrashExit);

        if (kind == "export") {
            QFile file(folder.filePath("export.ini"));
            QVERIFY(file.open(QIODevice::ReadOnly));
            QVERIFY2(isWhole(file.readAll()), qPrintable(QString("after %1 kills").arg(i + 1)));
        } else {
            const SettingsFile settings(placesIn(folder.path()));
            const QByteArray value = settings.value("test/value");
            QVERIFY2(isWhole(value), qPrintable(QString("after %1 kills").arg(i + 1)));
            QCOMPARE(settings.value("test/letter"), value.first(1));
        }
    }
}

int main(int argc, char **argv)
{
    QCoreApplication application(argc, argv);
    const QStringList arguments = QCoreApplication::arguments();
    if (arguments.value(1) == "--write")
        return writeForever(arguments.value(2), arguments.value(3), arguments.value(4).toUInt());
    TestKilledWrites test;
    return QTest::qExec(&test, argc, argv);
}

#include "tst_killed_writes.moc"
