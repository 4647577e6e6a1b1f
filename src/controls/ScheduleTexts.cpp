#include "controls/ScheduleTexts.h"

#include "controls/WeekPlan.h"

namespace paravue
{

QString ScheduleTexts::cell(const WeekPlan &plan, const PlanCell &cell, const ScheduleKinds &kinds,
                            const QStringList &names)
{
    const QString name = names.value(cell.day);
    if (!plan.isUnderstood(cell.day))
        return tr("%1: %2").arg(name, notUnderstood(plan, cell.day));
    return tr("%1, %2 to %3: %4")
        .arg(name, time(plan, cell.slot), time(plan, cell.slot + 1), kindName(kinds, plan.at(cell)));
}

QString ScheduleTexts::day(const WeekPlan &plan, int day, const ScheduleKinds &kinds,
                           const QStringList &names)
{
    QStringList runs;
    for (const PlanRange &run : plan.runsOf(day)) {
        if (const char32_t entry = plan.at(run.first); entry != plan.blank())
            runs.append(
                tr("%1 to %2 %3")
                    .arg(time(plan, run.first.slot), time(plan, run.last.slot + 1), kindName(kinds, entry)));
    }
    const QString nothing = kindName(kinds, plan.blank());
    return tr("%1: %2").arg(names.value(day), runs.isEmpty() ? nothing : runs.join(QStringLiteral(", ")));
}

QString ScheduleTexts::notUnderstood(const WeekPlan &plan, int day)
{
    return tr("not understood (length %1)").arg(QString::number(plan.length(day)));
}

QString ScheduleTexts::kindName(const ScheduleKinds &kinds, char32_t entry)
{
    const int number = kindNumber(kinds, entry);
    return number == UnknownKind ? tr("unknown (%1)").arg(QString::fromUcs4(&entry, 1)) : kinds[number].name;
}

QString ScheduleTexts::time(const WeekPlan &plan, int slot)
{
    const int minutes = slot * 60 / plan.slotsPerHour();
    return QStringLiteral("%1:%2").arg(minutes / 60).arg(minutes % 60, 2, 10, QLatin1Char('0'));
}

} // namespace paravue
