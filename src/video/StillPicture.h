#pragma once

#include <QByteArray>
#include <QImage>

namespace paravue
{

/// Decodes a JPEG picture. Returns a null image when \a jpeg is no JPEG, is cut off, or exceeds the limits of
/// VideoLimits.h. A picture larger than LargestStill is reduced.
QImage decodeStillPicture(const QByteArray &jpeg);

} // namespace paravue
