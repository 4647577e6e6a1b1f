#include "controls/ReadableColors.h"
#include "controls/ScheduleGrid.h"

#include <QPainter>

namespace paravue
{
namespace
{

constexpr double LineShare = 0.3;
constexpr double CurrentDayShare = 0.3;

} // namespace

void ScheduleGrid::paintEvent(QPaintEvent *)
{
    QPainter painter(this);
    paintCaptions(painter);
    for (int day = 0; day < WeekPlan::Days; ++day)
        paintDay(painter, day);
    paintLines(painter);
    if (hasFocus())
        paintFocus(painter);
}

void ScheduleGrid::paintCaptions(QPainter &painter) const
{
    const auto paint = [&](const QRect &rect, const QString &text, bool isCurrent) {
        QColor foreground = palette().color(foregroundRole());
        if (isCurrent && isEnabled()) {
            const QColor background = mixedColor(palette().color(QPalette::Window),
                                                 palette().color(QPalette::Highlight), CurrentDayShare);
            painter.fillRect(rect, background);
            foreground = readableVersion(foreground, background);
        }
        painter.setPen(foreground);
        const QRect inner = rect.adjusted(1, 0, -1, 0);
        painter.drawText(inner, Qt::AlignCenter,
                         fontMetrics().elidedText(text, Qt::ElideRight, inner.width()));
    };
    for (int day = 0; day < WeekPlan::Days; ++day)
        paint(m_geometry.dayName(day), m_dayNames.value(day), day == current().day);
    for (int hour = 0; hour < WeekPlan::Hours; ++hour)
        paint(m_geometry.hourCaption(hour), m_hourCaptions.value(hour), false);
}

void ScheduleGrid::paintDay(QPainter &painter, int day) const
{
    const QPalette::ColorGroup group = isEnabled() ? QPalette::Active : QPalette::Disabled;
    int before = 0;
    for (int hour = 0; hour < WeekPlan::Hours; ++hour) {
        const PlanCell cell{day, hour};
        const QRect rect = m_geometry.rect({cell, cell});
        const int number = kindNumber(m_kinds, m_plan.at(cell));
        painter.setPen(paintKind(painter, rect, number, palette(), group));
        // One mark for each run of equal hours: a mark in every hour would hide where the runs end.
        if (number == UnknownKind)
            painter.drawText(rect, Qt::AlignCenter, QStringLiteral("?"));
        else if (number != 0 && number != before)
            painter.drawText(rect, Qt::AlignCenter, QString::number(number));
        before = number;
    }
}

void ScheduleGrid::paintLines(QPainter &painter) const
{
    const QPalette::ColorGroup group = isEnabled() ? QPalette::Active : QPalette::Disabled;
    painter.setPen(mixedColor(palette().color(group, QPalette::Base), palette().color(group, QPalette::Text),
                              LineShare));
    const QRect week = m_geometry.rect(WeekPlan::Week);
    for (int day = 0; day < WeekPlan::Days; ++day) {
        const QRect row = m_geometry.rect(WeekPlan::day(day));
        painter.drawLine(row.topLeft(), row.topRight());
    }
    for (int hour = 0; hour < WeekPlan::Hours; ++hour) {
        const QRect column = m_geometry.hourCaption(hour);
        painter.drawLine(column.left(), week.top(), column.left(), week.bottom());
    }
    painter.drawRect(week);
}

void ScheduleGrid::paintFocus(QPainter &painter) const
{
    // Two lines, as no single colour is visible on all kinds.
    const QRect selected = m_geometry.rect(selection());
    painter.setBrush(Qt::NoBrush);
    painter.setPen(QPen(palette().color(QPalette::Text), 2));
    painter.drawRect(selected.adjusted(1, 1, 0, 0));
    painter.setPen(palette().color(QPalette::Base));
    painter.drawRect(selected.adjusted(2, 2, -2, -2));
    if (m_frame.anchor() == m_frame.current())
        return;
    painter.setPen(QPen(palette().color(QPalette::Text), 1, Qt::DotLine));
    painter.drawRect(m_geometry.rect({current(), current()}).adjusted(3, 3, -3, -3));
}

} // namespace paravue
