#pragma once

#include "LiveRecording.h"

#include <QByteArray>
#include <QString>
#include <QStringList>

#include <optional>

namespace paravue
{

/// The command line of hvx3-info.
struct InfoCommandLine {
    enum class Task { ListStreams, ShowText, RefuseUsage };

    Task task = Task::ListStreams;
    QString text; ///< what to show: the help, the version, or what is wrong with the command line
    QString file; ///< "-" is the standard input; with an address a file to be made
    std::optional<VideoAddress> address; ///< record this first
    RecordingTimes times;
    QString exportFile; ///< not empty: where to write the video streams
    QByteArray codec;   ///< not empty: of a recording that begins behind its header
    QString headerFile; ///< not empty: a recording whose header is to be used
    bool force = false; ///< overwrite what is there
    bool json = false;  ///< print for other programs

    /// Reads the words of a command line, the program's name first. Needs a QCoreApplication.
    static InfoCommandLine parse(const QStringList &words);
};

} // namespace paravue
