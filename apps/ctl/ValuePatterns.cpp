#include "ValuePatterns.h"

#include <algorithm>

namespace paravue
{

namespace
{

bool hasWildcard(const QString &text)
{
    return text.contains(u'*') || text.contains(u'?');
}

bool namesWholeValue(const QString &pattern)
{
    return pattern.count(u'/') >= 2;
}

/// Making an expression takes as long as comparing a hundred paths.
std::optional<QRegularExpression> expressionOf(const QString &pattern)
{
    if (!hasWildcard(pattern))
        return {};
    QString expression;
    for (const QChar letter : pattern) {
        if (letter == u'*')
            expression += QStringLiteral(".*");
        else if (letter == u'?')
            expression += u'.';
        else
            expression += QRegularExpression::escape(QString(letter));
    }
    if (!namesWholeValue(pattern))
        expression += QStringLiteral("(/.*)?");
    return QRegularExpression(QRegularExpression::anchoredPattern(expression),
                              QRegularExpression::DotMatchesEverythingOption);
}

} // namespace

bool ValuePatterns::Pattern::matches(const QString &path) const
{
    if (whole)
        return whole->match(path).hasMatch();
    return path.startsWith(text) &&
           (path.size() == text.size() || (!namesWholeValue(text) && path[text.size()] == u'/'));
}

bool ValuePatterns::Pattern::mayConcern(const QString &name) const
{
    const QString file = text.section(u'/', 0, 0);
    return file == name || hasWildcard(file); // which may stand for a "/" too
}

ValuePatterns::ValuePatterns(const QStringList &patterns)
{
    for (const QString &pattern : patterns)
        m_patterns.push_back({pattern, expressionOf(pattern)});
}

bool ValuePatterns::contains(const QString &path)
{
    bool isMatched = m_patterns.empty();
    for (Pattern &pattern : m_patterns) {
        const bool matches = pattern.matches(path);
        pattern.hasMatched = pattern.hasMatched || matches;
        isMatched = isMatched || matches;
    }
    return isMatched;
}

bool ValuePatterns::mayConcern(const QString &name) const
{
    return m_patterns.empty() ||
           std::any_of(m_patterns.begin(), m_patterns.end(),
                       [&name](const Pattern &pattern) { return pattern.mayConcern(name); });
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
