#include "ui/review/SecretFields.h"

#include "ui/description/InterfaceDocument.h"
#include "ui/page/GridCell.h"
#include "ui/review/DescribedAddress.h"

namespace paravue
{

bool SecretFields::isMarked(const QDomElement &item)
{
    return item.attribute(QStringLiteral("password")) == QLatin1String("on") ||
           item.attribute(secretRule().name) == QLatin1String("yes");
}

QStringList SecretFields::paths(const InterfaceDocument &document, AdapterLookup adapterOf)
{
    QStringList found;
    for (const QDomElement &item : document.elements(QStringLiteral("item"))) {
        const ControlAdapter *adapter =
            isMarked(item) ? adapterOf(item.attribute(QStringLiteral("type"))) : nullptr;
        if (!adapter)
            continue;
        for (const DescribedAddress &address : describedAddresses(item, *adapter)) {
            if (const QString path = address.path(); !path.isEmpty())
                found << path;
        }
    }
    return found;
}

} // namespace paravue
