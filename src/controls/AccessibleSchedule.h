#pragma once

namespace paravue
{

class ScheduleGrid;

/// Assistive tools hear a schedule as a table with the name of the control that it is a part of and the
/// current hour as its value. Safe to call again.
void installAccessibleSchedule();
/// The current hour is another one, or has another kind.
void announceSchedule(ScheduleGrid &grid);

} // namespace paravue
