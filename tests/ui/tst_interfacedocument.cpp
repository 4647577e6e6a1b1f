#include "ui/description/InterfaceDocument.h"

#include <QTest>

using paravue::InterfaceDocument;

class TestInterfaceDocument : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void loads_data();
    void loads();
    void keepsTheOldDescriptionAfterAFault();
    void findsElementsByTag();
    void readsTexts_data();
    void readsTexts();
};

void TestInterfaceDocument::loads_data()
{
    QTest::addColumn<QByteArray>("text");
    QTest::addColumn<QString>("fault"); // a pattern

    const auto nested = [](int depth) {
        return QByteArray("<pvsetup>") + QByteArray("<a>").repeated(depth - 1) +
               QByteArray("</a>").repeated(depth - 1) + "</pvsetup>";
    };
    const auto wide = [](int elements) {
        return "<pvsetup>" + QByteArray("<a/>").repeated(elements - 1) + "</pvsetup>";
    };
    QTest::newRow("version 1.0") << QByteArray("<pvsetup version=\"1.0\"/>") << "";
    QTest::newRow("no version") << QByteArray("<pvsetup/>") << "";
    QTest::newRow("other version") << QByteArray("<pvsetup version=\"1.1\"/>")
                                   << "here file version is not 1\\.0";
    QTest::newRow("empty version") << QByteArray("<pvsetup version=\"\"/>")
                                   << "here file version is not 1\\.0";
    QTest::newRow("other root") << QByteArray("<pvSetup/>") << "here is not an Paravue Setup config file\\.";
    QTest::newRow("unclosed") << QByteArray("<pvsetup>\n  <a></b>\n</pvsetup>") << "here:2\\.\\d+\\n.+";
    QTest::newRow("empty") << QByteArray() << "here:\\d+\\.\\d+\\n.+";
    QTest::newRow("bare document type") << QByteArray("<!DOCTYPE pvsetup><pvsetup/>") << "";
    QTest::newRow("entities") << QByteArray("<!DOCTYPE p [<!ENTITY a \"aa\">]><pvsetup>&a;</pvsetup>")
                              << "here: .+";
    QTest::newRow("deepest") << nested(64) << "";
    QTest::newRow("too deep") << nested(65) << "here: .+";
    QTest::newRow("absurdly deep") << nested(100'000) << "here: .+";
    QTest::newRow("largest") << wide(200'000) << "";
    QTest::newRow("too large") << wide(200'001) << "here: .+";
}

void TestInterfaceDocument::loads()
{
    QFETCH(QByteArray, text);
    QFETCH(QString, fault);
    InterfaceDocument document;
    const QString message = document.load(text, "here");
    const QRegularExpression expected(QRegularExpression::anchoredPattern(fault));
    QVERIFY2(expected.match(message).hasMatch(), qPrintable(message));
    QCOMPARE(document.root().isNull(), !fault.isEmpty());
}

void TestInterfaceDocument::keepsTheOldDescriptionAfterAFault()
{
    InterfaceDocument document;
    QCOMPARE(document.load("<pvsetup><a/></pvsetup>", "one"), QString());
    QVERIFY(!document.load("<pvsetup><b/></other>", "two").isEmpty());
    QVERIFY(!document.first("a").isNull());
    QCOMPARE(document.load("<pvsetup><b/></pvsetup>", "three"), QString());
    QVERIFY(document.first("a").isNull());
    QVERIFY(!document.first("b").isNull());
}

void TestInterfaceDocument::findsElementsByTag()
{
    InterfaceDocument document;
    QCOMPARE(document.load("<pvsetup>"
                           "<page n='1'><mark n='2'/></page><mark n='3'/>"
                           "<translations><ru><mark>first</mark><mark>second</mark></ru></translations>"
                           "<other><translations><mark n='4'/></translations></other>"
                           "</pvsetup>",
                           "here"),
             QString());
    QStringList numbers;
    for (const QDomElement &element : document.elements("mark"))
        numbers << element.attribute("n");
    QCOMPARE(numbers.join(u' '), "2 3 4"); // a translation is never a target
    QCOMPARE(document.translation("ru", "mark"), "first");
    QCOMPARE(document.translation("en", "mark"), QString());

    document.append(document.first("page"), "link0");
    QCOMPARE(document.first("page").lastChildElement().tagName(), "link0");
    QVERIFY(document.first("link0").isNull()); // nor is a decoration
}

void TestInterfaceDocument::readsTexts_data()
{
    QTest::addColumn<QByteArray>("xml");
    QTest::addColumn<QString>("caption");
    QTest::addColumn<QString>("address");
    QTest::newRow("as written") << QByteArray("<t> a/b/c/ d </t>") << " a/b/c/ d "
                                << " a/b/c/ d ";
    QTest::newRow("child's text left out") << QByteArray("<t>\n  Low\n  <key>a/b/c/1</key>\n</t>") << "Low"
                                           << "Low\n  a/b/c/1";
    QTest::newRow("on a line of its own") << QByteArray("<t>\n  a/b/c\n</t>") << "\n  a/b/c\n"
                                          << "a/b/c";
    QTest::newRow("character data") << QByteArray("<t><![CDATA[a<b]]></t>") << "a<b"
                                    << "a<b";
}

void TestInterfaceDocument::readsTexts()
{
    QFETCH(QByteArray, xml);
    InterfaceDocument document;
    QCOMPARE(document.load("<pvsetup>" + xml + "</pvsetup>", "here"), QString());
    QTEST(paravue::ownText(document.first("t")), "caption");
    QTEST(paravue::addressText(document.first("t")), "address");
}

QTEST_APPLESS_MAIN(TestInterfaceDocument)
#include "tst_interfacedocument.moc"
