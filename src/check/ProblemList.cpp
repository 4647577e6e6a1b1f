#include "check/ProblemList.h"

#include <algorithm>
#include <tuple>

namespace paravue
{
namespace
{

/// The number of the control that \a element is, or a part of; -1 for none.
int controlAround(const QDomElement &element, const QHash<ElementId, int> &controls)
{
    for (QDomElement outer = element; !outer.isNull(); outer = outer.parentNode().toElement()) {
        const auto found = controls.constFind(elementId(outer));
        if (found != controls.constEnd())
            return *found;
    }
    return -1;
}

} // namespace

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
    m_entries.append({{severity, position.line, position.column, text.simplified()}, at});
}

QList<DescriptionProblem> ProblemList::sorted(const QHash<ElementId, int> &controls) const
{
    QList<DescriptionProblem> problems;
    for (const Entry &entry : m_entries) {
        problems.append(entry.problem);
        problems.last().control = controlAround(entry.element, controls);
    }
    std::sort(problems.begin(), problems.end(), [](const auto &a, const auto &b) {
        return std::tie(a.line, a.column, a.severity, a.text) <
               std::tie(b.line, b.column, b.severity, b.text);
    });
    return problems;
}

} // namespace paravue
