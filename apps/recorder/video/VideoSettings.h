#pragma once

#include <QByteArray>
#include <QSize>
#include <QString>
#include <QStringList>

#include <optional>

namespace recorder
{

enum class VideoCodec { H264, Mpeg4, MotionJpeg };

/// How the pictures are encoded and sent.
struct VideoSettings {
    /// Both even, from MinSize to MaxSize.
    static constexpr QSize MinSize = {64, 48};
    static constexpr QSize MaxSize = {4096, 4096};
    static constexpr int MaxRate = 200;
    /// Larger frames do not fit the 16 bits of a record's length.
    static constexpr int MaxFragment = 65535;

    VideoCodec codec = VideoCodec::H264;
    QSize size = {640, 360};
    int rate = 25; ///< pictures per second
    int fragmentSize = 1400;

    friend bool operator==(const VideoSettings &, const VideoSettings &) = default;
};

/// The size in which pictures of \a size are encoded: an even one from MinSize to MaxSize.
QSize encodableSize(QSize size);

/// The names of the codecs on the command line: "h264", "mpeg4", "mjpeg".
QStringList videoCodecNames();
std::optional<VideoCodec> videoCodecNamed(const QString &name);
QString nameOf(VideoCodec codec);
/// The label of a stream with this codec.
QByteArray streamLabel(VideoCodec codec);

/// The reason why these settings are invalid; empty when they are valid.
QString settingsFault(const VideoSettings &settings);

} // namespace recorder
