#include "Metrics.h"

#include "changes/FileValues.h"
#include "controls/DiskHealth.h"
#include "device/CTimeZoner.h"
#include "snapshots/SnapshotFolder.h"
#include "store/OrbSetup.h"
#include "ui/description/InterfaceDocument.h"

#include <QDateTime>

#include <optional>

namespace paravue
{

namespace
{

struct Metric {
    const char *name;
    const char *help;
};
constexpr Metric Metrics[] = {
    {"paravue_up", "Whether the recorder has given all its files."},
    {"paravue_recorder_info", "Model and firmware of the recorder; always 1."},
    {"paravue_users", "Users that the recorder knows."},
    {"paravue_clock_difference_seconds",
     "By how much the clock of the recorder is ahead of this computer's."},
    {"paravue_disk_temperature_celsius", "Temperature of a disk."},
    {"paravue_disk_health_percent",
     "Health of a disk by its S.M.A.R.T. report, as the setup window shows it."},
    {"paravue_last_save_timestamp_seconds", "When paravue-ctl has last saved settings from this computer."},
    {"paravue_last_snapshot_timestamp_seconds", "When the newest snapshot was kept on this computer."},
};

std::optional<double> clockDifference(const FileValues &time)
{
    const QString digits = time.value(QStringLiteral("untitled/YYYYMMDDHHMMSS")).value_or(QString());
    QDateTime shown = QDateTime::fromString(digits, QStringLiteral("yyyyMMddHHmmss"));
    shown.setTimeSpec(Qt::UTC); // the digits of the recorder's zone
    if (!shown.isValid())
        return {};
    const QString zone = time.value(QStringLiteral("untitled/TIME_ZONE")).value_or(QString());
    const CTimeZoner zoner(zone.toLocal8Bit());
    return double(shown.toSecsSinceEpoch() - zoner.toLocal(QDateTime::currentSecsSinceEpoch()));
}

int userCount(const FileValues &users)
{
    int count = 0;
    for (auto value = users.all().cbegin(); value != users.all().cend(); ++value) {
        if (value.key().startsWith(QStringLiteral("untitled/NAME")) && !value->isEmpty())
            ++count;
    }
    return count;
}

QMap<QString, double> diskTemperatures(const FileValues &disk)
{
    const QString begin = QStringLiteral("untitled/");
    const QString end = QStringLiteral("_TEMP");
    QMap<QString, double> temperatures;
    for (auto value = disk.all().cbegin(); value != disk.all().cend(); ++value) {
        bool isNumber = false;
        const double celsius = value->toDouble(&isNumber);
        if (isNumber && value.key().startsWith(begin) && value.key().endsWith(end))
            temperatures.insert(value.key().mid(begin.size()).chopped(end.size()), celsius);
    }
    return temperatures;
}

/// The addresses of the S.M.A.R.T. reports that the setup window shows the health of disks by.
QStringList diskReportPaths(const QByteArray &description)
{
    const QString type = QStringLiteral("diskfitness");
    InterfaceDocument document;
    // Most recorders have none.
    if (!description.contains(type.toLatin1()) ||
        !document.load(description, QStringLiteral("interface")).isEmpty())
        return {};
    QStringList paths;
    const QDomNodeList items = document.root().elementsByTagName(QStringLiteral("item"));
    for (int i = 0; i < items.size(); ++i) {
        const QDomElement item = items.at(i).toElement();
        if (item.attribute(QStringLiteral("type")) == type)
            paths << OrbSetup::path(firstAddress(item));
    }
    paths.removeDuplicates();
    return paths;
}

/// In percent, by the keys of the reports.
QMap<QString, double> diskHealth(const FileContents &files)
{
    QMap<QString, double> health;
    for (const QString &path : diskReportPaths(files.value(QStringLiteral("interface")))) {
        const FileValues values(files.value(path.section(u'/', 0, 0)));
        const QString report = values.value(path.section(u'/', 1)).value_or(QString());
        if (!report.isEmpty())
            health.insert(path.section(u'/', -1), DiskHealth::ofReport(report).healthPercent);
    }
    return health;
}

QString escaped(QString text)
{
    return text.replace(u'\\', QStringLiteral("\\\\"))
        .replace(u'"', QStringLiteral("\\\""))
        .replace(u'\n', QStringLiteral("\\n"));
}

QString lineOf(const MetricSample &sample)
{
    QStringList labels;
    for (auto label = sample.labels.cbegin(); label != sample.labels.cend(); ++label)
        labels << QStringLiteral("%1=\"%2\"").arg(label.key(), escaped(*label));
    return QStringLiteral("%1{%2} %3\n")
        .arg(sample.name, labels.join(u','), QString::number(sample.value, 'g', 15));
}

} // namespace

QJsonObject MetricSample::toJson() const
{
    QJsonObject labelObject;
    for (auto label = labels.cbegin(); label != labels.cend(); ++label)
        labelObject.insert(label.key(), *label);
    return {{"name", name}, {"labels", labelObject}, {"value", value}};
}

MetricSample MetricSample::fromJson(const QJsonObject &object)
{
    MetricSample sample{
        object[QStringLiteral("name")].toString(), {}, object[QStringLiteral("value")].toDouble()};
    const QJsonObject labelObject = object[QStringLiteral("labels")].toObject();
    for (auto label = labelObject.begin(); label != labelObject.end(); ++label)
        sample.labels.insert(label.key(), label->toString());
    return sample;
}

QList<MetricSample> metricsOf(const QString &name, const QString &recorder, const FileContents &files,
                              bool isUp)
{
    QList<MetricSample> samples;
    const auto add = [&](const char *metric, double value, QMap<QString, QString> labels = {}) {
        labels.insert(QStringLiteral("recorder"), name);
        samples.append({QString::fromLatin1(metric), labels, value});
    };
    add("paravue_up", isUp ? 1 : 0);
    if (isUp) {
        SnapshotInfo info;
        describeRecorder(info, files);
        add("paravue_recorder_info", 1, {{"model", info.model}, {"firmware", info.firmware}});
        add("paravue_users", userCount(FileValues(files.value(QStringLiteral("users")))));
        if (const auto seconds = clockDifference(FileValues(files.value(QStringLiteral("time")))))
            add("paravue_clock_difference_seconds", *seconds);
        const QMap<QString, double> disks = diskTemperatures(FileValues(files.value(QStringLiteral("disk"))));
        for (auto disk = disks.cbegin(); disk != disks.cend(); ++disk)
            add("paravue_disk_temperature_celsius", *disk, {{"disk", disk.key()}});
    }
    if (isUp) {
        const QMap<QString, double> health = diskHealth(files);
        for (auto disk = health.cbegin(); disk != health.cend(); ++disk)
            add("paravue_disk_health_percent", *disk, {{"disk", disk.key()}});
    }
    const SnapshotFolder folder(SnapshotFolder::usualRoot(), recorder);
    if (const QDateTime saved = folder.lastSave(); saved.isValid())
        add("paravue_last_save_timestamp_seconds", double(saved.toSecsSinceEpoch()));
    const QList<KeptSnapshot> kept = folder.list();
    if (!kept.isEmpty())
        add("paravue_last_snapshot_timestamp_seconds",
            double(kept.constFirst().info.time.toSecsSinceEpoch()));
    return samples;
}

QString metricsText(const QList<MetricSample> &samples)
{
    QMap<QString, QString> lines; // by metric
    for (const MetricSample &sample : samples)
        lines[sample.name] += lineOf(sample);
    QString text;
    for (const Metric &metric : Metrics) {
        const QString name = QString::fromLatin1(metric.name);
        if (lines.contains(name))
            text += QStringLiteral("# HELP %1 %2\n# TYPE %1 gauge\n")
                        .arg(name, QString::fromLatin1(metric.help)) +
                    lines.value(name);
    }
    return text;
}

} // namespace paravue
