#include "ui/page/SeparatorItem.h"

#include <QGridLayout>

namespace paravue
{

void SeparatorItem::setGeometry(const QRect &rect)
{
    QRect line = rect;
    if (m_grid) {
        // The columns have their places by now. Mirrored for another direction of writing, all of them
        // together are the same rectangle.
        line.setLeft(m_grid->cellRect(m_row, 0).left());
        line.setRight(m_grid->cellRect(m_row, m_grid->columnCount() - 1).right());
    }
    ControlItem::setGeometry(line);
}

} // namespace paravue
