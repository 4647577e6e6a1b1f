#pragma once

#include "video/CodedPictures.h"
#include "video/FfmpegHandles.h"
#include "video/VideoLimits.h"

#include <QByteArray>

#include <memory>

namespace paravue
{

/// An open decoder of one compressed video stream: bytes in, decoded pictures out.
///
/// A live picture is shown when it comes. So everything that is passed to begin() is decoded before the next
/// bytes, and what the codec cannot use is dropped; nothing waits for more. It is done in steps. A picture
/// that would take longer than the limits allow counts as one that the codec cannot use.
class CodecStream
{
public:
    /// \a name is that of a video decoder of libavcodec; null when there is none or it does not open.
    static std::unique_ptr<CodecStream> open(const QByteArray &name, const DecodingLimits &limits);
    static bool isDecoder(const QByteArray &name);

    /// \a bytes hold any number of whole coded pictures. What is left of the last ones is dropped.
    void begin(const QByteArray &bytes);

    enum class Progress { Nothing, Picture, AtEnd };
    /// Does the next step of the work.
    Progress next();
    /// The picture that next() has reported, until it is called again.
    const AVFrame &picture() const { return *m_frame; }

private:
    static int getBuffer(AVCodecContext *context, AVFrame *frame, int flags);

    static void endRow(AVCodecContext *context, const AVFrame *frame, int offset[], int y, int type,
                       int height);

    void noteLeftOut();
    bool fill(std::string_view bytes);
    bool send(const CodedPicture &coded, bool isPart);
    double expectedPixels(bool isPart) const;

    DecodingLimits m_limits;
    VideoCodec m_codec = VideoCodec::Other;
    CodecContextHandle m_context;
    PacketHandle m_packet;
    FrameHandle m_frame;
    QByteArray m_input;
    CodedPictures m_pictures;
    std::string_view m_parts; ///< what is left of a picture that is decoded unit by unit
    bool m_notedLeftOut = false;
    bool m_sent = false; ///< a packet whose picture may be there

    /// The packet under way, and how long it may still take in nanoseconds, by estimate.
    CodedPicture m_coded;
    double m_timeLeft = 0;
    bool m_isPaid = false;
    double m_pixels = 0; ///< of the last picture
    double m_partPixels = 0;
    double m_rowPixels = 0; ///< of the rows that the packet under way has ended
    bool m_isCut = false;   ///< it was, as it took too long
};

} // namespace paravue
