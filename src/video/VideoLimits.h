#pragma once

#include <QtGlobal>

/// What a stream may cost. A recorder is never trusted: a few bytes can claim a picture of a
/// gigabyte.
namespace paravue
{

/// Bytes of a frame, of all unfinished frames together and of a header.
inline constexpr int MaxFrameBytes = 64 * 1024 * 1024;
/// Pixels of one picture; a little more than 7680 x 4320.
inline constexpr qint64 MaxPicturePixels = 32 * 1024 * 1024;
/// By how much pixels that are not square may heighten a picture.
inline constexpr int MaxHeightening = 4;

} // namespace paravue
