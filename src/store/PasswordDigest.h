#pragma once

#include <QByteArray>

namespace paravue
{

/// A password as it is sent to a recorder and remembered: the lower-case hexadecimal MD5 digest of the typed
/// text, which the caller gives in the encoding that the recorder expects.
QByteArray passwordDigest(const QByteArray &password);

} // namespace paravue
