#pragma once

#include <QDomElement>
#include <QSet>
#include <QString>

namespace paravue
{

class InterfaceDocument;

/// The tags of all controls that an action of the description may enable. Nothing else can: there is no slot
/// for it that a call reaches.
class EnableTargets
{
public:
    EnableTargets() = default;
    explicit EnableTargets(const InterfaceDocument &document);

    /// True when \a control begins disabled and stays so.
    bool leaveDisabled(const QDomElement &control) const;

private:
    QSet<QString> m_tags;
};

} // namespace paravue
