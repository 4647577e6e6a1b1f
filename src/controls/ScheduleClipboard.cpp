#include "controls/ScheduleClipboard.h"

#include "controls/EditClipboard.h"
#include "controls/ScheduleTexts.h"
#include "controls/WeekPlan.h"

namespace paravue
{
namespace
{

const QLatin1String DaysMimeType("application/x-paravue-days");

} // namespace

void copyDays(const WeekPlan &plan, int first, int last, const ScheduleKinds &kinds, const QStringList &names)
{
    QStringList lines;
    QStringList readable;
    for (int day = first; day <= last; ++day) {
        lines.append(QString::fromStdU32String(plan.entriesOf(day)));
        readable.append(ScheduleTexts::day(plan, day, kinds, names));
    }
    copyLines(DaysMimeType, lines, readable);
}

QList<std::u32string> copiedDays()
{
    QList<std::u32string> days;
    for (const QString &line : copiedLines(DaysMimeType)) {
        const std::u32string entries = line.toStdU32String();
        const size_t slots = entries.size() / WeekPlan::Hours;
        if (entries.size() % WeekPlan::Hours != 0 || slots > WeekPlan::MostSlotsPerHour ||
            !WeekPlan::isSlotsPerHour(int(slots)) || days.size() == WeekPlan::Days)
            return {};
        days.append(entries);
    }
    return days;
}

} // namespace paravue
