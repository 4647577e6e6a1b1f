#include "ui/page/GridFillItem.h"

#include <QWidget>

namespace paravue
{

GridFillItem::GridFillItem(QWidget *widget, Qt::Orientations fills) : QWidgetItem(widget), m_fills(fills) {}

void GridFillItem::setGeometry(const QRect &rect)
{
    const Qt::Alignment asked = alignment();
    Qt::Alignment used = asked;
    if (m_fills & Qt::Horizontal)
        used &= ~Qt::AlignHorizontal_Mask;
    if (m_fills & Qt::Vertical)
        used &= ~Qt::AlignVertical_Mask;
    setAlignment(used);
    QWidgetItem::setGeometry(rect);
    setAlignment(asked);
}

Qt::Orientations GridFillItem::expandingDirections() const
{
    const bool fillsBoth = m_fills == (Qt::Horizontal | Qt::Vertical);
    return isEmpty() || !fillsBoth ? Qt::Orientations() : widget()->sizePolicy().expandingDirections();
}

} // namespace paravue
