#include "recorder/video/VideoSettings.h"

#include "recorder/files/RecorderText.h"

namespace recorder
{

QSize encodableSize(QSize size)
{
    const QSize even(size.width() & ~1, size.height() & ~1);
    return even.expandedTo(VideoSettings::MinSize).boundedTo(VideoSettings::MaxSize);
}

QStringList videoCodecNames()
{
    return {QStringLiteral("h264"), QStringLiteral("mpeg4"), QStringLiteral("mjpeg")};
}

std::optional<VideoCodec> videoCodecNamed(const QString &name)
{
    const qsizetype number = videoCodecNames().indexOf(name);
    return number >= 0 ? std::optional(static_cast<VideoCodec>(number)) : std::nullopt;
}

QString nameOf(VideoCodec codec)
{
    return videoCodecNames().at(static_cast<int>(codec));
}

QByteArray streamLabel(VideoCodec codec)
{
    switch (codec) {
    case VideoCodec::H264:
        return "H264";
    case VideoCodec::Mpeg4:
        return "mp4v";
    case VideoCodec::MotionJpeg:
        return "mjpeg";
    }
    return {};
}

QString settingsFault(const VideoSettings &settings)
{
    constexpr QSize Min = VideoSettings::MinSize;
    constexpr QSize Max = VideoSettings::MaxSize;
    const QSize size = settings.size;
    if (size.boundedTo(Max).expandedTo(Min) != size || size.width() % 2 || size.height() % 2)
        return RecorderText::tr("a picture has an even size from %1x%2 to %3x%4")
            .arg(Min.width())
            .arg(Min.height())
            .arg(Max.width())
            .arg(Max.height());
    if (settings.rate < 1 || settings.rate > VideoSettings::MaxRate)
        return RecorderText::tr("there are 1 to %1 pictures a second").arg(VideoSettings::MaxRate);
    if (settings.fragmentSize < 1 || settings.fragmentSize > VideoSettings::MaxFragment)
        return RecorderText::tr("a fragment has 1 to %1 bytes").arg(VideoSettings::MaxFragment);
    return {};
}

} // namespace recorder
