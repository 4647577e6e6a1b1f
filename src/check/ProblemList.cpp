#include "check/ProblemList.h"

#include <algorithm>
#include <tuple>

namespace paravue
{

void ProblemList::error(const QDomElement &at, const QString &text)
{
    add(DescriptionProblem::Severity::Error, at, text);
}

void ProblemList::warning(const QDomElement &at, const QString &text)
{
    add(DescriptionProblem::Severity::Warning, at, text);
}

void ProblemList::add(DescriptionProblem::Severity severity, const QDomElement &at, const QString &text)
{
    const SourcePosition position = m_positions.of(at);
    m_problems.append({severity, position.line, position.column, text.simplified()});
}

QList<DescriptionProblem> ProblemList::sorted() const
{
    QList<DescriptionProblem> problems = m_problems;
    std::sort(problems.begin(), problems.end(), [](const auto &a, const auto &b) {
        return std::tie(a.line, a.column, a.severity, a.text) <
               std::tie(b.line, b.column, b.severity, b.text);
    });
    return problems;
}

} // namespace paravue
