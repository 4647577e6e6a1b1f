#include "store/SystemPath.h"
#include "store/WholeFile.h"

#include "support/TestTable.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>
#include <QTest>

#ifdef Q_OS_WIN
#include <thread>

#include <qt_windows.h>
#endif

using namespace paravue;
using namespace paravue::test;

class TestWholeFile : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void replacesFiles_data();
    void replacesFiles();
    void waitsForOthersToCloseIt();

private:
    static QByteArray contentOf(const QString &path)
    {
        QFile file(path);
        return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray("unreadable");
    }
};

void TestWholeFile::replacesFiles_data()
{
    const TestTable<QString> row("folder");
    row("plain", "folder");
    row("blanks and letters of other alphabets", QString::fromUtf8("Мои файлы ñ"));
    row("beyond 260 characters", QStringList(5, QString(70, u'x')).join(u'/'));
}

void TestWholeFile::replacesFiles()
{
    QFETCH(QString, folder);
    QTemporaryDir place;
    QVERIFY(QDir(place.path()).mkpath(folder));
    const QString path = place.filePath(folder + "/file");
    for (const QByteArray content : {"first", "second, longer"}) {
        QString error;
        QVERIFY2(writeWholeFile(path, content, &error), qPrintable(error));
        QCOMPARE(contentOf(path), content);
    }
    // Nothing else is left, and the old file was replaced, not written into.
    QCOMPARE(QDir(place.filePath(folder)).entryList(QDir::Files | QDir::Hidden), QStringList("file"));
    QVERIFY(QFile::copy(path, path + "-2"));
    QVERIFY(!replaceFile(path, path + "-2"));
    QVERIFY(!QFile::exists(path));
}

void TestWholeFile::waitsForOthersToCloseIt()
{
#ifdef Q_OS_WIN
    QTemporaryDir place;
    const QString from = place.filePath("new");
    const QString to = place.filePath("old");
    QVERIFY(writeWholeFile(from, "new") && writeWholeFile(to, "old"));
    const HANDLE scanner = CreateFileW(systemPath(to).c_str(), GENERIC_READ, FILE_SHARE_READ, nullptr,
                                       OPEN_EXISTING, FILE_ATTRIBUTE_NORMAL, nullptr);
    QVERIFY(scanner != INVALID_HANDLE_VALUE);
    std::thread closing([scanner] {
        Sleep(50);
        CloseHandle(scanner);
    });
    const std::error_code error = replaceFile(from, to);
    closing.join();
    QVERIFY2(!error, error.message().c_str());
    QCOMPARE(contentOf(to), "new");
#else
    QSKIP("Here files are replaced while others have them open.");
#endif
}

QTEST_GUILESS_MAIN(TestWholeFile)
#include "tst_whole_file.moc"
