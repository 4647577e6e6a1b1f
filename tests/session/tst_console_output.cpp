#include "program/ConsoleOutput.h"

#include <QTest>

#include <qt_windows.h>

using namespace paravue;

class TestConsoleOutput : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void readsUtf8WhileItLives();
    void isLeftAsItWasByAProgramThatEndsAtOnceOrGoesOn();
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

void TestConsoleOutput::isLeftAsItWasByAProgramThatEndsAtOnceOrGoesOn()
{
    constexpr UINT Cyrillic = 866;
    constexpr UINT WesternEurope = 850;
    FreeConsole();
    QVERIFY(AllocConsole());
    QVERIFY(SetConsoleOutputCP(Cyrillic));
    const ConsoleOutput output;
    ConsoleOutput::restoreConsole();
    QCOMPARE(GetConsoleOutputCP(), Cyrillic);
    {
        const ConsoleWrite write;
        QCOMPARE(GetConsoleOutputCP(), UINT(CP_UTF8));
    }
    QCOMPARE(GetConsoleOutputCP(), Cyrillic);
    // The user has chosen another one meanwhile.
    QVERIFY(SetConsoleOutputCP(WesternEurope));
    ConsoleOutput::restoreConsole();
    QCOMPARE(GetConsoleOutputCP(), WesternEurope);
}

QTEST_APPLESS_MAIN(TestConsoleOutput)
#include "tst_console_output.moc"
