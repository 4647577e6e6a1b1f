#pragma once

#include <QLayoutItem>

namespace paravue
{

/// A layout item for widgets that are as wide or high as their cell by nature, such as lines and lists: the
/// item has the alignment of its cell like any other, but in the given directions the widget fills the cell.
/// What fills one direction only, a line under a form for example, takes the room there is but asks for none.
class GridFillItem : public QWidgetItem
{
public:
    GridFillItem(QWidget *widget, Qt::Orientations fills);

    void setGeometry(const QRect &rect) override;
    Qt::Orientations expandingDirections() const override;

private:
    Qt::Orientations m_fills;
};

} // namespace paravue
