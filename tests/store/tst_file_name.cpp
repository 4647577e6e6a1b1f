#include "store/FileName.h"
#include "support/TestTable.h"

#include <QTest>

using namespace paravue;
using paravue::test::TestTable;

class TestFileName : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void plainNames_data();
    void plainNames();
    void otherComputers_data();
    void otherComputers();
};

void TestFileName::plainNames_data()
{
    const TestTable<QString, bool> row("name", "isPlain");
    row("usual", "net", true);
    row("with an extension", "cameras.ini", true);
    row("hidden", ".net", true);
    row("blank inside", "net config", true);
    row("no device, but begins like one", "console", true);
    row("device name as an extension", "net.nul", true);
    row("port without a number", "com", true);
    row("empty", "", false);
    row("this folder", ".", false);
    row("folder above", "..", false);
    row("slash", "../net", false);
    row("backslash", "..\\net", false);
    row("drive", "c:net", false);
    row("second stream of a file", "net:hidden", false);
    row("line end", "net\n", false);
    row("dropped dot", "net.", false);
    row("dropped blank", "net ", false);
    row("device", "NUL", false);
    row("device with an extension", "aux.ini", false);
    row("device with a blank", "con .ini", false);
    row("console", "conin$", false);
    row("port", "LPT9", false);
    row("port with a superscript digit", "com\u00b9", false);
}

void TestFileName::plainNames()
{
    QFETCH(QString, name);
    QTEST(isPlainFileName(name), "isPlain");
}

void TestFileName::otherComputers_data()
{
    const TestTable<QString, bool> row("path", "isOfOther");
    row("empty", "", false);
    row("absolute", "/home/user/net", false);
    row("drive", "C:\\Users\\net", false);
    row("slashes", "//host/share/net", true);
    row("backslashes", "\\\\host\\share\\net", true);
    row("slash first", "/\\host/share/net", true);
    row("backslash first", "\\/host/share/net", true);
    row("form of the kernel", "\\??\\UNC\\host\\share\\net", true);
}

void TestFileName::otherComputers()
{
    QFETCH(QString, path);
    QTEST(isPathOfOtherComputer(path), "isOfOther");
}

QTEST_APPLESS_MAIN(TestFileName)
#include "tst_file_name.moc"
