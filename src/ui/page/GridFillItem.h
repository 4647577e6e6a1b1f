#pragma once

#include <QLayoutItem>

namespace paravue
{

/// A layout item for widgets that fill their cell, such as lines and lists: the item has the alignment of its
/// cell, but in the given directions the widget takes the whole cell. A widget that fills one direction only,
/// such as a line under a form, does not make the grid grow.
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
