#include "store/XmlLimits.h"
#include "support/TestTable.h"

#include <QStringEncoder>

using namespace paravue;
using paravue::test::TestTable;

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

class TestXmlLimits : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void judges_data();
    void judges();
};

void TestXmlLimits::judges_data()
{
    const TestTable<QByteArray, QString> row("text", "violation");
    const char *TooDeep = "its elements are nested more than 64 levels deep";

    row("deepest nesting", nested(64), {});
    row("nested too deep", nested(65), TooDeep);
    row("nested too deep without an end", QByteArray("<a>").repeated(100'000), TooDeep);
    row("empty elements do not nest", manyOf(1000, "<b x='>'/>"), {});
    row("an end tag within quotes ends nothing", QByteArray("<a b='</a>' c=\"/>\">").repeated(65), TooDeep);
    row("start tags within comments and the like", manyOf(100, "<!-- <a> --><![CDATA[<a>]]><?x <a>?>"), {});
    row("nested behind a comment",
        "<!-- --"
        "><![CDATA[]]>" +
            nested(65),
        TooDeep);
    row("nested too deep in UTF-16", inEncoding("UTF-16LE", nested(65)), TooDeep);
    row("nested too deep in UTF-32", inEncoding("UTF-32BE", nested(65)), TooDeep);
    row("UTF-8 with its mark", inEncoding("UTF-8", nested(64)), {});
    row("an encoding that hides the markup", "<?xml version='1.0' encoding='UTF-16'?><a/>",
        "its text encoding is not supported");
    row("declared encoding", "<?xml version='1.0' encoding='windows-1251'?><a/>", {});

    row("most elements", manyOf(199'999, "<b/>"), {});
    row("too many elements", manyOf(200'000, "<b/>"), "it has more than 200000 elements");
    row("most attributes of one element", withAttributes(256), {});
    row("too many attributes of one element", withAttributes(257),
        "one element has more than 256 attributes");
    row("most attributes", manyOf(24'000, "<b c='' d='' e='' f=''/>"), {});
    row("too many attributes", manyOf(26'000, "<b c='' d='' e='' f=''/>"),
        "it has too many elements with attributes");
    row("too many comments", manyOf(100'001, "<!---->"), "it has more than 100000 comments and instructions");

    row("document type", "<!DOCTYPE a><a/>", {});
    row("document type with brackets in its quotes", "<!DOCTYPE a SYSTEM '[x]'><a/>", {});
    row("internal subset", "<!DOCTYPE a [<!ENTITY e 'x'>]><a>&e;</a>", "it declares entities");
    row("internal subset in UTF-16", inEncoding("UTF-16BE", "<!DOCTYPE a [<!ENTITY e 'x'>]><a>&e;</a>"),
        "it declares entities");

    row("nothing", "", {});
    row("no XML: the parser says what is wrong", "<a <<< \" ' <!-", {});
    row("cut everywhere", "<!DOCTYPE", {});
}

void TestXmlLimits::judges()
{
    QFETCH(QByteArray, text);
    QTEST(xmlLimitViolation(text).value_or(QString()), "violation");
}

QTEST_GUILESS_MAIN(TestXmlLimits)
#include "tst_xml_limits.moc"
