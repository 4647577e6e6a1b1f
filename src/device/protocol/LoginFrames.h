#pragma once

#include <QByteArray>
#include <QString>

namespace paravue
{

/// The first bytes on a connection: EOT, then a LOGIN and a PASS line, in UTF-8.
QByteArray loginRequest(const QString &login, const QString &password);

enum class LoginReply {
    Incomplete, ///< neither of the two frames, or not yet
    Accepted,
    Refused,
};

/// The recorder answers a login with one of two fixed frames and nothing else.
LoginReply loginReply(const QByteArray &received);

/// More bytes than this are no login reply and never become one.
qsizetype longestLoginReply();

} // namespace paravue
