#pragma once

#include "RecordingSurvey.h"
#include "VideoExport.h"

namespace paravue
{

/// What hvx3-info reports.
struct InfoReport {
    QString recording;
    const RecordingSurvey &survey;
    QList<ExportedFile> exported;
    qint64 leftOut = 0; ///< pictures that were not exported
};

/// "1 byte", "1,000 bytes".
QString countedBytes(qint64 count);
QString textReport(const InfoReport &report);
/// A JSON object. Times are seconds, rates are per second; what is not known is missing.
QByteArray jsonReport(const InfoReport &report);

} // namespace paravue
