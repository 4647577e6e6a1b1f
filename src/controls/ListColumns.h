#pragma once

#include <span>

class QTreeWidget;

namespace paravue
{

/// Gives the first columns of \a list these widths in pixels, and more to a column whose caption needs it.
void setColumnWidths(QTreeWidget &list, std::span<const int> widths);

/// Rows with room above and below their text, and for boxes to check.
void setRoomyRows(QTreeWidget &list);

} // namespace paravue
