#pragma once

#include "video/CodedPictures.h"

namespace paravue
{

/// How long a codec may take, in nanoseconds, on one core of 2.6 GHz. Estimates from above; they were
/// measured with noise, with pictures in which nothing changes, with damage and with floods of headers.

/// For all of \a picture that does not depend on its pixels.
double timeWithoutPixels(VideoCodec codec, const CodedPicture &picture);
/// For as many \a pixels, in one picture in which four of them share a colour.
double timeOfPixels(VideoCodec codec, const CodedPicture &picture, double pixels);
/// For as many \a pixels that the data of a picture go over again.
double timeOfFurtherPass(VideoCodec codec, double pixels);
/// For as many \a pixels in another picture, which takes the place of one that is missing.
double timeOfFurtherBuffer(double pixels);

} // namespace paravue
