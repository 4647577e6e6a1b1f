#pragma once

#include <QImage>

namespace paravue::fuzz
{

/// Requires of a decoded picture what its receivers rely on: its size, its format, that its pixels can be
/// read and are opaque.
void checkImage(const QImage &image);

} // namespace paravue::fuzz
