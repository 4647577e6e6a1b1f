#include "RecorderAddress.h"

#include "device/OrbNetSetup.h"
#include "program/TypedPassword.h"

#include <QCoreApplication>
#include <QStringList>

#include <algorithm>
#include <limits>

namespace paravue
{

namespace
{

class AddressText
{
    Q_DECLARE_TR_FUNCTIONS(RecorderAddress)
};

RecorderAddress refusedAddress(const QString &problem)
{
    return {{}, problem};
}

} // namespace

RecorderAddress RecorderAddress::fromText(const QString &text, Password password)
{
    // The library splits at the last "@", and the login from the password at the last ":" before it.
    const qsizetype at = text.lastIndexOf('@');
    const QString account = text.left(std::max<qsizetype>(at, 0));
    const qsizetype colon = account.lastIndexOf(':');
    if (at >= 0 && colon < 0)
        return refusedAddress(AddressText::tr("an address has the form [login:password@]host[:port]"));

    const QStringList hostParts = text.mid(at + 1).split(':');
    const QString host = hostParts.first();
    if (hostParts.size() > 2)
        return refusedAddress(AddressText::tr("an IPv6 address cannot be given, use the host's name"));
    if (host.isEmpty())
        return refusedAddress(AddressText::tr("the address names no host"));

    QString url = host;
    if (hostParts.size() == 2) {
        bool isNumber = false;
        const int port = hostParts.last().toInt(&isNumber);
        // Negative numbers are how the library itself writes ports above 32767.
        if (!isNumber || port == 0 || port < std::numeric_limits<qint16>::min() ||
            port > std::numeric_limits<quint16>::max())
            return refusedAddress(AddressText::tr("the port must be a number from 1 to 65535"));
        url += ':' + portText(static_cast<quint16>(port));
    }

    if (at < 0)
        return {url, {}};
    if (!isInLocalEncoding(account))
        return refusedAddress(AddressText::tr("the login or the password has letters that this computer's "
                                              "encoding lacks, so the recorder would get others"));
    QString sent = account.mid(colon + 1);
    if (password == Password::AsTyped)
        sent = digestOfTyped(sent);
    return {account.left(colon) + ':' + sent + '@' + url, {}};
}

QString RecorderAddress::withLogin(const QString &address)
{
    if (address.contains('@'))
        return address;
    Credentials record;
    record.url = address.toLocal8Bit();
    record.level = 1; // setting up is an administrator's work
    OrbNetSetup::lookUpCredentials(record);
    return QString("%1:%2@%3")
        .arg(QString::fromLocal8Bit(record.login), QString::fromLocal8Bit(record.password), address);
}

QString RecorderAddress::portText(quint16 port)
{
    return QString::number(static_cast<qint16>(port));
}

} // namespace paravue
