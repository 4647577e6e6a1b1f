#pragma once

#include <QDomElement>
#include <QHash>
#include <QSet>
#include <QString>

namespace paravue
{

class ProblemList;
struct AttributeRule;
struct DescribedParts;

/// Checks single words of elements: unknown attributes, malformed numbers, unknown keywords that the window
/// would silently replace by their default, elements that are probably misspelt, tags that are reserved for
/// the window, and sizes that no screen has.
class WordCheck
{
public:
    WordCheck(const QDomElement &root, const DescribedParts &parts, ProblemList &problems);

    /// An element of what the window is built from.
    void check(const QDomElement &element);
    /// Any other element.
    void checkTag(const QDomElement &element);

private:
    void collectTargets(const QDomElement &element);
    void attributes(const QDomElement &element, const QList<AttributeRule> &rules);
    void checkValue(const QDomElement &element, const AttributeRule &rule);
    void tag(const QDomElement &element);
    void text(const QDomElement &element);
    void size(const QDomElement &element, const QString &name, const QString &value);

    const DescribedParts &m_parts;
    ProblemList &m_problems;
    QSet<QString> m_targets;          ///< the tags that actions and tasks name
    QHash<QString, QString> m_nearby; ///< by tag: what it is probably a slip of
};

} // namespace paravue
