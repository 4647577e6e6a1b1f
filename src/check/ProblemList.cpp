#include "check/ProblemList.h"

#include <algorithm>
#include <tuple>

namespace paravue
{
namespace
{

/// The place of the control that \a element is, or a part of.
ControlPlace controlAround(const QDomElement &element, const ControlPlaces &controls)
{
    for (QDomElement outer = element; !outer.isNull(); outer = outer.parentNode().toElement()) {
        const auto found = controls.constFind(elementId(outer));
        if (found != controls.constEnd())
            return *found;
    }
    return {};
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

QList<DescriptionProblem> ProblemList::sorted(const ControlPlaces &controls) const
{
    QList<DescriptionProblem> problems;
    for (const Entry &entry : m_entries) {
        problems.append(entry.problem);
        const ControlPlace place = controlAround(entry.element, controls);
        problems.last().control = place.number;
        problems.last().dialog = place.dialog;
    }
    std::sort(problems.begin(), problems.end(), [](const auto &a, const auto &b) {
        return std::tie(a.line, a.column, a.severity, a.text) <
               std::tie(b.line, b.column, b.severity, b.text);
    });
    return problems;
}

} // namespace paravue
