#include "check/GridOverlap.h"

#include "check/CheckText.h"
#include "check/ProblemList.h"
#include "ui/base/UiLimits.h"
#include "ui/description/ElementAttributes.h"
#include "ui/page/GridCell.h"

#include <algorithm>
#include <bitset>
#include <vector>

namespace paravue
{
namespace
{

using Line = std::bitset<limits::GridIndex>; // which columns of a row are covered

struct Item {
    QDomElement element;
    GridCell cell;
};

std::vector<Item> shownItems(const QDomElement &grid)
{
    const QString tag = QStringLiteral("item");
    std::vector<Item> items;
    for (QDomElement item = grid.firstChildElement(tag); !item.isNull();
         item = item.nextSiblingElement(tag)) {
        const GridCell cell = GridCell::of(ElementAttributes(item));
        const bool isHidden = item.attribute(QStringLiteral("visible")) == QLatin1String("no");
        if (cell.isWithinLimits() && !isHidden)
            items.push_back({item, cell});
    }
    return items;
}

Line columnsOf(const GridCell &cell, int end)
{
    Line columns;
    const int last = cell.columnSpan < 0 ? end : cell.column + cell.columnSpan;
    for (int column = cell.column; column < last; ++column)
        columns.set(column);
    return columns;
}

/// Covers the place of \a cell. Returns whether a part of it was covered before.
bool cover(std::vector<Line> &rows, const GridCell &cell, int columnEnd)
{
    const Line columns = columnsOf(cell, columnEnd);
    const int last = cell.rowSpan < 0 ? int(rows.size()) : cell.row + cell.rowSpan;
    bool wasCovered = false;
    for (int row = cell.row; row < last; ++row) {
        wasCovered |= (rows[row] & columns).any();
        rows[row] |= columns;
    }
    return wasCovered;
}

} // namespace

void checkOverlaps(const QDomElement &grid, ProblemList &problems)
{
    const std::vector<Item> items = shownItems(grid);
    int rowEnd = 0;
    int columnEnd = 0;
    for (const Item &item : items) {
        rowEnd = std::max(rowEnd, item.cell.row + std::max(item.cell.rowSpan, 1));
        columnEnd = std::max(columnEnd, item.cell.column + std::max(item.cell.columnSpan, 1));
    }
    std::vector<Line> rows(rowEnd);
    for (const Item &item : items) {
        if (cover(rows, item.cell, columnEnd))
            problems.warning(item.element,
                             CheckText::tr("Another item of the grid covers this place: row %1, column %2")
                                 .arg(item.cell.row)
                                 .arg(item.cell.column));
    }
}

} // namespace paravue
