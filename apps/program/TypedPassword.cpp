#include "program/TypedPassword.h"

#include <QCryptographicHash>

namespace paravue
{

bool isInLocalEncoding(const QString &text)
{
    return QString::fromLocal8Bit(text.toLocal8Bit()) == text;
}

QString digestOfTyped(const QString &password)
{
    return QString::fromLatin1(
        QCryptographicHash::hash(password.toLocal8Bit(), QCryptographicHash::Md5).toHex());
}

} // namespace paravue
