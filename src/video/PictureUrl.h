#pragma once

#include <QUrl>

namespace paravue
{

/// The http or https address of a still picture that a description gives as \a text. The scheme is http
/// unless it is given. The port may be a signed 16-bit number, as the store keeps it: "-25536" is 40000.
/// Returns an invalid URL when \a text is no such address.
QUrl pictureUrl(const QString &text);

} // namespace paravue
