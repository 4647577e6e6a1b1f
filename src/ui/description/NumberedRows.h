#pragma once

#include <QDomElement>
#include <QList>
#include <QSize>
#include <QStringList>

/// The elements of controls that keep a text for each of their rows: week schedules, and grids of cells over
/// a picture. What they say about these texts is the same for the controls and for programs without a screen.
namespace paravue
{

inline constexpr int DaysOfSchedule = 7;
/// How many kinds a schedule can show.
inline constexpr int MostKindsOfSchedule = 8;
inline constexpr int UsualAlarmZones = 4;
inline constexpr int MostAlarmZones = 9;

/// The addresses of the days from Monday, with the default values that the keys may carry: those of seven
/// keys, or, with fewer, numbers from 0 behind the first one (usually DAY0, see numberedAddresses()). Empty
/// without a key.
QStringList dayAddresses(const QDomElement &schedule);

/// What can be planned: the children "kind" whose "value" is one character; empty for the usual kinds, 0
/// to 3.
QList<QDomElement> scheduleKinds(const QDomElement &schedule);

/// The columns and rows of a grid of cells, "ctrlColumns" and "ctrlRows"; 16 by 12 when absent.
QSize cellGridSize(const QDomElement &grid);

/// The addresses of \a rows rows from the top: numbers from 0 behind the first key, usually ROW0.
QStringList rowAddresses(const QDomElement &grid, int rows);

} // namespace paravue
