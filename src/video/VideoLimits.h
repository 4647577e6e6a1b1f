#pragma once

#include <QtGlobal>

#include <chrono>
#include <limits>

/// Limits of what a stream may cost. What a recorder sends is never trusted: a few bytes can claim a picture
/// of a gigabyte.
namespace paravue
{

/// Bytes of a frame, of all unfinished frames together and of a header.
inline constexpr int MaxFrameBytes = 64 * 1024 * 1024;
/// Pixels of one picture, live or not; a little more than 7680 x 4320.
inline constexpr qint64 MaxPicturePixels = 32 * 1024 * 1024;
/// The largest factor by which the height of a picture grows when its pixels are not square.
inline constexpr int MaxHeightFactor = 4;

/// Bytes of a still picture as it comes over the network. Decoding more would block the window for too long.
inline constexpr qint64 MaxStillBytes = 8 * 1024 * 1024;
/// Pixels of a still picture; a little more than 7680 x 4320.
inline constexpr qint64 MaxStillPixels = 32 * 1024 * 1024;
/// Pixels of a still picture times the number of its scans.
inline constexpr qint64 MaxStillWork = 3 * MaxStillPixels;
/// Pixels above which a still picture is reduced while it is decoded: 3840 x 2160.
inline constexpr qint64 LargestStill = 3840 * 2160;

/// How long the bytes of a live picture wait for their decoding before they are late: then the pictures are
/// left out up to the next key picture.
inline constexpr std::chrono::milliseconds MaxLiveWait{1000};
/// Without a key picture for that long, a live stream is taken up again at any picture.
inline constexpr std::chrono::milliseconds MaxKeyWait{20'000};
/// Bytes of a live stream that wait for their decoding. More is left in the socket.
inline constexpr qsizetype MaxWaitingBytes = 8 * 1024 * 1024;

/// What is kept of a live stream that nobody sees, from its last key picture on, so that the present picture
/// can be decoded soon when somebody does. With more, or with what would take longer to decode, the pictures
/// are decoded nevertheless.
inline constexpr std::size_t MaxHeldFrames = 500;
inline constexpr qsizetype MaxHeldBytes = 8 * 1024 * 1024;
inline constexpr std::chrono::milliseconds MaxHeldTime{500};

/// Limits of the pictures that are decoded.
struct DecodingLimits {
    /// Bytes of one coded picture.
    int bytes = std::numeric_limits<int>::max() / 2; // FFmpeg counts in int and pads
    qint64 pixels = MaxPicturePixels;
    /// How long one picture may take, in nanoseconds, by the estimates of DecodingTime.h.
    double pictureTime = std::numeric_limits<double>::infinity();
    /// Pixels of a picture whose damaged parts are concealed, which takes many times as long as decoding.
    qint64 concealedPixels = MaxPicturePixels;
};

/// The limits while a window has to answer a key within 100 ms. Pictures of 5472 x 3648 pixels are decoded,
/// damage is concealed in those of 1920 x 1080, and more bytes could not be decoded in the time.
inline constexpr DecodingLimits LiveLimits{8 * 1024 * 1024, 20 * 1024 * 1024, 86e6, 2 * 1024 * 1024};

} // namespace paravue
