#include "store/OrbSetup.h"
#include "support/TestTable.h"
#include "ui/description/DescribedValues.h"
#include "ui/description/InterfaceDocument.h"
#include "ui/description/TextResolver.h"

#include <QTest>

using namespace paravue;
using namespace paravue::test;

namespace
{

DescribedValues described(const QByteArray &items)
{
    InterfaceDocument document;
    const QString problem = document.load(
        "<pvsetup><tabwidget><tab><name>&amp;Net</name><item type=\"gridlayout\">" + items +
            "</item></tab></tabwidget>"
            "<ask><title>Ask</title><item type=\"gridlayout\"><item type=\"edit\" row=\"0\" column=\"0\">"
            "<key>net/a/asked</key></item></item></ask>"
            "<translations><ru><high>High</high></ru></translations></pvsetup>",
        "interface");
    Q_ASSERT(problem.isEmpty());
    OrbSetup store;
    return DescribedValues(document, TextResolver(document, store));
}

} // namespace

class TestDescribedValues : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void judgesValues_data();
    void judgesValues();
    void tellsCaptions();
    void takesTheRulesOfAllControls();
    void judgesNumberedRows();
};

void TestDescribedValues::judgesValues_data()
{
    const TestTable<QByteArray, QStringList, QStringList> row("item", "allowed", "refused");
    const QByteArray key = "<key>net/a/b</key></item>";
    row("any text", "<item type=\"edit\">" + key, {"", "a/b"}, {});
    row("a pattern", "<item type=\"edit\" validator=\"[0-9]{1,3}\">" + key, {"", "12"}, {"1234", "a"});
    row("a range", "<item type=\"edit\" minimum=\"-5\" maximum=\"10\">" + key, {"", "-5", "10"},
        {"-6", "11", "x", "99999999999"});
    row("a value that is needed", "<item type=\"edit\" required=\"yes\">" + key, {"a"}, {"", " "});
    row("a mask", "<item type=\"edit\" inputMask=\"&gt;AAa-99;_\">" + key, {"", "AB-12", "ABC-12"},
        {"ab-12", "A-12", "AB-1", "AB12"});
    row("an address as a mask", "<item type=\"edit\" inputMask=\"000.000.000.000;_\">" + key,
        {"10.0.0.1", "192.168.100.200"}, {"10.0.0", "1000.0.0.1", "10.0.0.x"});
    row("a switch", "<item type=\"checkbox\">" + key, {"on", "off"}, {"", "yes"});
    row("a position", "<item type=\"scroll\" minvalue=\"1\" maxvalue=\"5\">" + key, {"1", "5"},
        {"", "0", "6"});
    row("a time", "<item type=\"datetime\">" + key, {"20240131235900"}, {"20240231235900", "now"});
    row("choices",
        "<item type=\"dropdown\"><text>Low<key>net/a/b/low</key></text><text>@high</text>"
        "<key>unused</key><key>net/a/b/x/y</key></item>",
        {"low", "x/y"}, {"", "high"});
    row("what a choice brings with it",
        "<item type=\"dropdown\"><text>Low<key>net/a/c/low</key></text><keyset>net/a/b/4, net/a/d/1</keyset>"
        "</item><item type=\"scroll\" row=\"1\" maxvalue=\"3\">" +
            key,
        {"3", "4"}, {"5"});
    const QByteArray hours = QByteArray("0123").repeated(6);
    row("a day among seven",
        "<item type=\"vornschedule\">" + QByteArray("<key>net/a/b</key>").repeated(7) + "</item>",
        {"", hours, hours + hours, hours.repeated(4)},
        {"0", hours + "0", QByteArray(hours).replace("3", "4")});
    row("kinds of its own",
        "<item type=\"vornschedule\"><kind value=\"-\"/><kind value=\"]\"/>" +
            QByteArray("<key>net/a/b</key>").repeated(7) + "</item>",
        {QByteArray("-]").repeated(12)}, {hours});
    row("a value to read", "<item type=\"label\"><value>net/a/b</value></item>", {"x"}, {});
    row("a field that stays disabled", "<item type=\"edit\" enabled=\"no\" maximum=\"1\">" + key, {"7"}, {});
}

void TestDescribedValues::judgesValues()
{
    QFETCH(QByteArray, item);
    QFETCH(QStringList, allowed);
    QFETCH(QStringList, refused);
    const DescribedValues values = described(item);
    for (const QString &value : allowed)
        QVERIFY2(values.problemWith("net/a/b", value).isEmpty(), qPrintable(value));
    for (const QString &value : refused)
        QVERIFY2(!values.problemWith("net/a/b", value).isEmpty(), qPrintable(value));
    QCOMPARE(values.problemWith("net/a/other", "x"), QString());
}

void TestDescribedValues::tellsCaptions()
{
    const DescribedValues values = described(
        "<item type=\"label\" row=\"0\" column=\"0\"><text>&lt;b&gt;Quality&lt;/b&gt;</text></item>"
        "<item type=\"dropdown\" row=\"0\" column=\"1\" secret=\"yes\"><text>@high<key>net/a/b/1</key>"
        "</text><unit>fps</unit></item>"
        "<item type=\"checkbox\" row=\"1\" column=\"0\"><text>&amp;Use it</text><key>net/a/c</key></item>");
    QCOMPARE(values.all().size(), 3);
    const DescribedValue &choice = values.all()[0];
    QCOMPARE(choice.caption, "Quality");
    QCOMPARE(choice.place, "Net");
    QCOMPARE(choice.unit, "fps");
    QCOMPARE(choice.choices.value(0).caption, "High");
    QVERIFY(choice.isSecret);
    QCOMPARE(values.all()[1].caption, "Use it");
    QCOMPARE(values.all()[2].place, "Ask");
    QCOMPARE(values.all()[2].path, "net/a/asked");
}

void TestDescribedValues::takesTheRulesOfAllControls()
{
    const DescribedValues values =
        described("<item type=\"scroll\" row=\"0\" maxvalue=\"3\"><key>net/a/b</key></item>"
                  "<item type=\"edit\" row=\"1\" maximum=\"9\"><key>net/a/b</key></item>");
    QCOMPARE(values.problemWith("net/a/b", "9"), QString());
    QVERIFY(!values.problemWith("net/a/b", "10").isEmpty());
}

void TestDescribedValues::judgesNumberedRows()
{
    const DescribedValues values = described(
        "<item type=\"maskctrl\" ctrlColumns=\"4\" ctrlRows=\"2\"><key>net/mask</key></item>"
        "<item type=\"PTZAlarm\" row=\"1\"><text>Door</text><text>Gate</text><key>net/zone/Z/0</key></item>"
        "<item type=\"vornschedule\" row=\"2\"><key>net/plan</key></item>");
    for (const char *value :
         {"net/mask/ROW0 0101", "net/mask/ROW1 1", "net/zone/Z11 0012", "net/mask/ROW2 any"})
        QCOMPARE(values.problemWith(QString(value).section(' ', 0, 0), QString(value).section(' ', 1)),
                 QString());
    for (const char *value : {"net/mask/ROW0 01011", "net/mask/ROW1 2", "net/zone/Z0 3", "net/plan/DAY6 0"})
        QVERIFY2(
            !values.problemWith(QString(value).section(' ', 0, 0), QString(value).section(' ', 1)).isEmpty(),
            value);
}

QTEST_GUILESS_MAIN(TestDescribedValues)
#include "tst_described_values.moc"
