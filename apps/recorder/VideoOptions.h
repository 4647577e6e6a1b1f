#pragma once

#include "recorder/video/VideoFaults.h"
#include "recorder/video/VideoSettings.h"

#include <QCommandLineParser>

namespace recorder
{

class RecorderServer;

/// The video options of the command line.
struct VideoOptions {
    VideoSettings settings;
    VideoFaults faults;
    QString file;
    QString recordFile;
    unsigned snapshotLogins = 0;
};

void addVideoOptions(QCommandLineParser &parser);
/// Nothing, with \a fault set, when an option is invalid.
std::optional<VideoOptions> readVideoOptions(const QCommandLineParser &parser, QString &fault);
/// Returns why that cannot be done; empty when it is done.
QString applyVideoOptions(const VideoOptions &options, RecorderServer &server);
/// Begins the recording, likewise. To be called once the server listens, so that a program that cannot run
/// leaves no file.
QString startRecording(const VideoOptions &options, RecorderServer &server);

} // namespace recorder
