#pragma once

#include <QtGlobal>

#include <string_view>

namespace paravue
{

enum class VideoCodec { H264, Mpeg4, MotionJpeg, Other };

/// One coded picture, and upper bounds of what decoding it costs besides its bytes and pixels.
struct CodedPicture {
    std::string_view bytes;
    /// How often its data may go over all pixels, 1 or more: the slices of H.264, the scans of JPEG, the
    /// packets of a B picture of MPEG-4.
    qint64 passes = 1;
    /// Of other pictures of MPEG-4: the number of places where the data may go on at any block, as each
    /// packet does.
    qint64 restarts = 0;
    /// Bytes of tables that the codec has to build larger ones from.
    qint64 tableBytes = 0;
    /// Units of an H.264 picture that are no slices.
    qint64 headers = 0;
    /// It says that it needs no other picture. True for codecs whose pictures never do.
    bool isKey = true;
};

/// Finds where the coded pictures in a piece of a stream end. Bytes in which no end is found are one picture.
/// A picture that is longer than \a longest is cut one byte behind that.
///
/// The codec library's parsers find the ends, too, but read every parameter set before they return: 1 MiB of
/// them takes 1.2 s, here 1.2 ms (bench_decoder, splitParameterSets). For usual pictures they take 3 to 8
/// times as long (split). Given a frame of several pictures as a whole, the codecs decode one of them.
class CodedPictures
{
public:
    CodedPictures() = default;
    CodedPictures(VideoCodec codec, std::string_view bytes, std::size_t longest)
        : m_codec(codec), m_rest(bytes), m_longest(longest)
    {
    }

    bool atEnd() const { return m_rest.empty(); }
    CodedPicture next();

private:
    CodedPicture nextOfCodec();
    std::string_view cut(std::size_t size);
    CodedPicture nextH264();
    CodedPicture nextMpeg4();
    CodedPicture nextJpeg();

    VideoCodec m_codec = VideoCodec::Other;
    std::string_view m_rest;
    std::size_t m_longest = 0;
};

/// What stands before the first picture in \a bytes and says how pictures are coded, which the codec cannot
/// do without; empty when nothing does, or too much.
std::string_view parametersIn(VideoCodec codec, std::string_view bytes);

/// Cuts a picture into the units of H.264, each with the start code in front of it.
std::string_view takeH264Unit(std::string_view &picture);

} // namespace paravue
