#pragma once

#include "recorder/device/PtzState.h"
#include "recorder/video/PictureEncoder.h"

namespace recorder
{

/// A source of coded pictures.
class VideoSource
{
public:
    virtual ~VideoSource() = default;

    virtual VideoCodec codec() const = 0;
    /// The next picture, a key picture on request where that is possible. \a time is that of the recorder's
    /// clock.
    virtual CodedPicture next(bool wantKey, const CameraPose &pose, qint64 time) = 0;
    /// Milliseconds between the last picture and the next one.
    virtual double interval() const = 0;
    /// The present or the last key picture as JPEG; empty when there is none.
    virtual QByteArray snapshot() const { return {}; }
    /// The reason why there are no more pictures; empty while there are.
    virtual QString fault() const { return {}; }
};

/// The test picture, encoded.
class TestPictureSource : public VideoSource
{
public:
    /// Nothing, with \a fault set, when FFmpeg cannot encode with these settings.
    static std::unique_ptr<VideoSource> open(const VideoSettings &settings, QString &fault);

    VideoCodec codec() const override { return m_settings.codec; }
    CodedPicture next(bool wantKey, const CameraPose &pose, qint64 time) override;
    double interval() const override { return 1000.0 / m_settings.rate; }

private:
    TestPictureSource(const VideoSettings &settings, std::unique_ptr<PictureEncoder> encoder);

    VideoSettings m_settings;
    std::unique_ptr<PictureEncoder> m_encoder;
};

} // namespace recorder
