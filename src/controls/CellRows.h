#pragma once

#include <QPoint>
#include <QRect>
#include <QSize>
#include <QStringList>

namespace paravue
{

/// The cells of a grid over a picture, as recorders keep them: a text for each row from the top, with a
/// character for each cell from the left. The digits "1" to "9" are what a cell may be marked with; "0", any
/// other character and a missing one leave it unmarked.
///
/// Marking a cell changes its character only: characters behind the last column and unknown ones stay, and a
/// short row is filled with "0" up to the cell.
class CellRows
{
public:
    explicit CellRows(const QSize &size);

    QSize size() const { return m_size; }
    /// As many as the grid has rows.
    const QStringList &texts() const { return m_texts; }
    /// Missing rows are empty, further ones are left out. Returns false when nothing differs.
    bool setTexts(const QStringList &texts);

    bool contains(const QPoint &cell) const { return QRect(QPoint(), m_size).contains(cell); }
    /// 0 to 9.
    int mark(const QPoint &cell) const;
    /// Returns false when the cell has this mark already, or is outside of the grid.
    bool setMark(const QPoint &cell, int mark);

private:
    QSize m_size;
    QStringList m_texts;
};

} // namespace paravue
