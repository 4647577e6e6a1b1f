#pragma once

#include "video/FfmpegHandles.h"

#include <QByteArray>

#include <functional>
#include <memory>

namespace paravue
{

/// An open decoder of one compressed video stream: bytes in, decoded pictures out.
///
/// A live picture is shown when it comes. So everything that is passed to decode() is decoded in that call,
/// and what the codec cannot use is dropped; nothing waits for the next call.
class CodecStream
{
public:
    /// Takes each decoded picture, which is valid during the call; false ends decode().
    using PictureSink = std::function<bool(const AVFrame &picture)>;

    /// \a name is that of a video decoder of libavcodec; null when there is none or it does not open.
    static std::shared_ptr<CodecStream> open(const QByteArray &name);

    /// \a bytes hold any number of whole coded pictures. Must not be called from within a sink.
    void decode(const QByteArray &bytes, const PictureSink &sink);

private:
    bool decodePacket(const uint8_t *data, int size, const PictureSink &sink);

    CodecContextHandle m_context;
    PacketHandle m_packet;
    FrameHandle m_frame;
    QByteArray m_input; ///< kept for its memory
};

} // namespace paravue
