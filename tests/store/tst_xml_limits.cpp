#include "store/XmlLimits.h"

#include <QStringEncoder>
#include <QTest>

using namespace paravue;

namespace
{

QByteArray nested(int depth)
{
    return QByteArray("<a>").repeated(depth) + QByteArray("</a>").repeated(depth);
}

QByteArray withAttributes(int count)
{
    QByteArray text = "<a";
    for (int i = 0; i < count; ++i)
        text += " n" + QByteArray::number(i) + "='='";
    return text + "/>";
}

QByteArray manyOf(int count, const QByteArray &child)
{
    return "<a>" + child.repeated(count) + "</a>";
}

QByteArray inEncoding(const char *name, const QByteArray &utf8)
{
    QStringEncoder encoder(name, QStringEncoder::Flag::WriteBom);
    return encoder(QString::fromUtf8(utf8));
}

} // namespace

class XmlLimitsTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void judges_data();
    void judges();
};

void XmlLimitsTest::judges_data()
{
    QTest::addColumn<QByteArray>("text");
    QTest::addColumn<QString>("violation");

    const auto accepted = [](const char *name, const QByteArray &text) {
        QTest::newRow(name) << text << QString();
    };
    const auto refused = [](const char *name, const QByteArray &text, const char *violation) {
        QTest::newRow(name) << text << QString(violation);
    };
    const char *TooDeep = "its elements are nested more than 64 levels deep";

    accepted("deepest nesting", nested(64));
    refused("nested too deep", nested(65), TooDeep);
    refused("nested too deep without an end", QByteArray("<a>").repeated(100'000), TooDeep);
    accepted("empty elements do not nest", manyOf(1000, "<b x='>'/>"));
    refused("an end tag within quotes ends nothing", QByteArray("<a b='</a>' c=\"/>\">").repeated(65),
            TooDeep);
    accepted("start tags within comments and the like", manyOf(100, "<!-- <a> --><![CDATA[<a>]]><?x <a>?>"));
    refused("nested behind a comment",
            "<!-- --"
            "><![CDATA[]]>" +
                nested(65),
            TooDeep);
    refused("nested too deep in UTF-16", inEncoding("UTF-16LE", nested(65)), TooDeep);
    refused("nested too deep in UTF-32", inEncoding("UTF-32BE", nested(65)), TooDeep);
    accepted("UTF-8 with its mark", inEncoding("UTF-8", nested(64)));
    refused("an encoding that hides the markup", "<?xml version='1.0' encoding='UTF-16'?><a/>",
            "its text encoding is not supported");
    accepted("declared encoding", "<?xml version='1.0' encoding='windows-1251'?><a/>");

    accepted("most elements", manyOf(199'999, "<b/>"));
    refused("too many elements", manyOf(200'000, "<b/>"), "it has more than 200000 elements");
    accepted("most attributes of one element", withAttributes(256));
    refused("too many attributes of one element", withAttributes(257),
            "one element has more than 256 attributes");
    refused("too many attributes", manyOf(100'001, "<b c='' d='' e='' f=''/>"),
            "it has more than 400000 attributes");
    refused("too many comments", manyOf(100'001, "<!---->"),
            "it has more than 100000 comments and instructions");

    accepted("document type", "<!DOCTYPE a><a/>");
    accepted("document type with brackets in its quotes", "<!DOCTYPE a SYSTEM '[x]'><a/>");
    refused("internal subset", "<!DOCTYPE a [<!ENTITY e 'x'>]><a>&e;</a>", "it declares entities");
    refused("internal subset in UTF-16", inEncoding("UTF-16BE", "<!DOCTYPE a [<!ENTITY e 'x'>]><a>&e;</a>"),
            "it declares entities");

    accepted("nothing", "");
    accepted("no XML: the parser says what is wrong", "<a <<< \" ' <!-");
    accepted("cut everywhere", "<!DOCTYPE");
}

void XmlLimitsTest::judges()
{
    QFETCH(QByteArray, text);
    QFETCH(QString, violation);
    QCOMPARE(xmlLimitViolation(text).value_or(QString()), violation);
}

QTEST_GUILESS_MAIN(XmlLimitsTest)
#include "tst_xml_limits.moc"
