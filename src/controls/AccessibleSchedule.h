#pragma once

namespace paravue
{

class ScheduleGrid;

/// Screen readers get a schedule as a table with the name of its control and the current slot as its value.
/// May be called more than once.
void installAccessibleSchedule();
/// Tells screen readers that the value is another one.
void announceSchedule(ScheduleGrid &grid);

} // namespace paravue
