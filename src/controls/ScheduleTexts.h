#pragma once

#include "controls/ScheduleKinds.h"

#include <QCoreApplication>
#include <QStringList>

namespace paravue
{

class WeekPlan;
struct PlanCell;
struct PlanRange;

/// What is planned, in words. \a names are those of the days, from Monday.
class ScheduleTexts
{
    Q_DECLARE_TR_FUNCTIONS(paravue::ScheduleTexts)

public:
    /// "Tue, 8:00 to 8:30: Continuous".
    static QString cell(const WeekPlan &plan, const PlanCell &cell, const ScheduleKinds &kinds,
                        const QStringList &names);
    /// "Tue: 8:00 to 18:00 Continuous, 22:00 to 24:00 On alarm".
    static QString day(const WeekPlan &plan, int day, const ScheduleKinds &kinds, const QStringList &names);
    /// "not understood (length 12)".
    static QString notUnderstood(const WeekPlan &plan, int day);

private:
    static QString kindName(const ScheduleKinds &kinds, char32_t entry);
    static QString time(const WeekPlan &plan, int slot);
};

} // namespace paravue
