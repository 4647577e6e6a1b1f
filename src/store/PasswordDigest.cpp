#include "store/PasswordDigest.h"

#include <QCryptographicHash>

namespace paravue
{

QByteArray passwordDigest(const QByteArray &password)
{
    return QCryptographicHash::hash(password, QCryptographicHash::Md5).toHex();
}

} // namespace paravue
