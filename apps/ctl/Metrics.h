#pragma once

#include "snapshots/Snapshot.h"

#include <QJsonObject>
#include <QList>
#include <QMap>
#include <QString>

namespace paravue
{

/// A figure of a recorder, as Prometheus takes it (text format 0.0.4).
struct MetricSample {
    QString name;
    QMap<QString, QString> labels; ///< "recorder" among them
    double value = 0;

    QJsonObject toJson() const;
    static MetricSample fromJson(const QJsonObject &object);
};

/// The figures of the recorder \a name, whose address is \a recorder, from its \a files. Without files only
/// that it is not up.
QList<MetricSample> metricsOf(const QString &name, const QString &recorder, const FileContents &files,
                              bool isUp);

/// Samples of any recorders, those of one metric together, with what each metric is.
QString metricsText(const QList<MetricSample> &samples);

} // namespace paravue
