#pragma once

#include "check/DescribedParts.h"

#include <QDomElement>
#include <QHash>
#include <QString>

#include <map>

namespace paravue
{

class InterfaceDocument;
class ProblemList;

/// Finds calls that lead into a circle: a button that clicks itself by way of others, or the OK button
/// that calls for what the OK button does. The window gives up on them with a message.
class ActionCircles
{
public:
    /// Notes the call \a action, whatever it calls. One that asks for a state counts as one that may not run.
    void add(const QDomElement &action);

    /// After all calls.
    void report(const InterfaceDocument &document, const DescribedParts &parts, ProblemList &problems) const;

private:
    /// What is called, by slot and tag: a tag may mark many controls, and many actions may name it.
    using Call = std::pair<QString, QString>;
    struct Caller {
        QDomElement action;
        ElementId owner;
    };

    std::map<Call, QList<Caller>> m_callers;
};

} // namespace paravue
