#include "ValuePatterns.h"

namespace paravue
{

namespace
{

QRegularExpression expressionOf(const QString &pattern)
{
    QString expression;
    for (const QChar letter : pattern) {
        if (letter == u'*')
            expression += QStringLiteral(".*");
        else if (letter == u'?')
            expression += u'.';
        else
            expression += QRegularExpression::escape(QString(letter));
    }
    if (pattern.count(u'/') < 2)
        expression += QStringLiteral("(/.*)?");
    return QRegularExpression(QRegularExpression::anchoredPattern(expression),
                              QRegularExpression::DotMatchesEverythingOption);
}

} // namespace

ValuePatterns::ValuePatterns(const QStringList &patterns)
{
    for (const QString &pattern : patterns)
        m_patterns.push_back({pattern, expressionOf(pattern)});
}

bool ValuePatterns::contains(const QString &path)
{
    bool isMatched = m_patterns.empty();
    for (Pattern &pattern : m_patterns) {
        const bool matches = pattern.whole.match(path).hasMatch();
        pattern.hasMatched = pattern.hasMatched || matches;
        isMatched = isMatched || matches;
    }
    return isMatched;
}

QStringList ValuePatterns::unmatched() const
{
    QStringList texts;
    for (const Pattern &pattern : m_patterns) {
        if (!pattern.hasMatched)
            texts << pattern.text;
    }
    return texts;
}

} // namespace paravue
