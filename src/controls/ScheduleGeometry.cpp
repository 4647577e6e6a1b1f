#include "controls/ScheduleGeometry.h"

#include <QFontMetrics>

#include <algorithm>
#include <numeric>

namespace paravue
{
namespace
{

constexpr int CellMargin = 4; // between a text and the edge of its cell

} // namespace

void ScheduleGeometry::measure(const QFontMetrics &metrics, int slotsPerHour, const QStringList &days,
                               const QStringList &hours, const QList<int> &widths)
{
    m_slotsPerHour = slotsPerHour;
    m_namesWidth = 0;
    for (const QString &day : days)
        m_namesWidth = std::max(m_namesWidth, metrics.horizontalAdvance(day) + 2 * CellMargin);
    m_captionHeight = metrics.height() + CellMargin;
    m_minimumRowHeight = metrics.height() + 2 * CellMargin;
    const int usual = metrics.horizontalAdvance(QStringLiteral("00")) + 2 * CellMargin;
    const int finest = slotsPerHour > 1 ? slotsPerHour * (metrics.horizontalAdvance(u'0') - 1) : 0;
    for (int hour = 0; hour < WeekPlan::Hours; ++hour) {
        const int needed = std::max(usual, metrics.horizontalAdvance(hours.value(hour)) + CellMargin);
        const int asked = widths.value(hour);
        m_minimumWidths[hour] = std::max(asked > 0 ? asked : needed, finest);
    }
}

QSize ScheduleGeometry::minimumSize() const
{
    // One pixel more for the line that closes the grid.
    return {m_namesWidth + std::accumulate(m_minimumWidths.begin(), m_minimumWidths.end(), 0) + 1,
            m_captionHeight + WeekPlan::Days * m_minimumRowHeight + 1};
}

void ScheduleGeometry::fit(const QSize &size, Qt::LayoutDirection direction)
{
    m_size = size;
    m_isMirrored = direction == Qt::RightToLeft;
    m_rowHeight = std::max(m_minimumRowHeight, (size.height() - m_captionHeight - 1) / WeekPlan::Days);
    const qint64 least = std::max(1, minimumSize().width() - m_namesWidth - 1);
    const qint64 room = std::max<qint64>(least, size.width() - m_namesWidth - 1);
    qint64 before = 0;
    for (int hour = 0; hour <= WeekPlan::Hours; ++hour) {
        m_edges[hour] = m_namesWidth + int(before * room / least);
        before += hour < WeekPlan::Hours ? m_minimumWidths[hour] : 0;
    }
}

QRect ScheduleGeometry::mirrored(const QRect &rect) const
{
    return m_isMirrored ? QRect(m_size.width() - rect.right() - 1, rect.top(), rect.width(), rect.height())
                        : rect;
}

int ScheduleGeometry::leading(const QPoint &position) const
{
    return m_isMirrored ? m_size.width() - 1 - position.x() : position.x();
}

/// The leading edge of a slot, or the end of the last one.
int ScheduleGeometry::edge(int slot) const
{
    const int hour = slot / m_slotsPerHour;
    const int part = slot % m_slotsPerHour;
    return part == 0 ? m_edges[hour]
                     : m_edges[hour] + (m_edges[hour + 1] - m_edges[hour]) * part / m_slotsPerHour;
}

QRect ScheduleGeometry::rect(const PlanRange &range) const
{
    const int left = edge(range.first.slot);
    const int top = m_captionHeight + range.first.day * m_rowHeight;
    return mirrored(
        {left, top, edge(range.last.slot + 1) - left, (range.last.day - range.first.day + 1) * m_rowHeight});
}

QRect ScheduleGeometry::dayName(int day) const
{
    return mirrored({0, m_captionHeight + day * m_rowHeight, m_namesWidth, m_rowHeight});
}

QRect ScheduleGeometry::hourCaption(int hour) const
{
    return mirrored({m_edges[hour], 0, m_edges[hour + 1] - m_edges[hour], m_captionHeight});
}

PlanRange ScheduleGeometry::rangeAt(const QPoint &position) const
{
    const PlanCell cell = nearestCell(position);
    const bool isAtHours = position.y() < m_captionHeight;
    PlanRange range = isAtHours ? hourOf(cell) : PlanRange{cell, cell};
    if (leading(position) < m_namesWidth) {
        range.first.slot = 0;
        range.last.slot = WeekPlan::Hours * m_slotsPerHour - 1;
    }
    if (isAtHours) {
        range.first.day = 0;
        range.last.day = WeekPlan::Days - 1;
    }
    return range;
}

PlanRange ScheduleGeometry::hourOf(const PlanCell &cell) const
{
    const int first = cell.slot - cell.slot % m_slotsPerHour;
    return {{cell.day, first}, {cell.day, first + m_slotsPerHour - 1}};
}

PlanCell ScheduleGeometry::nearestCell(const QPoint &position) const
{
    const int place = leading(position);
    const auto end = std::upper_bound(m_edges.begin() + 1, m_edges.end() - 1, place);
    int slot = int(end - m_edges.begin() - 1) * m_slotsPerHour;
    const int last = slot + m_slotsPerHour - 1;
    while (slot < last && edge(slot + 1) <= place)
        ++slot;
    const int day = (position.y() - m_captionHeight) / std::max(1, m_rowHeight);
    return {std::clamp(day, 0, WeekPlan::Days - 1), slot};
}

} // namespace paravue
