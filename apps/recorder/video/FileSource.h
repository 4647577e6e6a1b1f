#pragma once

#include "recorder/video/PictureScaler.h"
#include "recorder/video/VideoSource.h"

namespace recorder
{

/// A video file of any format that FFmpeg reads, played in a loop at its own rate. H.264, MPEG-4 and motion
/// JPEG are sent as they are, other codecs are transcoded.
class FileSource : public VideoSource
{
public:
    /// \a settings say how other codecs are encoded, except for the size. Nothing, with \a fault set, when
    /// the file cannot be played.
    static std::unique_ptr<VideoSource> open(const QString &path, const VideoSettings &settings,
                                             QString &fault);
    ~FileSource() override;

    VideoCodec codec() const override { return m_codec; }
    CodedPicture next(bool wantKey, const CameraPose &pose, qint64 time) override;
    double interval() const override { return m_interval; }
    QByteArray snapshot() const override;
    QString fault() const override { return m_fault; }

private:
    FileSource();

    QString openFile();
    QString openFilter();
    QString openTranscoder(const VideoSettings &settings);
    bool readPacket();
    bool rewind();
    bool reopen();
    CodedPicture copied();
    CodedPicture transcoded(bool wantKey);
    bool decode();
    bool convert();

    QString m_path;
    QString m_fault;
    QByteArray m_lastKey;
    AVCodecID m_fileCodec = AV_CODEC_ID_NONE;
    int m_rewinds = 0; // for the present picture
    Input m_input;
    Packet m_packet;
    BitstreamFilter m_filter;
    int m_stream = -1;
    VideoCodec m_codec = VideoCodec::H264;
    double m_interval = 40;
    // Only for transcoding:
    CodecContext m_decoder;
    Frame m_decoded;
    PictureScaler m_scaler;
    std::unique_ptr<PictureEncoder> m_encoder;
};

} // namespace recorder
