#pragma once

#include <QtGlobal>

#include <limits>

/// What a stream may cost. A recorder is never trusted: a few bytes can claim a picture of a
/// gigabyte.
namespace paravue
{

/// Bytes of a frame, of all unfinished frames together and of a header.
inline constexpr int MaxFrameBytes = 64 * 1024 * 1024;
/// Pixels of one picture, live or not; a little more than 7680 x 4320.
inline constexpr qint64 MaxPicturePixels = 32 * 1024 * 1024;
/// By how much pixels that are not square may heighten a picture.
inline constexpr int MaxHeightening = 4;

/// Bytes of a still picture as it comes over the network. More of them would hold up the window while they
/// are decoded.
inline constexpr qint64 MaxStillBytes = 8 * 1024 * 1024;
/// Pixels of a still picture; a little more than 7680 x 4320.
inline constexpr qint64 MaxStillPixels = 32 * 1024 * 1024;
/// Pixels of a still picture times the passes over them that its bytes ask for.
inline constexpr qint64 MaxStillWork = 3 * MaxStillPixels;
/// Pixels from which on a still picture is reduced while it is decoded: 3840 x 2160.
inline constexpr qint64 LargestStill = 3840 * 2160;

/// What decoding may cost.
struct DecodingLimits {
    /// Bytes of one coded picture.
    int bytes = std::numeric_limits<int>::max() / 2; // FFmpeg counts in int and pads
    qint64 pixels = MaxPicturePixels;
    /// How long the decoding of one picture may take, in nanoseconds, by an estimate from its bytes and
    /// pixels (DecodingTime.h). It cannot be interrupted.
    double pictureTime = std::numeric_limits<double>::infinity();
    /// Pixels of a picture whose damaged parts are guessed; guessing takes many times as long as decoding.
    qint64 concealedPixels = MaxPicturePixels;
};

/// While a window has to answer a key within 200 ms. The pixels are a little more than 5472 x 3648; what has
/// more bytes cannot be a picture that is decoded in the time; 1920 x 1080 is guessed.
inline constexpr DecodingLimits LiveLimits{8 * 1024 * 1024, 20 * 1024 * 1024, 125e6, 2 * 1024 * 1024};

} // namespace paravue
