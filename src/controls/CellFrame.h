#pragma once

#include <QPoint>
#include <QRect>
#include <QSize>

#include <optional>

class QKeyEvent;

namespace paravue
{

/// The rectangle of cells that is selected in a grid, from an anchor to the current cell. Cells are counted
/// from 0, from the left and from the top.
class CellFrame
{
public:
    /// Cells outside of the grid stand for the nearest ones inside.
    explicit CellFrame(const QSize &grid, const QPoint &anchor = {}, const QPoint &current = {});

    QPoint anchor() const { return m_anchor; }
    QPoint current() const { return m_current; }
    QRect cells() const { return QRect(m_anchor, m_anchor) | QRect(m_current, m_current); }
    QPoint lastCell() const { return {m_grid.width() - 1, m_grid.height() - 1}; }

    /// The frame after a key: arrows go to the next cell, Home and End along the row (with Ctrl: to the
    /// corners), Page Up and Page Down along the column. With Shift the anchor stays. Nothing for other keys.
    std::optional<CellFrame> movedBy(const QKeyEvent &event,
                                     Qt::LayoutDirection direction = Qt::LeftToRight) const;

private:
    QSize m_grid;
    QPoint m_anchor;
    QPoint m_current;
};

/// One step to where an arrow key points; null for other keys.
QPoint arrowStep(int key);

} // namespace paravue
