#include "device/protocol/DeviceAddress.h"

#include <QStringList>

namespace paravue
{

namespace
{

/// Deliberate: a port is read as a signed 16-bit number, so that 40000 becomes 0 and -1 becomes 65535.
quint16 portFrom(const QString &text)
{
    return static_cast<quint16>(text.toShort(nullptr, 10));
}

} // namespace

std::optional<DeviceAddress> DeviceAddress::parse(const QString &text)
{
    const qsizetype at = text.lastIndexOf(u'@');
    const qsizetype colon = at > 0 ? text.lastIndexOf(u':', at) : -1;
    if (colon < 0)
        return {};

    DeviceAddress result;
    result.login = text.left(colon);
    result.password = text.sliced(colon + 1, at - colon - 1);
    result.url = text.sliced(at + 1);
    const QStringList parts = result.url.split(u':');
    result.host = parts.first();
    if (parts.size() > 1)
        result.port = portFrom(parts.at(1));
    return result;
}

QString comparableUrl(const QString &url)
{
    const QStringList parts = url.trimmed().split(u':');
    const QString port = parts.value(1).isEmpty() ? QString::number(DeviceAddress::DefaultPort) : parts.at(1);
    return parts.first().toLower() + u':' + QString::number(static_cast<quint16>(port.toInt()));
}

} // namespace paravue
