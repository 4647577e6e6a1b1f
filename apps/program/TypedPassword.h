#pragma once

#include <QString>

namespace paravue
{

/// Whether the local 8-bit encoding, in which logins and the digests of passwords are sent, has all letters
/// of \a text. Each that it lacks would become a question mark, and so would every other in its place.
bool isInLocalEncoding(const QString &text);

/// What recorders hold of a password that a user types: the lower-case hexadecimal MD5 digest of its bytes in
/// the local 8-bit encoding.
QString digestOfTyped(const QString &password);

} // namespace paravue
