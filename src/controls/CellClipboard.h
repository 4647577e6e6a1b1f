#pragma once

#include <QStringList>

#include <optional>

namespace paravue
{

class CellRows;

/// Puts the marks of all cells onto the clipboard: a line for each row with a digit for each cell, "0" for an
/// unmarked one, and the same as a text with "." for these.
void copyCells(const CellRows &cells);

/// The lines of copied cells, all of the same length, also from a text of this form; none when the clipboard
/// has something else.
std::optional<QStringList> copiedCells();

} // namespace paravue
