#pragma once

#include <QByteArray>
#include <QImage>

namespace paravue
{

/// Decodes a JPEG picture. A null image when \a jpeg is none, is cut off, or claims more than can be decoded
/// without keeping the user waiting (VideoLimits.h). A very large picture comes reduced.
QImage decodedStill(const QByteArray &jpeg);

} // namespace paravue
