#include "store/TextPattern.h"

#include <QRandomGenerator>
#include <QRegExp>
#include <QRegularExpression>
#include <QTest>

using namespace paravue;

class tst_TextPattern : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void wholeMatch_data();
    void wholeMatch();
    void capturesOfAWholeMatch();
    void searchFromAPosition();
    void minimalSearch();
    void replacementIsLiteral();
    void replacementOfNothingEnds();
    void replacementIsBounded();
    void brokenPatternMatchesNothing();
    void expensivePatternIsGivenUp();
};

void tst_TextPattern::wholeMatch_data()
{
    QTest::addColumn<QString>("pattern");
    QTest::addColumn<QString>("text");
    QTest::addColumn<bool>("matches");
    const auto row = [](const char *name, const char *pattern, const char *text, bool matches) {
        QTest::newRow(name) << QString::fromUtf8(pattern) << QString::fromUtf8(text) << matches;
    };
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

void tst_TextPattern::wholeMatch()
{
    QFETCH(QString, pattern);
    QFETCH(QString, text);
    QFETCH(bool, matches);
    QCOMPARE(TextPattern(pattern).matchesWhole(text), matches);
    QCOMPARE(QRegExp(pattern).exactMatch(text), matches); // the engine that patterns are written for
}

void tst_TextPattern::capturesOfAWholeMatch()
{
    const auto match = TextPattern(QStringLiteral("(a)(x)?(b)?(y)?")).matchWhole(QStringLiteral("ab"));
    QVERIFY(match);
    const QStringList expected{QStringLiteral("ab"), QStringLiteral("a"), QString(), QStringLiteral("b"),
                               QString()};
    QCOMPARE(match->captures, expected);
    QVERIFY(!TextPattern(QStringLiteral("a")).matchWhole(QStringLiteral("ab")));
}

void tst_TextPattern::searchFromAPosition()
{
    const TextPattern pattern(QStringLiteral("a+"));
    const QString text = QStringLiteral("xaaxa");
    const auto match = pattern.find(text, 2);
    QVERIFY(match);
    QCOMPARE(match->start, 2);
    QCOMPARE(match->length, 1);
    QCOMPARE(pattern.find(text, 3)->start, 4);
    QVERIFY(!pattern.find(text, 5));
    QVERIFY(!pattern.find(text, 6));
    // A position inside a character of two code units.
    QCOMPARE(TextPattern(QStringLiteral(".")).find(QStringLiteral("\U0001F600b"), 1)->start, 2);
}

void tst_TextPattern::minimalSearch()
{
    const QString text = QStringLiteral("<a><b>");
    QCOMPARE(TextPattern(QStringLiteral("<.*>")).find(text)->length, 6);
    QCOMPARE(TextPattern(QStringLiteral("<.*>"), TextPattern::Greed::Minimal).find(text)->length, 3);
}

void tst_TextPattern::replacementIsLiteral()
{
    const TextPattern pattern(QStringLiteral("(b+)"));
    QCOMPARE(*pattern.replaceAll(QStringLiteral("abbcb"), QStringLiteral("\\1$1"), 100),
             QStringLiteral("a\\1$1c\\1$1"));
    QCOMPARE(*pattern.replaceAll(QStringLiteral("none"), QStringLiteral("x"), 100), QStringLiteral("none"));
}

void tst_TextPattern::replacementOfNothingEnds()
{
    const TextPattern pattern(QStringLiteral("x*"));
    const QString text = QStringLiteral("ab\U0001F600");
    QCOMPARE(*pattern.replaceAll(text, QStringLiteral("-"), 100), QStringLiteral("-a-b-\U0001F600-"));
}

void tst_TextPattern::replacementIsBounded()
{
    const TextPattern pattern(QStringLiteral("a"));
    const QString text(1000, u'a');
    QVERIFY(!pattern.replaceAll(text, QString(1000, u'b'), 500'000));
    QCOMPARE(pattern.replaceAll(text, QStringLiteral("bc"), 2'000)->size(), 2'000);
    QVERIFY(!pattern.replaceAll(text, QStringLiteral("bc"), 1'999));
}

void tst_TextPattern::brokenPatternMatchesNothing()
{
    for (const char *broken : {"a(", "a)|(b", "[", "*", "\\"}) {
        QTest::ignoreMessage(QtWarningMsg, QRegularExpression(QStringLiteral("matches nothing")));
        const TextPattern pattern(QString::fromLatin1(broken));
        QVERIFY(!pattern.isUsable());
        QVERIFY(!pattern.matchesWhole(QStringLiteral("a")));
        QVERIFY(!pattern.find(QStringLiteral("ab")));
        QCOMPARE(*pattern.replaceAll(QStringLiteral("ab"), QStringLiteral("x"), 100), QStringLiteral("ab"));
    }
}

void tst_TextPattern::expensivePatternIsGivenUp()
{
    const TextPattern pattern(QStringLiteral("(a+)+b"));
    QVERIFY(pattern.matchesWhole(QStringLiteral("aab")));
    QTest::ignoreMessage(QtWarningMsg, QRegularExpression(QStringLiteral("too expensive")));
    QVERIFY(!pattern.matchesWhole(QString(100, u'a') + QStringLiteral("cb")));
    QVERIFY(!pattern.isUsable());
    QVERIFY(!pattern.matchesWhole(QStringLiteral("aab")));
}

QTEST_APPLESS_MAIN(tst_TextPattern)
#include "tst_text_pattern.moc"
