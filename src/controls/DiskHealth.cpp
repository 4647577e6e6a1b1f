#include "controls/DiskHealth.h"

#include <algorithm>

namespace paravue
{

namespace
{

// Columns of a line that begins with the attribute's number, right-aligned in three characters.
constexpr qsizetype ValueColumn = 37;
constexpr qsizetype ThresholdColumn = 49;
constexpr qsizetype RawColumn = 87;
constexpr qsizetype NumberWidth = 3;

constexpr qint64 WornOutHours = 15000;

int shortNumberAt(const QString &report, qsizetype position)
{
    return report.mid(position, NumberWidth).toInt();
}

int rawNumberAt(const QString &report, qsizetype position)
{
    const qsizetype end = report.indexOf(u'\n', position);
    return report.mid(position, end < 0 ? -1 : end - position).toInt();
}

qint64 reallocationScore(qint64 raw, qint64 threshold)
{
    // Without a threshold any reallocated sector counts as a failure.
    if (threshold == 0)
        return raw == 0 ? 100 : 0;
    return 100 - raw * 100 / threshold;
}

} // namespace

DiskHealth DiskHealth::ofReport(QString report)
{
    DiskHealth disk;
    if (report.isEmpty())
        return disk;
    report.replace(QLatin1String("\\n"), QLatin1String("\n"));
    // Intended: the columns of a missing line are counted from -1, the result of indexOf().
    const qsizetype powerOn = report.indexOf(QLatin1String("  9 Power_On_Hours"));
    disk.powerOnHours = rawNumberAt(report, powerOn + RawColumn);
    disk.powerOnValue = shortNumberAt(report, powerOn + ValueColumn);
    const qsizetype reallocated = report.indexOf(QLatin1String("  5 Reallocated_Sector_Ct"));
    disk.reallocatedRaw = rawNumberAt(report, reallocated + RawColumn);
    disk.reallocatedThreshold = shortNumberAt(report, reallocated + ThresholdColumn);

    const qint64 ageScore = 100 - qint64(disk.powerOnHours) * 100 / WornOutHours;
    const qint64 least = std::min({qint64(disk.powerOnValue), ageScore,
                                   reallocationScore(disk.reallocatedRaw, disk.reallocatedThreshold)});
    disk.healthPercent = int(std::clamp<qint64>(least, 0, 100));
    return disk;
}

} // namespace paravue
