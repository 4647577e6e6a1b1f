#pragma once

#include <QtGlobal>

/// How large a description may make things. A recorder is never trusted: a grid row of 20,000,000 takes a
/// gigabyte and the largest integer crashes the layout. No real window comes near these bounds.
namespace paravue::limits
{

inline constexpr int GridIndex = 1000;                ///< rows and columns of a grid are below this
inline constexpr int Stretch = 10'000;                ///< stretch factor of a row or column
inline constexpr int Pixels = 4096;                   ///< any width or height: a picture this large is 64 MiB
inline constexpr int ListRows = 10'000;               ///< rows of a list
inline constexpr int ListColumns = 64;                ///< columns of a list
inline constexpr qsizetype TextReplacements = 10'000; ///< references in one visible text
inline constexpr qsizetype TextLength = 1024 * 1024;  ///< characters of one visible text
inline constexpr int CellGridLines = 128;             ///< columns or rows of cells over a picture
inline constexpr int CalibrationPoints = 64;          ///< of one control
// Of everything that one operation shows, a build or a change: many things within the limits above are too
// much together.
inline constexpr qsizetype TotalText = 4 * 1024 * 1024; ///< characters
inline constexpr qsizetype TotalListCells = 200'000;
inline constexpr qsizetype TotalItems = 12'000; ///< controls, spacers and grids, by what they cost: a second
inline constexpr qsizetype TotalGridLines = 400'000; ///< rows and columns of grids

inline constexpr int ActionDepth = 16;                   ///< actions that call actions
inline constexpr size_t OpenDialogs = 16;                ///< described dialogs at a time
inline constexpr size_t TimeTasks = 1000;                ///< registered at a time
inline constexpr qint64 SettingsText = 16 * 1024 * 1024; ///< bytes of a file that settings are read from
inline constexpr qsizetype ActionWork = 20'000;          ///< elements that one press of a button acts on

} // namespace paravue::limits
