#pragma once

namespace paravue
{

class ScheduleGrid;

/// Screen readers get a schedule as a table with the name of its control and the current hour as its value.
/// May be called more than once.
void installAccessibleSchedule();
/// Tells screen readers that the current hour is another one, or has another kind.
void announceSchedule(ScheduleGrid &grid);

} // namespace paravue
