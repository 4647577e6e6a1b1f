#include "controls/WeekPlan.h"

#include <algorithm>

namespace paravue
{

PlanRange PlanRange::between(const PlanCell &a, const PlanCell &b)
{
    return {{std::min(a.day, b.day), std::min(a.hour, b.hour)},
            {std::max(a.day, b.day), std::max(a.hour, b.hour)}};
}

PlanRange PlanRange::united(const PlanRange &other) const
{
    return {between(first, other.first).first, between(last, other.last).last};
}

bool PlanRange::contains(const PlanCell &cell) const
{
    return cell.day >= first.day && cell.day <= last.day && cell.hour >= first.hour && cell.hour <= last.hour;
}

void WeekPlan::setTexts(const QStringList &texts)
{
    for (int day = 0; day < Days; ++day)
        m_days[day] = texts.value(day).toStdU32String();
}

QStringList WeekPlan::texts() const
{
    QStringList texts;
    for (const std::u32string &day : m_days)
        texts.append(QString::fromStdU32String(day));
    return texts;
}

char32_t WeekPlan::at(const PlanCell &cell) const
{
    const std::u32string &day = m_days[cell.day];
    return size_t(cell.hour) < day.size() ? day[cell.hour] : m_blank;
}

void WeekPlan::fill(const PlanRange &range, char32_t entry)
{
    for (int day = range.first.day; day <= range.last.day; ++day) {
        for (int hour = range.first.hour; hour <= range.last.hour; ++hour) {
            if (at({day, hour}) == entry)
                continue;
            if (m_days[day].size() <= size_t(hour))
                m_days[day].resize(hour + 1, m_blank);
            m_days[day][hour] = entry;
        }
    }
}

std::u32string WeekPlan::hoursOf(int day) const
{
    std::u32string hours;
    for (int hour = 0; hour < Hours; ++hour)
        hours += at({day, hour});
    return hours;
}

void WeekPlan::setHours(int day, const std::u32string &hours)
{
    for (int hour = 0; hour < Hours; ++hour)
        fill({{day, hour}, {day, hour}}, hours[hour]);
}

} // namespace paravue
