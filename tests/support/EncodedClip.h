#pragma once

#include <QByteArray>
#include <QImage>
#include <QList>
#include <QSize>

/// Short video clips of a known picture, encoded by libavcodec at the time of the test.
namespace paravue::test
{

enum class ClipColours { Unsaid, Bt601, Bt709, Bt2020 };

struct ClipFormat {
    QByteArray encoder; ///< as libavcodec knows it, such as "libx264"
    QSize size;
    int pictures = 6;
    int pixelWidth = 1; ///< proportions of a pixel
    int pixelHeight = 1;
    int reordered = 0;        ///< pictures in a row that need a later one
    int quality = 2;          ///< quantizer, 2 is the best
    int keyInterval = 250;    ///< every so many pictures one is a key picture
    int slices = 1;           ///< parts of a picture that are coded on their own; H.264 only
    int packet = 0;           ///< bytes after which a picture goes on in a packet of its own; MPEG-4 only
    bool fineColours = false; ///< a colour for each pixel; motion JPEG only
    ClipColours colours = ClipColours::Unsaid; ///< the matrix that the stream names; H.264 only
    bool fullRange = false;                    ///< brightness from 0 to 255, or 1023; H.264 only
    bool tenBits = false;                      ///< for each value; H.264 only
    bool still = false;                        ///< all pictures are the first one
    bool noise = false;                        ///< details that are expensive to decode
};

struct EncodedClip {
    QByteArray decoder;         ///< the name for cFfmpegDecoder::create()
    QList<QByteArray> pictures; ///< one coded picture each; the first one can be decoded by itself
    QList<int> shown;           ///< the place of each of them in the order in which they are shown
    QByteArray whole() const { return pictures.join(); }
};

/// Whether this FFmpeg has the encoder.
bool canEncode(const QByteArray &encoder);

/// Fails the program when FFmpeg refuses.
EncodedClip encodeClip(const ClipFormat &format);

/// The number of the picture in its clip, which it shows in its middle; -1 when the image is not such a
/// picture: the corners are red, green, blue and yellow, left to right and top to bottom.
int shownNumber(const QImage &image);

} // namespace paravue::test
