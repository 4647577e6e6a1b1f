#include "video/DecodingTime.h"

#include <algorithm>
#include <limits>

namespace paravue
{
namespace
{

constexpr double FurtherBufferPixel = 1;
constexpr double TableByte = 100;
constexpr double Header = 5'000;

struct Times {
    double byte;
    double pixel;
    /// In a picture that says it needs no other.
    double keyPixel;
    /// When the data go over it again.
    double furtherPass;
    /// The passes of a byte cannot take longer.
    double furtherPassByte = std::numeric_limits<double>::infinity();
};

Times timesOf(VideoCodec codec)
{
    switch (codec) {
    case VideoCodec::MotionJpeg:
        return {.byte = 14, .pixel = 1.5, .keyPixel = 1.5, .furtherPass = 1.5};
    case VideoCodec::Mpeg4:
        // The shortest code for a block of 256 pixels is one bit.
        return {.byte = 10, .pixel = 3, .keyPixel = 3, .furtherPass = 2, .furtherPassByte = 1600};
    case VideoCodec::H264:
    case VideoCodec::Other:
        break;
    }
    return {.byte = 90, .pixel = 5, .keyPixel = 2.5, .furtherPass = 3};
}

} // namespace

double timeWithoutPixels(VideoCodec codec, const CodedPicture &picture)
{
    return double(picture.bytes.size()) * timesOf(codec).byte + double(picture.tableBytes) * TableByte +
           double(picture.headers) * Header;
}

double timeOfPixels(VideoCodec codec, const CodedPicture &picture, double pixels)
{
    const Times times = timesOf(codec);
    const double furtherPasses = pixels * times.furtherPass * double(picture.passes - 1);
    const double possible = double(picture.bytes.size()) * times.furtherPassByte;
    return pixels * (picture.isKey ? times.keyPixel : times.pixel) + std::min(furtherPasses, possible);
}

double timeOfFurtherBuffer(double pixels)
{
    return pixels * FurtherBufferPixel;
}

} // namespace paravue
