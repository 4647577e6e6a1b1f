#include "controls/AccessibleSchedule.h"
#include "controls/ScheduleClipboard.h"
#include "controls/ScheduleGrid.h"

#include <algorithm>

namespace paravue
{

EditActions ScheduleGrid::editActions()
{
    return groupedActions({undoActions(), kindActions(), selectionActions(), dayActions()});
}

EditActions ScheduleGrid::kindActions()
{
    EditActions actions;
    for (int number = 0; number < m_kinds.size(); ++number)
        actions.append({m_kinds[number].name,
                        {Qt::Key(Qt::Key_0 + number)},
                        [this, number] { chooseKind(number); },
                        true,
                        number == m_kind});
    return actions;
}

EditActions ScheduleGrid::selectionActions()
{
    return {{tr("Paint the selection"), {Qt::Key_Space}, [this] { fillSelection(m_kind); }},
            {tr("Erase the selection"), {Qt::Key_Delete, Qt::Key_Backspace}, [this] { fillSelection(0); }},
            {tr("Select the week"), {Qt::CTRL | Qt::Key_A}, [this] {
                 select(CellFrame(gridSize(), m_frame.lastCell(), {0, 0}));
             }}};
}

EditActions ScheduleGrid::dayActions()
{
    return {{tr("Copy the selected days"), keysFor(QKeySequence::Copy, Qt::CTRL | Qt::Key_C),
             [this] { copySelectedDays(); }},
            {tr("Paste into the selected days"), keysFor(QKeySequence::Paste, Qt::CTRL | Qt::Key_V),
             [this] { pasteDays(); }},
            {clearDayText(), {Qt::CTRL | Qt::Key_Delete}, [this] { clearDay(); }},
            {tr("Clear the week"), {Qt::CTRL | Qt::SHIFT | Qt::Key_Delete}, [this] { clearWeek(); }}};
}

void ScheduleGrid::chooseKind(int number)
{
    setKind(number);
    Q_EMIT kindChosen(number);
}

void ScheduleGrid::refuse(const QString &reason)
{
    m_refusal = reason;
    announceSchedule(*this);
    showRefusal(*this, reason);
}

void ScheduleGrid::refuseDays(int first, int last)
{
    QStringList names;
    for (int day = first; day <= last; ++day) {
        if (!m_plan.isUnderstood(day))
            names.append(m_dayNames.value(day));
    }
    if (!names.isEmpty())
        refuse(tr("Not changed, as what is stored is not understood: %1. \"Clear\" for a day replaces it.")
                   .arg(names.join(QStringLiteral(", "))));
}

QString ScheduleGrid::clearDayText() const
{
    const int day = current().day;
    const QString name = m_dayNames.value(day);
    return m_plan.isUnderstood(day) ? tr("Clear %1").arg(name)
                                    : tr("Clear %1 and what is not understood").arg(name);
}

void ScheduleGrid::clearDay()
{
    const int day = current().day;
    WeekPlan plan = m_plan;
    if (plan.isUnderstood(day))
        plan.fill(plan.day(day), plan.blank());
    else
        plan.replace(day);
    edit(plan, day, day);
}

void ScheduleGrid::clearWeek()
{
    WeekPlan plan = m_plan;
    plan.fill(plan.week(), plan.blank());
    edit(plan, 0, WeekPlan::Days - 1);
}

void ScheduleGrid::copyDayTo(int first, int last)
{
    const int source = current().day;
    if (!m_plan.isUnderstood(source)) {
        refuseDays(source, source);
        return;
    }
    WeekPlan plan = m_plan;
    for (int day = first; day <= last; ++day)
        plan.setEntries(day, plan.entriesOf(source));
    edit(plan, first, last);
}

void ScheduleGrid::copySelectedDays()
{
    const int first = selection().first.day;
    const int last = selection().last.day;
    for (int day = first; day <= last; ++day) {
        if (!m_plan.isUnderstood(day)) {
            refuse(tr("Not copied: what is stored for %1 is not understood").arg(m_dayNames.value(day)));
            return;
        }
    }
    copyDays(m_plan, first, last, m_kinds, m_dayNames);
}

/// One copied day goes into all selected ones, a week into the week, and others from the first selected day
/// on.
void ScheduleGrid::pasteDays()
{
    const QList<std::u32string> copied = copiedDays();
    const int count = int(copied.size());
    const int first = count == WeekPlan::Days ? 0 : selection().first.day;
    if (const QString fault = faultOf(copied, first); !fault.isEmpty()) {
        refuse(fault);
        return;
    }
    const int last = count == 1 ? selection().last.day : first + count - 1;
    WeekPlan plan = m_plan;
    for (int day = first; day <= last; ++day) {
        const std::u32string &source = copied[(day - first) % count];
        std::u32string entries(size_t(plan.slotsPerDay()), plan.blank());
        for (size_t slot = 0; slot < entries.size(); ++slot)
            entries[slot] = source[slot * source.size() / entries.size()];
        plan.setEntries(day, entries);
    }
    edit(plan, first, last);
}

/// Why copied days cannot be pasted from the day \a first on; empty when they can.
QString ScheduleGrid::faultOf(const QList<std::u32string> &copied, int first) const
{
    if (copied.isEmpty())
        return tr("Not pasted: the clipboard holds no days of a schedule");
    if (copied.size() > 1 && first + copied.size() > WeekPlan::Days)
        return tr("Not pasted: %1 days do not fit from %2 on")
            .arg(QString::number(copied.size()), m_dayNames.value(first));
    for (const std::u32string &entries : copied) {
        if (entries.size() > size_t(m_plan.slotsPerDay()))
            return tr("Not pasted: the copied day has %1 entries and a day here %2")
                .arg(QString::number(entries.size()), QString::number(m_plan.slotsPerDay()));
        const auto unknown = std::find_if(entries.begin(), entries.end(), [&](char32_t entry) {
            return kindNumber(m_kinds, entry) == UnknownKind && !m_plan.contains(entry);
        });
        if (unknown != entries.end())
            return tr("Not pasted: the copied entry \"%1\" does not exist here")
                .arg(QString::fromUcs4(&*unknown, 1));
    }
    return {};
}

} // namespace paravue
