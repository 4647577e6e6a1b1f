#pragma once

#include "controls/ScheduleKinds.h"

#include <QList>
#include <QStringList>

#include <string>

namespace paravue
{

class WeekPlan;

/// Puts the plans of the days from \a first to \a last onto the clipboard: a line for each with a character
/// for each slot, and a text that has the times in words.
void copyDays(const WeekPlan &plan, int first, int last, const ScheduleKinds &kinds,
              const QStringList &names);

/// The plans of copied days, at most of a week, all with 24, 48 or 96 entries, also from a text with such
/// lines; empty when the clipboard has something else.
QList<std::u32string> copiedDays();

} // namespace paravue
