#pragma once

#include "video/CodedPictures.h"
#include "video/FfmpegHandles.h"
#include "video/VideoLimits.h"

#include <QByteArray>

#include <memory>

namespace paravue
{

/// An open decoder of one compressed video stream.
///
/// Live pictures are shown as they come, so the decoder waits for no further bytes: all that begin() is given
/// is decoded, and bytes that the codec cannot use are dropped. So are pictures that would take longer than
/// the limits allow. The decoding is done in steps.
class CodecStream
{
public:
    /// \a name is that of a video decoder of libavcodec; null when there is none or it does not open.
    static std::unique_ptr<CodecStream> open(const QByteArray &name, const DecodingLimits &limits);
    static bool isDecoder(const QByteArray &name);

    /// Whether the first coded picture in \a bytes can be decoded without those before it.
    bool isKey(const QByteArray &bytes) const;
    /// What in \a bytes the decoder needs for pictures to come, even when these bytes are not decoded.
    QByteArray parametersIn(const QByteArray &bytes) const;

    /// \a bytes are any number of whole coded pictures. What is not decoded yet of earlier bytes is dropped.
    void begin(const QByteArray &bytes);

    enum class Progress { Nothing, Picture, AtEnd };
    /// Does the next step.
    Progress next();
    /// Valid after next() has returned Progress::Picture, until the next call of it.
    const AVFrame &picture() const { return *m_frame; }
    /// Moves it to \a frame. Usually the codec keeps its memory, too, as the pictures to come refer to it.
    void takePicture(AVFrame &frame);

private:
    static int getBuffer(AVCodecContext *context, AVFrame *frame, int flags);

    static void endRow(AVCodecContext *context, const AVFrame *frame, int offset[], int y, int type,
                       int height);

    void warnOfLeftOutPicture();
    bool fill(std::string_view bytes);
    bool send(const CodedPicture &coded, bool isPart);
    void setConcealment();
    double expectedPixels(bool isPart) const;

    DecodingLimits m_limits;
    VideoCodec m_codec = VideoCodec::Other;
    CodecContextHandle m_context;
    PacketHandle m_packet;
    FrameHandle m_frame;
    QByteArray m_input;
    CodedPictures m_pictures;
    std::string_view m_parts; ///< the rest of an H.264 picture that is decoded unit by unit
    bool m_hasWarned = false;
    bool m_sent = false; ///< the codec has a packet and may return a picture

    // The packet that is being decoded.
    CodedPicture m_coded;
    double m_timeLeft = 0;    ///< nanoseconds, by the estimates of DecodingTime.h
    bool m_hasBuffer = false; ///< the codec has asked for the memory of a picture
    double m_pixels = 0;      ///< of the last picture
    double m_partPixels = 0;
    double m_rowPixels = 0; ///< of the rows that are decoded
    bool m_isCut = false;   ///< its data was overwritten as it took too long
};

} // namespace paravue
