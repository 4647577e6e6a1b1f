#pragma once

#include "recorder/video/FfmpegObjects.h"
#include "recorder/video/PicturePainter.h"
#include "recorder/video/VideoSettings.h"

#include <functional>

namespace recorder
{

struct CodedPicture {
    QByteArray bytes; ///< empty when there is none
    bool isKey = false;
};

/// Encodes pictures without delay: each is complete before the next is given, and none depends on a later
/// one.
class PictureEncoder
{
public:
    /// Nothing, with \a fault set, when FFmpeg cannot encode with these settings.
    static std::unique_ptr<PictureEncoder> open(const VideoSettings &settings, QString &fault);
    /// Whether this FFmpeg has an encoder for the codec.
    static bool isAvailable(VideoCodec codec);

    /// \a paint fills the whole picture. The first picture, and others on request, are key pictures, which
    /// can be decoded without others.
    CodedPicture encode(const std::function<void(PicturePainter &)> &paint, bool wantKey);

    /// To be filled by the caller and given to encodeFrame().
    AVFrame *frame();
    CodedPicture encodeFrame(bool wantKey);

private:
    PictureEncoder(CodecContext context, Frame frame, Packet packet);

    CodecContext m_context;
    Frame m_frame;
    Packet m_packet;
    qint64 m_number = 0;
};

} // namespace recorder
