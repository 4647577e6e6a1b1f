#include "controls/CellFrame.h"

#include <QKeyEvent>

#include <algorithm>

namespace paravue
{
namespace
{

QPoint nearestIn(const QSize &grid, const QPoint &cell)
{
    return {std::clamp(cell.x(), 0, grid.width() - 1), std::clamp(cell.y(), 0, grid.height() - 1)};
}

} // namespace

CellFrame::CellFrame(const QSize &grid, const QPoint &anchor, const QPoint &current)
    : m_grid(grid), m_anchor(nearestIn(grid, anchor)), m_current(nearestIn(grid, current))
{
}

std::optional<CellFrame> CellFrame::movedBy(const QKeyEvent &event, Qt::LayoutDirection direction) const
{
    const bool toCorner = event.modifiers() & Qt::ControlModifier;
    QPoint step = arrowStep(event.key());
    if (direction == Qt::RightToLeft)
        step.setX(-step.x());
    QPoint cell = m_current + step;
    switch (event.key()) {
    case Qt::Key_Home:
        cell = {0, toCorner ? 0 : cell.y()};
        break;
    case Qt::Key_End:
        cell = {lastCell().x(), toCorner ? lastCell().y() : cell.y()};
        break;
    case Qt::Key_PageUp:
        cell.setY(0);
        break;
    case Qt::Key_PageDown:
        cell.setY(lastCell().y());
        break;
    default:
        if (step.isNull())
            return {};
    }
    const bool stretches = event.modifiers() & Qt::ShiftModifier;
    return CellFrame(m_grid, stretches ? m_anchor : cell, cell);
}

QPoint arrowStep(int key)
{
    switch (key) {
    case Qt::Key_Left:
        return {-1, 0};
    case Qt::Key_Right:
        return {1, 0};
    case Qt::Key_Up:
        return {0, -1};
    case Qt::Key_Down:
        return {0, 1};
    default:
        return {};
    }
}

} // namespace paravue
