#pragma once

#include <QString>

namespace paravue
{

/// Whether the local 8-bit encoding, in which logins and the digests of passwords are sent, has all letters
/// of \a text. What it lacks becomes "?": with the code page of Western Europe every Cyrillic password of six
/// letters would be the same six question marks.
inline bool isInLocalEncoding(const QString &text)
{
    return QString::fromLocal8Bit(text.toLocal8Bit()) == text;
}

} // namespace paravue
