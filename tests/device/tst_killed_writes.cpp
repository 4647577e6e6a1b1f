#include "device/OrbNetSetup.h"
#include "device/login/SettingsFile.h"
#include "recorder/RecorderServer.h"
#include "store/WholeFile.h"
#include "support/TemporaryPlace.h"
#include "support/TestTable.h"
#include "support/Waiting.h"

#include <QDir>
#include <QElapsedTimer>
#include <QProcess>
#include <QRandomGenerator>
#include <QRegularExpression>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QTextStream>
#include <QThread>

#include <array>
#include <chrono>

#ifndef Q_OS_WIN
#include <sys/resource.h>
#endif

using namespace paravue;
using namespace paravue::test;

namespace
{

constexpr std::array Letters{'a', 'b', 'c'};
constexpr std::array SavedFiles{"net", "streams"};

int kills()
{
    return qEnvironmentVariableIsSet("PARAVUE_SOAK") ? 100 : 6;
}

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

/// Calls \a write with one letter after the other until the program is killed, and tells after two of them
/// how many microseconds the second has taken. With \a limit the system kills the program as soon as a file
/// grows beyond so many bytes.
template <typename Write>
int repeatForever(Write write, [[maybe_unused]] qint64 limit)
{
    for (qsizetype i = 0;; ++i) {
        QElapsedTimer clock;
        clock.start();
        write(Letters[i % Letters.size()]);
        if (i != 1)
            continue;
        QTextStream(stdout) << clock.nsecsElapsed() / 1000 << Qt::endl;
#ifndef Q_OS_WIN
        const rlimit files{rlim_t(limit), rlim_t(limit)};
        const rlimit cores{0, 0};
        ::setrlimit(RLIMIT_CORE, &cores);
        if (limit > 0)
            ::setrlimit(RLIMIT_FSIZE, &files);
#endif
    }
}

/// A program that saves to the recorder at \a address, remembers a login and exports settings.
int saveForever(const QString &folder, const QString &address)
{
    OrbNetSetup store(address);
    QSignalSpy loaded(&store, &OrbSetup::loadDone);
    QSignalSpy saved(&store, &OrbSetup::storeDone);
    store.load();
    if (!waitUntil([&] { return !loaded.isEmpty(); }))
        return EXIT_FAILURE;
    return repeatForever(
        [&](char letter) {
            for (const char *name : SavedFiles)
                store.setValue(QString("%1/untitled/LETTERS/%2").arg(name, QString(contentOf(letter))));
            const qsizetype before = saved.size();
            store.store();
            if (!waitUntil([&] { return saved.size() > before; }))
                qFatal("The save does not end");
            write("settings", folder, letter);
            write("export", folder, letter);
        },
        0);
}

/// Starts this program with \a arguments; \a round gets how long it takes to write everything once.
void startWriter(QProcess &writer, const QStringList &arguments, std::chrono::microseconds &round)
{
    writer.start(QCoreApplication::applicationFilePath(), arguments);
    AWAIT_VERIFY_WITHIN(writer.canReadLine(), 30'000); // a program that has just started is slow
    round = std::chrono::microseconds(writer.readLine().trimmed().toUInt());
}

bool isExportWhole(const QString &folder)
{
    QFile file(folder + "/export.ini");
    return file.open(QIODevice::ReadOnly) && isWhole(file.readAll());
}

bool areSettingsWhole(const QString &folder)
{
    const SettingsFile settings(placesIn(folder));
    const QByteArray value = settings.value("test/value");
    return isWhole(value) && settings.value("test/letter") == value.first(1);
}

/// The value that a save has written to the file of the recorder.
QByteArray savedLetters(const QString &path)
{
    static const QRegularExpression line("^LETTERS = '?([a-c]*)'?$", QRegularExpression::MultilineOption);
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? line.match(file.readAll()).captured(1).toLatin1() : QByteArray();
}

} // namespace

/// A program that is killed while it writes leaves the old file or the new one, here and on the recorder.
class TestKilledWrites : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void leaveAWholeFile_data();
    void leaveAWholeFile();
    void leaveWholeFilesOfASave();
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
    for (int i = 0; i < kills(); ++i) {
        // A moment within a write would often fall between its system calls. So every second program is ended
        // when a part of the file stands there.
#ifdef Q_OS_WIN
        constexpr bool isKilledByTest = true; // there is no limit for files
#else
        const bool isKilledByTest = i % 2 == 0;
#endif
        auto *random = QRandomGenerator::global();
        const quint32 limit = isKilledByTest ? 0 : random->bounded(1u, quint32(contentOf('a').size()));
        QProcess writer;
        std::chrono::microseconds round{};
        startWriter(writer, {"--write", kind, folder.path(), QString::number(limit)}, round);
        if (isKilledByTest) {
            QThread::usleep(random->bounded(2 * quint32(round.count()) + 1));
            writer.kill();
        }
        AWAIT_COMPARE(writer.state(), QProcess::NotRunning);
        QCOMPARE(writer.exitStatus(), QProcess::CrashExit);
        const bool whole = kind == "export" ? isExportWhole(folder.path()) : areSettingsWhole(folder.path());
        QVERIFY2(whole, qPrintable(QString("after %1 kills").arg(i + 1)));
    }
}

void TestKilledWrites::leaveWholeFilesOfASave()
{
    QTemporaryDir folder;
    QTemporaryDir temporaries;
    recorder::RecorderServer recorder(folder.filePath("recorder"));
    QVERIFY2(recorder.listen(), qPrintable(recorder.errorString()));
    const QString address = "admin:admin@127.0.0.1:" + QString::number(qint16(recorder.port()));
    for (int i = 0; i < kills(); ++i) {
        QProcess writer;
        QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
        setTemporaryPlace(environment, temporaries.path());
        writer.setProcessEnvironment(environment);
        std::chrono::microseconds round{};
        startWriter(writer, {"--save", folder.path(), address}, round);
        QVERIFY(round.count() > 0);
        const QDeadlineTimer moment(
            std::chrono::microseconds(QRandomGenerator::global()->bounded(2 * quint32(round.count()))));
        waitUntil([&] { return moment.hasExpired(); });
        writer.kill();
        AWAIT_COMPARE(writer.state(), QProcess::NotRunning);
        AWAIT_COMPARE(recorder.clientCount(), 0);
        for (const char *name : SavedFiles)
            QVERIFY2(isWhole(savedLetters(recorder.filePath(name))), name);
        QVERIFY(areSettingsWhole(folder.path()));
        QVERIFY(isExportWhole(folder.path()));
        // Those of the programs before were removed at its start, for which it takes no longer than a moment.
#ifdef Q_OS_WIN
        constexpr qsizetype mostFolders = 3; // virus scanners hold files, and Wine is slow
#else
        constexpr qsizetype mostFolders = 1;
#endif
        QVERIFY(QDir(temporaries.path()).entryList(QDir::Dirs | QDir::NoDotAndDotDot).size() <= mostFolders);
    }
}

int main(int argc, char **argv)
{
    QCoreApplication application(argc, argv);
    const QStringList arguments = QCoreApplication::arguments();
    if (arguments.value(1) == "--write") {
        return repeatForever([&](char letter) { write(arguments.value(2), arguments.value(3), letter); },
                             arguments.value(4).toUInt());
    }
    if (arguments.value(1) == "--save")
        return saveForever(arguments.value(2), arguments.value(3));
    TestKilledWrites test;
    return QTest::qExec(&test, argc, argv);
}

#include "tst_killed_writes.moc"
