#pragma once

#include <QtGlobal>

#include <string_view>

namespace paravue
{

enum class VideoCodec { H264, Mpeg4, MotionJpeg, Other };

/// One coded picture, and what decoding it may cost at most beside its bytes and pixels.
struct CodedPicture {
    std::string_view bytes;
    /// How often its data may go over all pixels, 1 or more: the slices of H.264, the scans of JPEG, the
    /// packets of a B picture of MPEG-4.
    qint64 passes = 1;
    /// Of other pictures of MPEG-4: where they may go on at any place, as they do with each packet.
    qint64 restarts = 0;
    /// Bytes of tables that the codec has to build larger ones from.
    qint64 tableBytes = 0;
    /// Units of an H.264 picture that are no slices.
    qint64 headers = 0;
    /// Of H.264: all slices say that they need no other picture. Others are never told to be.
    bool isKey = false;
};

/// Finds where the coded pictures in a piece of a stream end. What cannot be told apart is one picture, and
/// what is longer than \a longest ends one byte behind that.
///
/// The codec library's own parsers do this too, but they also read every parameter set, as many as there are,
/// before they return.
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

/// Cuts a picture into the units of H.264, each with the start code in front of it.
std::string_view takeH264Unit(std::string_view &picture);

} // namespace paravue
