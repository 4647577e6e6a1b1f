#pragma once

#include "recorder/device/PtzState.h"
#include "recorder/video/PicturePainter.h"

#include <QtGlobal>

namespace recorder
{

/// Paints a street as the PTZ camera sees it, with a clock in two forms.
///
/// The strip along the lower edge, a twelfth of the height, is for programs: 20 blocks of equal width, white
/// for 1 and black for 0, are the bits of the tenths of a second since midnight (UTC), the most significant
/// first. Above it the time stands in digits, hh:mm:ss.t.
///
/// \a time is in milliseconds since 1970 (UTC). The position of a car depends on it.
void paintTestPicture(PicturePainter &painter, const CameraPose &pose, qint64 time);

/// Everything that the camera can turn to, without a clock. Pan -1 is the left edge, tilt -1 the lower one.
void paintOverview(PicturePainter &painter, qint64 time);

} // namespace recorder
