#pragma once

#include "ExportRoute.h"

#include <QList>
#include <QString>

namespace paravue
{

/// A file that was exported.
struct ExportedFile {
    QString name;
    ExportFile content;
    qint64 movedTimes = 0; ///< see MediaFile
    int timesSetBack = 0;
};

/// Writes the video streams of the \a recording as the \a route, which has seen it once, says. Several files
/// have numbers in their names. On a failure there are none, and those that were there before are as they
/// were. Throws a MediaError.
QList<ExportedFile> exportVideo(const QString &recording, const ExportRoute &route, const QString &name,
                                bool overwrite);

} // namespace paravue
