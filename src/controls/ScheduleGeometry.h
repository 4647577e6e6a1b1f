#pragma once

#include "controls/WeekPlan.h"

#include <QList>
#include <QRect>
#include <QSize>
#include <QStringList>

#include <array>

class QFontMetrics;

namespace paravue
{

/// Where the days and slots of a schedule stand: the names of the days at the leading edge, the captions of
/// the hours on top, both at least as large as their texts, and the remaining width shared among the hours. A
/// slot has room for about a digit.
class ScheduleGeometry
{
public:
    /// \a widths are those of the hours' columns in pixels; 0 or none lets the caption decide.
    void measure(const QFontMetrics &metrics, int slotsPerHour, const QStringList &days,
                 const QStringList &hours, const QList<int> &widths);
    /// The smallest size at which everything is readable.
    QSize minimumSize() const;
    void fit(const QSize &size, Qt::LayoutDirection direction);

    QRect rect(const PlanRange &range) const;
    QRect dayName(int day) const;
    QRect hourCaption(int hour) const;

    int slotsPerHour() const { return m_slotsPerHour; }
    /// The cell at \a position; at a name the whole day, at a caption the hour of all days, and in the corner
    /// the week.
    PlanRange rangeAt(const QPoint &position) const;
    /// The slots of the hour that a cell belongs to.
    PlanRange hourOf(const PlanCell &cell) const;
    PlanCell nearestCell(const QPoint &position) const;

private:
    QRect mirrored(const QRect &rect) const;
    int leading(const QPoint &position) const;
    int edge(int slot) const;

    int m_slotsPerHour = 1;
    int m_namesWidth = 0;
    int m_captionHeight = 0;
    int m_minimumRowHeight = 0;
    int m_rowHeight = 0;
    std::array<int, WeekPlan::Hours> m_minimumWidths{};
    std::array<int, WeekPlan::Hours + 1> m_edges{}; ///< of the columns, counted from the leading edge
    QSize m_size;
    bool m_isMirrored = false;
};

} // namespace paravue
