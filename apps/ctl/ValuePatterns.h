#pragma once

#include <QRegularExpression>
#include <QString>
#include <QStringList>

#include <optional>
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
    /// False when no path of a value in the file \a name is one of them.
    bool mayConcern(const QString &name) const;
    /// The patterns that none of the paths asked about has matched.
    QStringList unmatched() const;

private:
    struct Pattern {
        bool matches(const QString &path) const;
        bool mayConcern(const QString &name) const;

        QString text;
        std::optional<QRegularExpression> whole; ///< nothing when the text is the path, or what a path is in
        bool hasMatched = false;
    };
    std::vector<Pattern> m_patterns;
};

} // namespace paravue
