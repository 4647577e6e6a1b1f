#pragma once

#include <QByteArray>
#include <QString>

namespace paravue
{

/// The first bytes on a connection: EOT, then a LOGIN and a PASS line, in UTF-8.
QByteArray loginRequest(const QString &login, const QString &password);

enum class LoginReply {
    Incomplete, ///< the beginning of one of the two frames
    Accepted,
    Refused,
    Wrong, ///< neither of the two frames, whatever follows
};

/// The recorder answers a login with one of two fixed frames and nothing else.
LoginReply loginReply(const QByteArray &received);

/// More bytes than this are no login reply and never become one.
qsizetype longestLoginReply();

} // namespace paravue
