#include "ui/description/EnableTargets.h"

#include "ui/description/InterfaceDocument.h"

namespace paravue
{

EnableTargets::EnableTargets(const InterfaceDocument &document)
{
    for (const QDomElement &action : document.elements(QStringLiteral("action"))) {
        if (action.attribute(QStringLiteral("type")) == QLatin1String("enable"))
            m_tags.insert(action.text().trimmed());
    }
}

bool EnableTargets::leaveDisabled(const QDomElement &control) const
{
    if (control.attribute(QStringLiteral("enabled")) != QLatin1String("no"))
        return false;
    for (QDomElement child = control.firstChildElement(); !child.isNull();
         child = child.nextSiblingElement()) {
        if (m_tags.contains(child.tagName()))
            return false;
    }
    return true;
}

} // namespace paravue
