#pragma once

#include "FormatHandles.h"
#include "video/FfmpegHandles.h"

#include <QByteArray>
#include <QSize>

#include <memory>

namespace paravue
{

/// Facts about a coded picture and the pictures behind it.
struct PictureFacts {
    AVCodecID codec = AV_CODEC_ID_NONE;
    bool isKey = false;       ///< can be decoded without the pictures before it
    bool isBPicture = false;  ///< needs a picture that is shown behind it
    QSize size;               ///< empty while it is not known
    QByteArray parameterSets; ///< what a decoder needs beforehand; empty while they are not known
};

/// Fills in the \a parameters of a stream that begins with such a picture. Throws std::bad_alloc.
void describe(AVCodecParameters &parameters, const PictureFacts &facts);

/// Reads facts from the coded pictures of one stream, without decoding them.
class PictureInspector
{
public:
    /// \a label is the one in the header of the stream, such as "H264"; null when it is not known.
    static std::unique_ptr<PictureInspector> create(const QByteArray &label);

    PictureFacts inspect(const QByteArray &picture);

private:
    explicit PictureInspector(AVCodecID codec);
    bool open();
    void parse(const AVPacket &packet);
    void readSizeOfJpeg(const AVPacket &packet);
    void extractParameterSets(const AVPacket &packet);

    PictureFacts m_facts;
    CodecContextHandle m_context;
    ParserHandle m_parser;
    FilterHandle m_filter;
    PacketHandle m_packet;
    PacketHandle m_filtered;
};

} // namespace paravue
