#pragma once

#include <QDomElement>
#include <QHash>
#include <QList>
#include <QString>

#include <limits>
#include <utility>
#include <vector>

namespace paravue
{

class ElementAttributes;

/// The cells of a grid that an item takes.
struct CellPlace {
    int row = 0;
    int column = 0;
    int rowSpan = 1; ///< -1: up to the last row, and so for columns
    int columnSpan = 1;

    static CellPlace of(const ElementAttributes &item);
    int columnEnd() const { return columnSpan < 0 ? std::numeric_limits<int>::max() : column + columnSpan; }
};

/// An item of a grid.
struct DescribedCell {
    QDomElement element;
    CellPlace place;
    QString type;

    bool isLabel() const { return type == QLatin1StringView("label"); }
    bool isLine() const;
    /// A label that shows a value and nothing else is no caption of what stands beside it.
    bool showsOnlyAValue() const;
};

/// The cells of one grid, as a user sees them.
class DescribedGrid
{
public:
    explicit DescribedGrid(const QDomElement &item);

    const std::vector<DescribedCell> &cells() const { return m_cells; }
    /// The label of the heading above \a cell; null without one.
    QDomElement heading(const DescribedCell &cell) const;
    /// The label left of \a cell, or above it. A label has none above it, which would be that of another
    /// value.
    QDomElement labelOf(const DescribedCell &cell) const;

private:
    /// What a heading is for: the columns from the one to the other, below its row.
    struct Heading {
        int row;
        int column;
        int columnEnd;
        QDomElement label;
    };

    QList<int> cellsIn(int row, const DescribedCell &line) const;
    void addHeadings(const DescribedCell &line);

    std::vector<DescribedCell> m_cells;
    QHash<std::pair<int, int>, QDomElement> m_rightOf; ///< labels by the place beside them
    QHash<std::pair<int, int>, QDomElement> m_below;
    QHash<int, QList<int>> m_rows;
    std::vector<Heading> m_headings;
};

} // namespace paravue
