#include "controls/ReadableColors.h"
#include "controls/ScheduleGrid.h"
#include "controls/ScheduleTexts.h"

#include <QPainter>

#include <algorithm>

namespace paravue
{
namespace
{

constexpr double LineShare = 0.3;
constexpr double SlotLineShare = 0.12;
constexpr double CurrentDayShare = 0.3;
constexpr int NoteMargin = 6;

} // namespace

void ScheduleGrid::paintEvent(QPaintEvent *)
{
    QPainter painter(this);
    paintCaptions(painter);
    for (int day = 0; day < WeekPlan::Days; ++day)
        paintDay(painter, day);
    paintLines(painter);
    for (int day = 0; day < WeekPlan::Days; ++day)
        paintMarks(painter, day);
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
    if (!m_plan.isUnderstood(day))
        paintKind(painter, m_geometry.rect(m_plan.day(day)), UnknownKind, palette(), group);
    for (const PlanRange &run : m_plan.runsOf(day))
        paintKind(painter, m_geometry.rect(run), kindNumber(m_kinds, m_plan.at(run.first)), palette(), group);
}

/// One mark for each run of equal slots: a mark in every slot would hide where the runs end.
void ScheduleGrid::paintMarks(QPainter &painter, int day) const
{
    const QPalette::ColorGroup group = isEnabled() ? QPalette::Active : QPalette::Disabled;
    if (!m_plan.isUnderstood(day))
        paintNote(painter, m_geometry.rect(m_plan.day(day)), ScheduleTexts::notUnderstood(m_plan, day));
    for (const PlanRange &run : m_plan.runsOf(day)) {
        const int number = kindNumber(m_kinds, m_plan.at(run.first));
        if (number == 0)
            continue;
        const QString mark = number == UnknownKind ? QStringLiteral("?") : QString::number(number);
        const int last = std::min(run.last.slot, run.first.slot + m_plan.slotsPerHour() - 1);
        QRect place(0, 0, fontMetrics().horizontalAdvance(mark), fontMetrics().height());
        place.moveCenter(m_geometry.rect({run.first, {day, last}}).center());
        const QColor background = kindColor(number, palette(), group);
        painter.fillRect(place, background); // hides lines between slots
        painter.setPen(readableTextOn(background));
        painter.drawText(place, Qt::AlignCenter | Qt::TextDontClip, mark);
    }
}

void ScheduleGrid::paintNote(QPainter &painter, const QRect &row, const QString &text) const
{
    const QPalette::ColorGroup group = isEnabled() ? QPalette::Active : QPalette::Disabled;
    const QString fitting = fontMetrics().elidedText(text, Qt::ElideRight, row.width() - 2 * NoteMargin);
    QRect note(0, 0, fontMetrics().horizontalAdvance(fitting) + 2 * NoteMargin, row.height() - 2);
    note.moveCenter(row.center());
    painter.fillRect(note, palette().color(group, QPalette::Base));
    painter.setPen(palette().color(group, QPalette::Text));
    painter.drawText(note, Qt::AlignCenter, fitting);
}

void ScheduleGrid::paintLines(QPainter &painter) const
{
    const QPalette::ColorGroup group = isEnabled() ? QPalette::Active : QPalette::Disabled;
    const auto color = [&](double share) {
        QColor color = palette().color(group, QPalette::Text);
        color.setAlphaF(share);
        return color;
    };
    const QRect week = m_geometry.rect(m_plan.week());
    for (int day = 0; day < WeekPlan::Days; ++day) {
        const QRect row = m_geometry.rect(m_plan.day(day));
        for (int slot = 0; m_plan.isUnderstood(day) && slot < m_plan.slotsPerDay(); ++slot) {
            const bool beginsHour = slot % m_plan.slotsPerHour() == 0;
            const QRect cell = m_geometry.rect({{day, slot}, {day, slot}});
            painter.setPen(color(beginsHour ? LineShare : SlotLineShare));
            painter.drawLine(cell.topLeft(), cell.bottomLeft());
        }
        painter.setPen(color(LineShare));
        painter.drawLine(row.topLeft(), row.topRight());
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
