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

/// Finds cycles of calls: a button that clicks itself by way of others, or an OK button whose action triggers
/// OK again. The window stops them with a message.
class CallCycles
{
public:
    /// Adds the call \a action. One that depends on a state is ignored, as it may not run.
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
