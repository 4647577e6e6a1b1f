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

/// Writes the video streams of the \a recording, to be read with the \a header if there is one, which \a
/// route has seen once, into the files of the route. Several files have numbers in their names. Throws a
/// MediaError; then no file is written or changed.
QList<ExportedFile> exportVideo(const QString &recording, const QByteArray &header, const ExportRoute &route,
                                const QString &name, bool overwrite);

} // namespace paravue
