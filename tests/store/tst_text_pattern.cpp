#include "store/TextPattern.h"
#include "support/TestTable.h"

#include <QRegularExpression>
#if __has_include(<QRegExp>)
#include <QRegExp>
#endif

using namespace paravue;
using paravue::test::TestTable;

class TestTextPattern : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void wholeMatch_data();
    void wholeMatch();
    void capturesOfAWholeMatch();
    void searchFromAPosition();
    void replacementIsLiteral();
    void replacementIsBounded();
    void brokenPatternMatchesNothing();
    void expensivePatternIsGivenUp();
};

void TestTextPattern::wholeMatch_data()
{
    const TestTable<QString, QString, bool> row("pattern", "text", "matches");
    row("part only", "b", "abc", false);
    row("alternatives are anchored together", "a|bc", "abc", false);
    row("dot takes line ends", "a.b", "a\nb", true);
    row("end is the very end", "a$", "a\n", false);
    row("end inside a class", "[$]", "$", true);
    row("escaped end", "\\$", "$", true);
    row("digits of all scripts", "\\d+", "٣", true);
    row("white space of all kinds", "\\s", "\u00a0", true);
    row("case counts", "A", "a", false);
    row("character by its number", "[\\x0410-\\x044f]+", "Привет", true);
    row("three digits of a number", "\\x41b", "\u041b", true);
    row("repetition from none", "a{,2}", "aa", true);
    row("repetition beyond", "a{,2}", "aaa", false);
    row("bracket first in a class", "[]a]+", "]a", true);
    row("empty pattern, empty text", "", "", true);
}

void TestTextPattern::wholeMatch()
{
    QFETCH(QString, pattern);
    QFETCH(QString, text);
    QTEST(TextPattern(pattern).matchesWhole(text), "matches");
#if __has_include(<QRegExp>)
    QTEST(QRegExp(pattern).exactMatch(text), "matches"); // the engine that patterns are written for
#endif
}

void TestTextPattern::capturesOfAWholeMatch()
{
    const auto match = TextPattern("(a)(x)?(b)?(y)?").matchWhole("ab");
    QVERIFY(match);
    const QStringList expected{"ab", "a", QString(), "b", QString()};
    QCOMPARE(match->captures, expected);
    QVERIFY(!TextPattern("a").matchWhole("ab"));
}

void TestTextPattern::searchFromAPosition()
{
    const TextPattern pattern("a+");
    const QString text = "xaaxa";
    const auto match = pattern.find(text, 2);
    QVERIFY(match);
    QCOMPARE(match->start, 2);
    QCOMPARE(match->length, 1);
    QCOMPARE(pattern.find(text, 3)->start, 4);
    QVERIFY(!pattern.find(text, 5));
    QVERIFY(!pattern.find(text, 6));
    QCOMPARE(TextPattern("<.*>").find("<a><b>")->length, 6);
    QCOMPARE(TextPattern("<.*>", TextPattern::Greed::Minimal).find("<a><b>")->length, 3);
    // A position inside a character of two code units.
    QCOMPARE(TextPattern(".").find("\U0001F600b", 1)->start, 2);
}

void TestTextPattern::replacementIsLiteral()
{
    const TextPattern pattern("(b+)");
    QCOMPARE(*pattern.replaceAll("abbcb", "\\1$1", 100), "a\\1$1c\\1$1");
    QCOMPARE(*pattern.replaceAll("none", "x", 100), "none");
    // Empty matches come to an end, and split no character.
    QCOMPARE(*TextPattern("x*").replaceAll("ab\U0001F600", "-", 100), "-a-b-\U0001F600-");
}

void TestTextPattern::replacementIsBounded()
{
    const TextPattern pattern("a");
    const QString text(1000, u'a');
    QVERIFY(!pattern.replaceAll(text, QString(1000, u'b'), 500'000));
    QCOMPARE(pattern.replaceAll(text, "bc", 2'000)->size(), 2'000);
    QVERIFY(!pattern.replaceAll(text, "bc", 1'999));
}

void TestTextPattern::brokenPatternMatchesNothing()
{
    for (const char *broken : {"a(", "a)|(b", "[", "*", "\\"}) {
        QTest::ignoreMessage(QtWarningMsg, QRegularExpression("matches nothing"));
        const TextPattern pattern(QString::fromLatin1(broken));
        QVERIFY(!pattern.isUsable());
        QVERIFY(!pattern.matchesWhole("a"));
        QVERIFY(!pattern.find("ab"));
        QCOMPARE(*pattern.replaceAll("ab", "x", 100), "ab");
    }
}

void TestTextPattern::expensivePatternIsGivenUp()
{
    const TextPattern pattern = TextPattern::ofRecorder("(a+)+b");
    QVERIFY(pattern.matchesWhole("aab"));
    QTest::ignoreMessage(QtWarningMsg, QRegularExpression("too expensive"));
    QVERIFY(!pattern.matchesWhole(QString(100, u'a') + "cb"));
    QVERIFY(!pattern.isUsable());
    QVERIFY(!pattern.matchesWhole("aab"));
}

QTEST_APPLESS_MAIN(TestTextPattern)
#include "tst_text_pattern.moc"
