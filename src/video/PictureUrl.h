#pragma once

#include <QUrl>

namespace paravue
{

/// Where a still picture is fetched from, out of the text of a description: an http or https address. Without
/// a scheme it is http. The port may be written as a signed 16-bit number, as the store keeps it: "-25536" is
/// 40000. An invalid url when \a text is nothing of that kind.
QUrl pictureUrl(const QString &text);

} // namespace paravue
