#pragma once

#include "check/DescriptionCheck.h"
#include "check/SourcePositions.h"

namespace paravue
{

/// Where the window builds a control: DescriptionProblem::control and dialog.
struct ControlPlace {
    int number = -1;
    QString dialog;
};
using ControlPlaces = QHash<ElementId, ControlPlace>;

/// Gathers what is found in a description.
class ProblemList
{
public:
    explicit ProblemList(const SourcePositions &positions) : m_positions(positions) {}

    void error(const QDomElement &at, const QString &text);
    void warning(const QDomElement &at, const QString &text);

    /// All of them in the order of their places, errors before warnings.
    QList<DescriptionProblem> sorted(const ControlPlaces &controls) const;

private:
    void add(DescriptionProblem::Severity severity, const QDomElement &at, const QString &text);

    const SourcePositions &m_positions;
    struct Entry {
        DescriptionProblem problem;
        QDomElement element;
    };
    QList<Entry> m_entries;
};

} // namespace paravue
