#include "store/StateTemplate.h"
#include "support/TestTable.h"

using namespace paravue;
using paravue::test::TestTable;

namespace
{

std::optional<QString> valueOf(const QString &address)
{
    if (address == "left/out")
        return {};
    static const QMap<QString, QString> values{{"net/a/ip", "10.0.0.5"}, {"x", "1"}, {"back", "\\1$&"}};
    return values.value(address);
}

} // namespace

class TestStateTemplate : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void applies_data();
    void applies();
    void staysWithinLimits_data();
    void staysWithinLimits();
};

void TestStateTemplate::applies_data()
{

    const TestTable<QString, QString> row("text", "expected");
    row("line before", "ID=old\n#!s/ID=old/ID={net/a/ip}/\n",
        "ID=10.0.0.5\n#!s/ID=10.0.0.5/ID={net/a/ip}/\n");
    row("line behind", "\n#!s/I=o/I={x};/\nI=o\n", "\n#!s/I=1;/I={x};/\nI=1;\n");
    row("every match", "a b a\n#!s/ a/ {x}/\na a\n", "a b 1\n#!s/ 1/ {x}/\na 1\n");
    row("blanks within", "k\n#! \t s/k/v{x}/ \t \n", "v1\n#! \t s/v1/v{x}/ \t \n");
    row("pattern takes as little as it can", "abbb\n#!s/ab+/c{x}/\n", "c1bb\n#!s/c1+/c{x}/\n");
    row("unknown address", "k=v\n#!s/=v/={none}/\n", "k=\n#!s/=/={none}/\n");
    row("value is taken literally", "kv\n#!s/(k)v/{back}/\n", "\\1$&\n#!s/(k)v/{back}/\n");
    row("carriage returns", "kv\r\n#!s/kv/k{x}/\r\n", "k1\r\n#!s/k1/k{x}/\r\n");
    row("not on the first line", "#!s/k/v{x}/\nk\n", "#!s/k/v{x}/\nk\n");
    row("not on a last line without an end", "k\n#!s/k/v{x}/", "k\n#!s/k/v{x}/");
    row("not in the middle of a line", "k\nx#!s/k/v{x}/\n", "k\nx#!s/k/v{x}/\n");
    row("no braces", "k\n#!s/k/v/\n", "k\n#!s/k/v/\n");
    row("text behind the end", "k\n#!s/k/v{x}/ y\n", "k\n#!s/k/v{x}/ y\n");
    row("invalid pattern", "k\n#!s/(/v{x}/\n", "k\n#!s/(/v{x}/\n");
    row("two directives share a line end", "p q\n#!s/p /{x}/\n#!s/q\n/r{x}\n/\n",
        "1r1\n#!s/1/{x}/\n#!s/r1\n/r{x}\n/\n");
    row("parts run on over lines", "k\n#!s/k\n/x\ny{x}/\n", "x\ny1#!s/x\ny1/x\ny{x}/\n");
    row("left out", "a b\n#!s/a/1{left/out}/\n#!s/b/2{x}/\n", "a 21\n#!s/a/1{left/out}/\n#!s/21/2{x}/\n");
    row("empty", "", "");
}

void TestStateTemplate::applies()
{
    QFETCH(QString, text);
    QFETCH(QString, expected);
    const CompiledState compiled = applyStateDirectives(text, valueOf);
    QCOMPARE(compiled.fault, CompiledState::Fault::None);
    QCOMPARE(compiled.text, expected);
}

void TestStateTemplate::staysWithinLimits_data()
{
    using Fault = CompiledState::Fault;
    const TestTable<QString, Fault> row("text", "fault");
    row("a directive that feeds on itself", "a\n#!s/\\x61/aa{x}/\n", Fault::TooLarge);
    row("empty matches in a long text", QString(100'000, 'k') + "\n#!s/()/" + QString(1000, 'v') + "{x}/\n",
        Fault::TooLarge);
    row("many directives in a long text",
        QString(2'000'000, 'k') + QString("\n#!s/qqq/r{x}/\n").repeated(1000), Fault::TooSlow);
    row("openings that never end", QString("\n#!s/").repeated(200'000), Fault::None);
    row("parts that never end", QString("\n#!s/k/v{x}").repeated(100'000), Fault::None);
    row("blanks that never end", "\n#!s/k/v{x}/" + QString(500'000, ' '), Fault::None);
    row("an expensive pattern", QString(40, 'a') + "\n#!s/(a|aa)+$b/v{x}/\n", Fault::None);
    QString many = QString(40, 'a') + '\n';
    for (int i = 0; i < 2000; ++i)
        many += QString("#!s/(a|aa)+$b%1/v{x}/\n").arg(i);
    row("expensive patterns", many, Fault::TooSlow);
}

void TestStateTemplate::staysWithinLimits()
{
    QFETCH(QString, text);
    QFETCH(CompiledState::Fault, fault);
    const CompiledState compiled = applyStateDirectives(text, valueOf);
    QCOMPARE(compiled.fault, fault);
    QCOMPARE(compiled.text, fault == CompiledState::Fault::None ? text : QString());
}

QTEST_GUILESS_MAIN(TestStateTemplate)
#include "tst_state_template.moc"
