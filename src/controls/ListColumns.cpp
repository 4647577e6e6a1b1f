#include "controls/ListColumns.h"

#include <QHeaderView>
#include <QTreeWidget>

namespace paravue
{

void setColumnWidths(QTreeWidget &list, std::span<const int> widths)
{
    QHeaderView *header = list.header();
    for (int column = 0; column < int(widths.size()); ++column)
        header->resizeSection(column, std::max(widths[column], header->sectionSizeHint(column)));
}

} // namespace paravue
