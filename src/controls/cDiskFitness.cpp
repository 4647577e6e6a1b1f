#include "controls/cDiskFitness.h"

#include <QFontMetrics>
#include <QPainter>
#include <QStyle>
#include <QStyleOptionProgressBar>

#include <algorithm>

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

cDiskFitness::cDiskFitness(QWidget *parent, const QString &report) : QWidget(parent), m_report(report)
{
    setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
    if (m_report.isEmpty())
        return;
    readReport();
    estimate();
}

void cDiskFitness::readReport()
{
    m_report.replace(QLatin1String("\\n"), QLatin1String("\n"));
    // Intended: the columns of a missing line are counted from -1, the result of indexOf().
    const qsizetype powerOn = m_report.indexOf(QLatin1String("  9 Power_On_Hours"));
    powerOnHours = rawNumberAt(m_report, powerOn + RawColumn);
    powerOnValue = shortNumberAt(m_report, powerOn + ValueColumn);
    const qsizetype reallocated = m_report.indexOf(QLatin1String("  5 Reallocated_Sector_Ct"));
    reallocatedRaw = rawNumberAt(m_report, reallocated + RawColumn);
    reallocatedThreshold = shortNumberAt(m_report, reallocated + ThresholdColumn);
}

void cDiskFitness::estimate()
{
    const qint64 ageScore = 100 - qint64(powerOnHours) * 100 / WornOutHours;
    const qint64 least =
        std::min({qint64(powerOnValue), ageScore, reallocationScore(reallocatedRaw, reallocatedThreshold)});
    healthPercent = int(std::clamp<qint64>(least, 0, 100));
}

QSize cDiskFitness::sizeHint() const
{
    const QFontMetrics metrics = fontMetrics();
    return {metrics.horizontalAdvance(u'0') * 24, metrics.height() + 8};
}

void cDiskFitness::paintEvent(QPaintEvent *)
{
    QStyleOptionProgressBar option;
    option.initFrom(this);
    option.state |= QStyle::State_Horizontal;
    option.maximum = 100;
    option.progress = healthPercent;
    option.text = tr("%1%").arg(healthPercent);
    option.textAlignment = Qt::AlignCenter;
    option.textVisible = true;
    QPainter painter(this);
    style()->drawControl(QStyle::CE_ProgressBar, &option, &painter, this);
}
