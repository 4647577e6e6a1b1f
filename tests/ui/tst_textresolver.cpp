#include "StoreFixture.h"
#include "ui/description/InterfaceDocument.h"
#include "ui/description/TextResolver.h"

#include <QTest>

using paravue::InterfaceDocument;
using paravue::ResolvedText;
using paravue::TextResolver;
using paravue::test::StoreFixture;

namespace
{

const QByteArray Description =
    "<pvsetup><translations>"
    "<ru><name>Имя</name><only_ru>да</only_ru></ru>"
    "<en><name>Name</name><empty/><both>@name and @name</both><late>x@name</late>"
    "<self>a@self</self><front>@front</front><host>Host {net/untitled/HOST}</host></en>"
    "</translations></pvsetup>";

} // namespace

class TestTextResolver : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void resolves_data();
    void resolves();
    void speaksTheLanguageOfTheRecorder_data();
    void speaksTheLanguageOfTheRecorder();
    void endsTextsThatGrow_data();
    void endsTextsThatGrow();
};

void TestTextResolver::resolves_data()
{
    QTest::addColumn<QString>("raw");
    QTest::addColumn<QString>("text");
    QTest::addColumn<QStringList>("addresses");

    const QStringList none;
    QTest::newRow("plain") << "Plain {"
                           << "Plain {" << none;
    QTest::newRow("whole") << "@name"
                           << "Name" << none;
    QTest::newRow("within") << "<@name>"
                            << "<@name>" << none; // ">" is part of the id
    QTest::newRow("ended by a dot") << "@name. @name\n@name\t@name"
                                    << "Name. Name\nName\tName" << none;
    QTest::newRow("one after the other") << "@name@name"
                                         << "NameName" << none;
    QTest::newRow("unknown") << "@unknown @name"
                             << "@unknown Name" << none;
    QTest::newRow("empty translation") << "@empty"
                                       << "@empty" << none;
    QTest::newRow("no reference") << "a@ b @"
                                  << "a@ b @" << none;
    QTest::newRow("translation with a reference") << "@late"
                                                  << "xName" << none;
    // The search goes on behind the first character of what was put in.
    QTest::newRow("translation that starts with one") << "@both"
                                                      << "@name and Name" << none;
    QTest::newRow("translation that is itself") << "@front"
                                                << "@front" << none;

    QTest::newRow("address") << "IP {net/untitled/IP}!"
                             << "IP 10.0.0.5!" << QStringList{"net/untitled/IP"};
    QTest::newRow("blanks") << "{ net/untitled/IP }"
                            << "10.0.0.5" << QStringList{"net/untitled/IP"};
    QTest::newRow("default") << "{net/untitled/NONE/a/b }"
                             << "a/b " << QStringList{"net/untitled/NONE/a/b "};
    QTest::newRow("missing") << "[{net/untitled/NONE}]"
                             << "[]" << QStringList{"net/untitled/NONE"};
    QTest::newRow("innermost pair") << "{a{net/untitled/IP}b}"
                                    << "{a10.0.0.5b}" << QStringList{"net/untitled/IP"};
    QTest::newRow("no address") << "{} {net"
                                << "{} {net" << none;
    QTest::newRow("two") << "{net/untitled/IP}{net/untitled/HOST}"
                         << "10.0.0.5{net/untitled/IP} @name"
                         << QStringList{"net/untitled/IP", "net/untitled/HOST"};
    QTest::newRow("translated address") << "@host"
                                        << "Host {net/untitled/IP} @name" << QStringList{"net/untitled/HOST"};
}

void TestTextResolver::resolves()
{
    QFETCH(QString, raw);
    InterfaceDocument document;
    QCOMPARE(document.load(Description, "here"), QString());
    StoreFixture fixture(
        {{"streams", "[common]\nlanguage=en\n"}, {"net", "IP='10.0.0.5'\nHOST='{net/untitled/IP} @name'\n"}});
    const ResolvedText resolved = TextResolver(document, fixture.store()).resolve(raw);
    QTEST(resolved.text, "text");
    QTEST(resolved.addresses, "addresses");
    QVERIFY(resolved.withinLimits);
    QCOMPARE(fixture.takeErrors(), QStringList());
}

void TestTextResolver::speaksTheLanguageOfTheRecorder_data()
{
    QTest::addColumn<QByteArray>("streams");
    QTest::addColumn<QString>("text");
    QTest::newRow("no file") << QByteArray() << "Имя да";
    QTest::newRow("no language in the file") << QByteArray("[common]\nfps=25\n") << "Имя да";
    QTest::newRow("English") << QByteArray("[common]\nlanguage=en\n") << "Name @only_ru";
    QTest::newRow("one without translations") << QByteArray("[common]\nlanguage=de\n") << "@name @only_ru";
}

void TestTextResolver::speaksTheLanguageOfTheRecorder()
{
    QFETCH(QByteArray, streams);
    InterfaceDocument document;
    QCOMPARE(document.load(Description, "here"), QString());
    StoreFixture fixture({});
    if (!streams.isEmpty())
        fixture.setFile("streams", streams);
    QTEST(TextResolver(document, fixture.store()).resolve("@name @only_ru").text, "text");
    QCOMPARE(fixture.takeErrors(), QStringList());
}

void TestTextResolver::endsTextsThatGrow_data()
{
    QTest::addColumn<QString>("raw");
    QTest::newRow("refers to itself") << "@self";
    QTest::newRow("too many references") << QStringLiteral("@name ").repeated(10'001);
    QTest::newRow("too many values") << QStringLiteral("{net/untitled/IP}").repeated(10'001);
    QTest::newRow("too long by its values") << QStringLiteral("{net/untitled/LONG}").repeated(11);
    QTest::newRow("too long as written") << QString(1024 * 1024 + 1, u'{');
}

void TestTextResolver::endsTextsThatGrow()
{
    QFETCH(QString, raw);
    InterfaceDocument document;
    QCOMPARE(document.load(Description, "here"), QString());
    StoreFixture fixture(
        {{"streams", "[common]\nlanguage=en\n"}, {"net", "IP=1\nLONG=" + QByteArray(100'000, 'x') + '\n'}});
    const ResolvedText resolved = TextResolver(document, fixture.store()).resolve(raw);
    QVERIFY(!resolved.withinLimits);
    QCOMPARE(resolved.text, raw);
}

QTEST_APPLESS_MAIN(TestTextResolver)
#include "tst_textresolver.moc"
