#include "ui/review/DescribedAddress.h"

#include "changes/DescribedSecrets.h"
#include "store/OrbSetup.h"
#include "ui/description/InterfaceDocument.h"
#include "ui/page/GridCell.h"

namespace paravue
{

bool DescribedAddress::covers(const QString &path) const
{
    switch (form) {
    case KeyRule::Value:
    case KeyRule::Assignment:
        return OrbSetup::path(text) == path;
    case KeyRule::Group:
        return path.startsWith(text + u'/');
    case KeyRule::Rows:
        return path.startsWith(text);
    }
    return false;
}

QString DescribedAddress::path() const
{
    const bool isOne = form == KeyRule::Value || form == KeyRule::Assignment;
    return isOne ? OrbSetup::path(text) : QString();
}

bool isMarkedSecret(const QDomElement &element)
{
    return isMarkedSecret(element.attribute(QStringLiteral("password")),
                          element.attribute(secretRule().name));
}

QList<DescribedAddress> describedAddresses(const QDomElement &element, const ControlAdapter &adapter)
{
    QList<DescribedAddress> found;
    for (const KeyRule &rule : adapter.traits().keys) {
        for (QDomElement child = element.firstChildElement(); !child.isNull();
             child = child.nextSiblingElement()) {
            const QDomElement key = child.tagName() == rule.tag ? child : child.firstChildElement(rule.tag);
            if (const QString text = key.isNull() ? QString() : addressText(key); !text.isEmpty())
                found.append({text, rule.form});
        }
    }
    return found;
}

} // namespace paravue
