#include "ui/description/ElementAttributes.h"

namespace paravue
{

ElementAttributes::ElementAttributes(const QDomElement &element)
{
    const QDomNamedNodeMap attributes = element.attributes();
    const int count = attributes.size();
    for (int i = 0; i < count; ++i) {
        const QDomNode attribute = attributes.item(i);
        m_attributes.append({attribute.nodeName(), attribute.nodeValue()});
    }
}

QString ElementAttributes::text(QLatin1StringView name) const
{
    for (const auto &[known, value] : m_attributes) {
        if (known == name)
            return value;
    }
    return {};
}

} // namespace paravue
