#pragma once

#include "video/CodedPictures.h"

namespace paravue
{

/// Estimates of how long a codec takes, in nanoseconds on one core of 2.6 GHz. They are upper bounds,
/// measured with noise, with pictures in which nothing changes, with damage and with many headers.
///
/// Nothing can interrupt a codec. Pictures that are left out because of these estimates would stop the window
/// for 0.4 to 7 s (bench_decoder, leaveOut); and with four streams of dense H.264 a key would wait 640
/// instead of 140 ms for its letter (bench_live, answer/dense_h264, when a picture was allowed 125 ms).

/// For all of \a picture that does not depend on its pixels.
double timeWithoutPixels(VideoCodec codec, const CodedPicture &picture);
/// For \a pixels in one picture, in which four pixels share a colour.
double timeOfPixels(VideoCodec codec, const CodedPicture &picture, double pixels);
/// For \a pixels that the data of a picture decode once more.
double timeOfFurtherPass(VideoCodec codec, double pixels);
/// For \a pixels in another picture, which the codec makes in place of a missing one.
double timeOfFurtherBuffer(double pixels);

} // namespace paravue
