#include "controls/ListColumns.h"

#include <QHeaderView>
#include <QStyledItemDelegate>
#include <QTreeWidget>

namespace paravue
{

namespace
{

/// Rows with room above and below their text.
class RoomyDelegate : public QStyledItemDelegate
{
public:
    using QStyledItemDelegate::QStyledItemDelegate;

    QSize sizeHint(const QStyleOptionViewItem &option, const QModelIndex &index) const override
    {
        return QStyledItemDelegate::sizeHint(option, index) + QSize(0, 8);
    }
};

} // namespace

void setRoomyRows(QTreeWidget &list)
{
    list.setItemDelegate(new RoomyDelegate(&list));
}

void setColumnWidths(QTreeWidget &list, std::span<const int> widths)
{
    QHeaderView *header = list.header();
    for (int column = 0; column < int(widths.size()); ++column)
        header->resizeSection(column, std::max(widths[column], header->sectionSizeHint(column)));
}

} // namespace paravue
