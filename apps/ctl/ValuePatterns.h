#pragma once

#include <QRegularExpression>
#include <QString>
#include <QStringList>

#include <vector>

namespace paravue
{

/// Patterns of the paths of values: "*" stands for any letters, "?" for one, and "net" and "net/untitled" for
/// what is in them.
class ValuePatterns
{
public:
    explicit ValuePatterns(const QStringList &patterns);

    bool isEmpty() const { return m_patterns.empty(); }
    /// Without patterns every path is one of them.
    bool contains(const QString &path);
    /// The patterns that none of the paths asked about has matched.
    QStringList unmatched() const;

private:
    struct Pattern {
        QString text;
        QRegularExpression whole;
        bool hasMatched = false;
    };
    std::vector<Pattern> m_patterns;
};

} // namespace paravue
