#include "controls/WeekPlan.h"

#include <algorithm>

namespace paravue
{

PlanRange PlanRange::between(const PlanCell &a, const PlanCell &b)
{
    return {{std::min(a.day, b.day), std::min(a.slot, b.slot)},
            {std::max(a.day, b.day), std::max(a.slot, b.slot)}};
}

PlanRange PlanRange::united(const PlanRange &other) const
{
    return {between(first, other.first).first, between(last, other.last).last};
}

bool PlanRange::contains(const PlanCell &cell) const
{
    return cell.day >= first.day && cell.day <= last.day && cell.slot >= first.slot && cell.slot <= last.slot;
}

WeekPlan::Day WeekPlan::read(const QString &text)
{
    const qsizetype length = text.size() - std::count_if(text.begin(), text.end(), [](QChar character) {
                                 return character.isLowSurrogate();
                             });
    if (length % Hours != 0 || length > Hours * MostSlotsPerHour || !isSlotsPerHour(int(length) / Hours))
        return {text, length, {}};
    const std::u32string entries = text.toStdU32String();
    // Half a character would not be written as it was read.
    return {text, length, QString::fromStdU32String(entries) == text ? entries : std::u32string()};
}

void WeekPlan::setTexts(const QStringList &texts)
{
    for (int day = 0; day < Days; ++day) {
        const QString text = texts.value(day);
        if (text != m_days[day].text)
            m_days[day] = read(text);
    }
}

QStringList WeekPlan::texts() const
{
    QStringList texts;
    for (const Day &day : m_days)
        texts.append(day.text);
    return texts;
}

int WeekPlan::slotsPerHour() const
{
    int slots = m_leastSlotsPerHour;
    for (const Day &day : m_days)
        slots = std::max(slots, int(day.entries.size()) / Hours);
    return slots;
}

char32_t WeekPlan::at(const PlanCell &cell) const
{
    const std::u32string &entries = m_days[cell.day].entries;
    return entries.empty() ? m_blank : entries[size_t(cell.slot) * entries.size() / size_t(slotsPerDay())];
}

bool WeekPlan::contains(char32_t entry) const
{
    return std::any_of(m_days.begin(), m_days.end(),
                       [&](const Day &day) { return day.entries.find(entry) != std::u32string::npos; });
}

void WeekPlan::fill(const PlanRange &range, char32_t entry)
{
    for (int day = range.first.day; day <= range.last.day; ++day) {
        std::u32string entries = entriesOf(day);
        std::fill(entries.begin() + range.first.slot, entries.begin() + range.last.slot + 1, entry);
        setEntries(day, entries);
    }
}

QList<PlanRange> WeekPlan::runsOf(int day) const
{
    QList<PlanRange> runs;
    if (!isUnderstood(day))
        return runs;
    const std::u32string entries = entriesOf(day);
    size_t end = 0;
    for (size_t start = 0; start < entries.size(); start = end) {
        end = std::min(entries.find_first_not_of(entries[start], start), entries.size());
        runs.append(PlanRange{{day, int(start)}, {day, int(end) - 1}});
    }
    return runs;
}

std::u32string WeekPlan::entriesOf(int day) const
{
    const std::u32string &stored = m_days[day].entries;
    const size_t slots = size_t(slotsPerDay());
    std::u32string entries(slots, m_blank);
    for (size_t slot = 0; slot < slots && !stored.empty(); ++slot)
        entries[slot] = stored[slot * stored.size() / slots];
    return entries;
}

void WeekPlan::setEntries(int day, const std::u32string &entries)
{
    if (isUnderstood(day) && entries != entriesOf(day))
        write(day, entries);
}

void WeekPlan::replace(int day)
{
    write(day, std::u32string(size_t(slotsPerDay()), m_blank));
}

void WeekPlan::write(int day, const std::u32string &entries)
{
    m_days[day] = {QString::fromStdU32String(entries), qsizetype(entries.size()), entries};
}

} // namespace paravue
