#pragma once

#include "recorder/device/PtzState.h"
#include "recorder/video/PicturePainter.h"

#include <QtGlobal>

namespace recorder
{

/// Paints a street as a turning camera sees it, with a clock in two forms.
///
/// The strip along the lower edge, a twelfth of the height, is for programs: 20 blocks of equal width, white
/// for 1 and black for 0, the most significant first, which are the tenths of a second since midnight (UTC).
/// Above it the time stands in digits, hh:mm:ss.t.
///
/// \a time is in milliseconds since 1970 (UTC). A car drives with the time.
void paintTestPicture(PicturePainter &painter, const CameraPose &pose, qint64 time);

/// All that the camera can turn to, without a clock: pan from edge to edge, tilt from the lower edge to the
/// upper one.
void paintOverview(PicturePainter &painter, qint64 time);

} // namespace recorder
