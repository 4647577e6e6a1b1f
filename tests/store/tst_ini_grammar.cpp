#include "store/IniGrammar.h"

#include <QRandomGenerator>
#include <QTest>
#if __has_include(<QRegExp>)
#include <QRegExp>
#endif

using namespace paravue;

namespace
{

QString describeKey(const QString &name, const QString &value)
{
    return "key <" + name + "> value <" + value + u'>';
}

QString describeSection(const QString &name)
{
    return "section <" + name + u'>';
}

#if __has_include(<QRegExp>)

/// What the patterns of the recorder's own tools say about a line, asked from the engine they are written
/// for.
class PatternOracle
{
public:
    explicit PatternOracle(EmptyValue emptyValue) : m_key(keyPattern(emptyValue)) {}

    QString describe(const QString &line)
    {
        if (m_key.exactMatch(line))
            return describeKey(m_key.cap(1), m_key.cap(4) + m_key.cap(6) + m_key.cap(8) + m_key.cap(9));
        if (m_section.exactMatch(line))
            return describeSection(m_section.cap(1));
        return "other";
    }

private:
    static QString keyPattern(EmptyValue emptyValue)
    {
        return QStringLiteral(R"re(^\s*([^;\s]+)\s*=\s*)re"
                              R"re(((([^\s\n"']%1))|('([^\n']*)')|("([^\n"]*)")|)re"
                              R"re(([^\s\n"'][^\n"']*[^\s\n"']))\s)re")
            .arg(emptyValue == EmptyValue::IsKey ? QChar(u'*') : QChar(u'+'));
    }

    QRegExp m_key;
    QRegExp m_section{QStringLiteral(R"(^\s*\[\s*([^\s]+)\s*\].*$)")};
};

#endif

template <typename View>
QString describe(const IniLine<View> &line)
{
    if (line.kind == IniLine<View>::Key)
        return describeKey(line.name.toString(), line.value.toString());
    return line.kind == IniLine<View>::Section ? describeSection(line.name.toString()) : QString("other");
}

#if __has_include(<QRegExp>)

QString randomLine(QRandomGenerator &random)
{
    // Mostly what decides about a line, now and then a white space that only Unicode knows.
    static const QString common = "ab=='\"[]; \t\n7";
    static const QString rare =
        QString::fromUtf16(u"\r\v\f\u0085\u00a0\u2003\u2028\u3000\u180e\u200b\u0416\u0000", 12);
    QString line;
    const int size = random.bounded(14);
    for (int i = 0; i < size; ++i) {
        const QString &set = random.bounded(12) == 0 ? rare : common;
        line += set.at(random.bounded(int(set.size())));
    }
    if (random.bounded(8) != 0)
        line += u'\n';
    return line;
}

#endif

} // namespace

class TestIniGrammar : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void agreesWithThePatterns();
    void anyLineIsLinear();
    void writtenValues_data();
    void writtenValues();
};

void TestIniGrammar::agreesWithThePatterns()
{
#if !__has_include(<QRegExp>)
    QSKIP("needs the engine that the patterns are written for");
#else
    for (const EmptyValue emptyValue : {EmptyValue::IsKey, EmptyValue::IsIgnored}) {
        PatternOracle oracle(emptyValue);
        QRandomGenerator random(20240611);
        int keys = 0;
        int sections = 0;
        for (int i = 0; i < 50'000; ++i) {
            const QString line = randomLine(random);
            const QString expected = oracle.describe(line);
            keys += expected.startsWith(u'k');
            sections += expected.startsWith(u's');
            const QString found = describe(scanIniLine(QStringView(line), emptyValue));
            QVERIFY2(found == expected, qPrintable(line.toUtf8().toPercentEncoding() + ": " + found));
            const QByteArray bytes = line.toUtf8();
            if (bytes.size() == line.size())
                QCOMPARE(describe(scanIniLine(QLatin1StringView(bytes), emptyValue)), expected);
        }
        // The lines are worth something only when all kinds occur often.
        QVERIFY(keys > 1'600);
        QVERIFY(sections > 160);
    }
#endif
}

void TestIniGrammar::anyLineIsLinear()
{
    // Every "=" is a candidate for the end of the name here, and none fits. A scanner that reads the value
    // anew for each of them would not come back.
    const QString line = QString(4'000'000, u'=') + "'\n";
    const QString brackets = QString(4'000'000, u'[') + u'\n';
    for (const QString &hostile : {line, brackets})
        QCOMPARE(describe(scanIniLine(QStringView(hostile), EmptyValue::IsKey)), "other");
}

void TestIniGrammar::writtenValues_data()
{
    QTest::addColumn<QString>("value");
    QTest::addColumn<QString>("text");
    for (const char *number : {"0", "42", "-7", "2147483647", "-2147483648"})
        QTest::newRow(number) << number << number;
    for (const char *text :
         {"007", "+5", " 5", "5 ", "1.5", "abc", "-0", "2147483648", "99999999999", "it's"})
        QTest::newRow(text) << text << QStringLiteral("'%1'").arg(QLatin1StringView(text));
}

void TestIniGrammar::writtenValues()
{
    QFETCH(QString, value);
    QFETCH(QString, text);
    for (const EmptyValue emptyValue : {EmptyValue::IsKey, EmptyValue::IsIgnored})
        QCOMPARE(iniKeyLine(u"k", value, emptyValue), "k = " + text + u'\n');
    QCOMPARE(iniKeyLine(u"k", u"", EmptyValue::IsKey), "k = \n");
    QCOMPARE(iniKeyLine(u"k", u"", EmptyValue::IsIgnored), "k = ''\n");
}

QTEST_APPLESS_MAIN(TestIniGrammar)
#include "tst_ini_grammar.moc"
