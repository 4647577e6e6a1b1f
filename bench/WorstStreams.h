#pragma once

#include <QByteArray>

namespace paravue::bench
{

/// A stream that is expensive to play: its beginning, and the bytes that are repeated behind it.
struct WorstStream {
    QByteArray start;
    QByteArray again;
};

/// Tiny H.264 pictures of 4096 x 4096 pixels, in which nothing changes.
WorstStream emptyPictures();
/// H.264 of 4000 x 3000 pixels of noise with the most bytes that are decoded.
WorstStream denseH264();
/// Motion JPEG of 5472 x 3648 pixels with the most bytes that are decoded.
WorstStream densePhotos();
/// MPEG-4 pictures of 4096 x 4096 pixels.
WorstStream denseMpeg4();
/// Thousands of small pictures in each frame.
WorstStream crowdedFrames();
/// Headers that each open another codec, and a picture for it.
WorstStream headers();
/// Pictures of 16 x 16 and of 5472 x 3648 pixels in turn.
WorstStream alternatingSizes();
/// H.264 pictures of 1024 x 960 pixels with damage.
WorstStream damagedPictures();
/// An H.264 picture of 4096 x 4096 pixels whose slices all go on to its end.
WorstStream manySlices();
/// Frames of no bytes, and bytes that belong to no record.
WorstStream emptyFrames();

} // namespace paravue::bench
