#pragma once

#include "ui/page/ControlItem.h"

class QGridLayout;

namespace paravue
{

/// The layout item of a horizontal line. In a row of its own it goes across all columns of its grid; the grid
/// has it in the cell of the description.
class SeparatorItem : public ControlItem
{
public:
    SeparatorItem(QWidget *line, int row) : ControlItem(line, Qt::Horizontal), m_row(row) {}

    int row() const { return m_row; }
    /// To be called when nothing else stands in the row of the line. \a grid owns the item.
    void crossGrid(const QGridLayout &grid) { m_grid = &grid; }
    void setGeometry(const QRect &rect) override;

private:
    const int m_row;
    const QGridLayout *m_grid = nullptr;
};

} // namespace paravue
