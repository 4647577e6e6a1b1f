#pragma once

#include "recorder/video/VideoFaults.h"
#include "recorder/video/VideoSettings.h"

#include <QCommandLineParser>

namespace recorder
{

class RecorderServer;

/// What the command line says about the video.
struct VideoOptions {
    VideoSettings settings;
    VideoFaults faults;
    QString file;
    QString recordFile;
    unsigned snapshotLogins = 0;
};

void addVideoOptions(QCommandLineParser &parser);
/// Nothing, with \a fault set, when they make no sense.
std::optional<VideoOptions> readVideoOptions(const QCommandLineParser &parser, QString &fault);
/// Returns why that cannot be done; empty when it is done.
QString applyVideoOptions(const VideoOptions &options, RecorderServer &server);
/// The same of the recording, once the server listens: a program that cannot run leaves no file.
QString startRecording(const VideoOptions &options, RecorderServer &server);

} // namespace recorder
