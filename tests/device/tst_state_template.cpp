#include "device/Limits.h"
#include "device/StateTemplate.h"
#include "store/TextPattern.h"

#include <QLoggingCategory>
#include <QRandomGenerator>
#include <QTest>

using namespace paravue;

namespace
{

QString valueOf(const QString &address)
{
    static const QMap<QString, QString> values{{"net/a/ip", "10.0.0.5"}, {"x", "1"}, {"back", "\\1$&"}};
    return values.value(address);
}

/// The same by the engine: the pattern of a directive and what a directive does, word by word.
std::optional<QString> byPattern(QString text)
{
    const TextPattern directive(R"([\r\n]#!\s*s/(.*)/(.*)\{(.*)\}(.*)/\s*[\r\n])",
                                TextPattern::Greed::Minimal);
    qsizetype from = 0;
    for (int rounds = 0; rounds < 50; ++rounds) {
        const auto match = directive.find(text, from);
        if (!match)
            return directive.isUsable() ? std::optional(text) : std::nullopt;
        const QString replacement = match->captures[2] + valueOf(match->captures[3]) + match->captures[4];
        const auto replaced = TextPattern(match->captures[1], TextPattern::Greed::Minimal)
                                  .replaceAll(text, replacement, 50'000);
        if (!replaced)
            return {};
        text = *replaced;
        from = match->start + 1;
    }
    return {};
}

} // namespace

class StateTemplateTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void applies_data();
    void applies();
    void agreesWithThePattern();
    void staysWithinLimits_data();
    void staysWithinLimits();
};

void StateTemplateTest::applies_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<QString>("expected");

    const auto row = [](const char *name, const char *text, const char *expected) {
        QTest::newRow(name) << QString(text) << QString(expected);
    };
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
    row("empty", "", "");
}

void StateTemplateTest::applies()
{
    QFETCH(QString, text);
    QFETCH(QString, expected);
    QCOMPARE(applyStateDirectives(text, valueOf), std::optional(expected));
    QCOMPARE(byPattern(text), std::optional(expected));
}

void StateTemplateTest::agreesWithThePattern()
{
    const QStringList alphabet{"\n",         "\r\n", "#!s/", "#!", " s/", "/", "{",      "}", "{x}",
                               "{net/a/ip}", "/\n",  " ",    "k",  "ab",  "=", "\n#!s/", "s/"};
    // The engine says so whenever it gives up, which is what the scanner is for.
    QLoggingCategory::setFilterRules("paravue.pattern=false");
    QRandomGenerator random(20260103);
    int changed = 0;
    for (int i = 0; i < 5'000; ++i) {
        QString text;
        for (int piece = random.bounded(24); piece > 0; --piece)
            text += alphabet.at(random.bounded(alphabet.size()));
        const auto expected = byPattern(text);
        if (!expected)
            continue; // it feeds on itself, or the engine gives up
        const auto actual = applyStateDirectives(text, valueOf);
        QVERIFY2(actual == expected, qPrintable(text));
        changed += *actual != text;
    }
    QVERIFY(changed > 50);
    QLoggingCategory::setFilterRules(QString());
}

void StateTemplateTest::staysWithinLimits_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<bool>("accepted");

    QTest::newRow("a directive that feeds on itself") << QString("a\n#!s/\\x61/aa{x}/\n") << false;
    QTest::newRow("empty matches in a long text")
        << QString(100'000, 'k') + "\n#!s/()/" + QString(1000, 'v') + "{x}/\n"
        << false;
    QTest::newRow("many directives in a long text")
        << QString(2'000'000, 'k') + QString("\n#!s/qqq/r{x}/\n").repeated(1000) << false;
    QTest::newRow("openings that never end") << QString("\n#!s/").repeated(200'000) << true;
    QTest::newRow("parts that never end") << QString("\n#!s/k/v{x}").repeated(100'000) << true;
    QTest::newRow("blanks that never end") << QString("\n#!s/k/v{x}/" + QString(500'000, ' ')) << true;
    QTest::newRow("an expensive pattern") << QString(40, 'a') + "\n#!s/(a|aa)+$b/v{x}/\n" << true;
}

void StateTemplateTest::staysWithinLimits()
{
    QFETCH(QString, text);
    QFETCH(bool, accepted);
    const auto result = applyStateDirectives(text, valueOf);
    QCOMPARE(result.has_value(), accepted);
    if (accepted)
        QCOMPARE(*result, text);
}

QTEST_GUILESS_MAIN(StateTemplateTest)
#include "tst_state_template.moc"
