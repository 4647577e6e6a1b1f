#pragma once

#include <QImage>

namespace paravue::fuzz
{

/// Requires that a decoded picture has a valid size and format, and that its pixels can be read and are
/// opaque.
void checkImage(const QImage &image);

} // namespace paravue::fuzz
