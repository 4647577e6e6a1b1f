#include "program/ConsoleOutput.h"

#include <QTest>

#include <qt_windows.h>

using namespace paravue;

class TestConsoleOutput : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void readsUtf8WhileItLives();
    void isLeftAsItWasByAProgramThatEndsAtOnce();
};

void TestConsoleOutput::readsUtf8WhileItLives()
{
    constexpr UINT Cyrillic = 866;
    FreeConsole();
    QVERIFY(AllocConsole());
    QVERIFY(SetConsoleOutputCP(Cyrillic));
    {
        const ConsoleOutput output;
        QCOMPARE(GetConsoleOutputCP(), UINT(CP_UTF8));
    }
    QCOMPARE(GetConsoleOutputCP(), Cyrillic);
}

void TestConsoleOutput::isLeftAsItWasByAProgramThatEndsAtOnce()
{
    constexpr UINT Cyrillic = 866;
    FreeConsole();
    QVERIFY(AllocConsole());
    QVERIFY(SetConsoleOutputCP(Cyrillic));
    const ConsoleOutput output;
    ConsoleOutput::restoreConsole();
    QCOMPARE(GetConsoleOutputCP(), Cyrillic);
}

QTEST_APPLESS_MAIN(TestConsoleOutput)
#include "tst_console_output.moc"
