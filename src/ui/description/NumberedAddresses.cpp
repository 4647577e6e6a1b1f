#include "ui/description/NumberedAddresses.h"

#include "store/ConfigAddress.h"
#include "ui/description/InterfaceDocument.h"

namespace paravue
{

QStringList numberedAddresses(const QDomElement &key, const QString &usualName, int first, int count)
{
    if (key.isNull())
        return {};
    const QString text = addressText(key);
    const ConfigAddress address(text);
    const QString begin = address.path().toString() + (address.hasKey() ? QString() : u'/' + usualName);
    const QString rest = address.hasRest() ? u'/' + address.rest().toString() : QString();
    QStringList addresses;
    for (int number = first; number < first + count; ++number)
        addresses.append(begin + QString::number(number) + rest);
    return addresses;
}

} // namespace paravue
