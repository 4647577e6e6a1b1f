#pragma once

#include "check/CallCycles.h"
#include "check/DescribedParts.h"

#include <QHash>
#include <QList>

namespace paravue
{

class InterfaceDocument;
class ProblemList;
class SlotParams;

/// Checks actions and time tasks: whether anything runs them, whether their tag leads to a widget, and
/// whether that has the slot.
class ActionCheck
{
public:
    ActionCheck(const InterfaceDocument &document, const DescribedParts &parts, SlotParams &params,
                ProblemList &problems);

    void action(const QDomElement &action);
    void timeTask(const QDomElement &task);
    /// To be called after all actions: reports cycles of calls.
    void finish() { m_cycles.report(m_document, m_parts, m_problems); }

private:
    void whetherItRuns(const QDomElement &action, bool isCall);
    void call(const QDomElement &action);
    void picture(const QDomElement &task);
    void turningCamera(const QDomElement &task, const QDomElement &ptz);
    /// One target of each class that \a tag leads to; reports at \a at when there is none.
    QList<ActionTarget> targets(const QDomElement &at, const QString &tag);

    const InterfaceDocument &m_document;
    const DescribedParts &m_parts;
    SlotParams &m_params;
    ProblemList &m_problems;
    QHash<QString, QList<ActionTarget>> m_targets; ///< by tag
    CallCycles m_cycles;
};

} // namespace paravue
