#include "video/DecodingTime.h"

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
    /// In a picture that needs no other.
    double keyPixel;
    /// When the data decode it once more.
    double furtherPass;
};

Times timesOf(VideoCodec codec)
{
    switch (codec) {
    case VideoCodec::MotionJpeg:
        return {.byte = 14, .pixel = 1.5, .keyPixel = 1.5, .furtherPass = 1.5};
    case VideoCodec::Mpeg4:
        return {.byte = 10, .pixel = 3, .keyPixel = 3, .furtherPass = 2};
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
    return pixels * (picture.isKey ? times.keyPixel : times.pixel) +
           timeOfFurtherPass(codec, pixels * double(picture.passes - 1));
}

double timeOfFurtherPass(VideoCodec codec, double pixels)
{
    return pixels * timesOf(codec).furtherPass;
}

double timeOfFurtherBuffer(double pixels)
{
    return pixels * FurtherBufferPixel;
}

} // namespace paravue
