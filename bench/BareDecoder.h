#pragma once

#include "support/EncodedClip.h"

namespace paravue::bench
{

/// Which pictures a bare loop converts.
enum class Converted {
    All,
    Shown, ///< four in a row of every eight, those that a receiver of live video shows
    None
};

/// The least that FFmpeg needs to show a clip: decodes each picture and scales it into one buffer. Returns
/// the number of pictures.
int decodeBare(const test::EncodedClip &clip, Converted converted = Converted::All);
/// Decodes the clip in several streams at once, a picture of each in turn, and scales nothing.
int decodeSideBySide(const test::EncodedClip &clip, int streams);

/// Finds the ends of the coded pictures in \a bytes as FFmpeg does, with its parser of the \a decoder's
/// codec. Returns the number of pictures.
int splitBare(const QByteArray &decoder, const QByteArray &bytes);

/// Quantizers of clips of pictures with many details.
enum class ClipQuality {
    Best = 4,  ///< H.264, MPEG-4 and motion JPEG of 10, 15 and 14 Mbit/s at 25 pictures a second
    Usual = 8, ///< 3, 8 and 9 Mbit/s
};

/// A clip of pictures with many details; encoded once.
const test::EncodedClip &detailedClip(const QByteArray &encoder, ClipQuality quality = ClipQuality::Best);

inline constexpr int DetailedPictures = 50;
inline constexpr QSize DetailedSize(704, 576);

} // namespace paravue::bench
