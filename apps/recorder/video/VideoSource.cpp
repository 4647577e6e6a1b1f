#include "recorder/video/VideoSource.h"

#include "recorder/video/TestPicture.h"

namespace recorder
{

std::unique_ptr<VideoSource> TestPictureSource::open(const VideoSettings &settings, QString &fault)
{
    std::unique_ptr<PictureEncoder> encoder = PictureEncoder::open(settings, fault);
    if (!encoder)
        return nullptr;
    return std::unique_ptr<VideoSource>(new TestPictureSource(settings, std::move(encoder)));
}

TestPictureSource::TestPictureSource(const VideoSettings &settings, std::unique_ptr<PictureEncoder> encoder)
    : m_settings(settings), m_encoder(std::move(encoder))
{
}

CodedPicture TestPictureSource::next(bool wantKey, const CameraPose &pose, qint64 time)
{
    const auto paint = [&](PicturePainter &painter) { paintTestPicture(painter, pose, time); };
    return m_encoder->encode(paint, wantKey);
}

} // namespace recorder
