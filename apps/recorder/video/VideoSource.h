#pragma once

#include "recorder/device/PtzState.h"
#include "recorder/video/PictureEncoder.h"

namespace recorder
{

/// Where the coded pictures of a stream come from.
class VideoSource
{
public:
    virtual ~VideoSource() = default;

    virtual VideoCodec codec() const = 0;
    /// A key picture is made on request where that is possible. \a time is that of the recorder's clock.
    virtual CodedPicture next(bool wantKey, const CameraPose &pose, qint64 time) = 0;
    /// Milliseconds from the picture before to the next one.
    virtual double interval() const = 0;
    /// What is shown now as a JPEG, or the last picture that can be decoded by itself; empty when there is
    /// none or the source knows none.
    virtual QByteArray snapshot() const { return {}; }
    /// Why there are no pictures any more; empty while there are.
    virtual QString fault() const { return {}; }
};

/// The test picture, encoded.
class TestPictureSource : public VideoSource
{
public:
    /// Nothing, with \a fault set, when it cannot be encoded like that.
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
