#include "ui/accessibility/AccessibleList.h"

#include <QHeaderView>
#include <QTreeView>

#include <utility>

namespace paravue
{
namespace
{

/// One cell of a list, or the header of one of its columns. It is bound to the position, not to the row that
/// is there now.
class AccessibleCell : public QAccessibleInterface,
                       public QAccessibleTableCellInterface,
                       public QAccessibleActionInterface
{
public:
    static constexpr int HeaderRow = -1;

    AccessibleCell(QTreeView *list, int row, int column) : m_list(list), m_row(row), m_column(column) {}

    bool isValid() const override { return m_list && (isHeader() || index().isValid()); }
    QObject *object() const override { return nullptr; }
    QWindow *window() const override { return table()->window(); }
    QAccessibleInterface *parent() const override { return table(); }
    QAccessibleInterface *child(int) const override { return nullptr; }
    QAccessibleInterface *childAt(int, int) const override { return nullptr; }
    int childCount() const override { return 0; }
    int indexOfChild(const QAccessibleInterface *) const override { return -1; }
    void setText(QAccessible::Text, const QString &) override {}

    QAccessible::Role role() const override
    {
        return isHeader() ? QAccessible::ColumnHeader : QAccessible::Cell;
    }

    QString text(QAccessible::Text kind) const override
    {
        if (!isValid() || kind != QAccessible::Name)
            return {};
        return isHeader() ? m_list->model()->headerData(m_column, Qt::Horizontal).toString()
                          : index().data().toString();
    }

    QRect rect() const override
    {
        if (!isValid())
            return {};
        const QHeaderView &header = *m_list->header();
        const QRect place = isHeader() ? QRect(header.sectionViewportPosition(m_column), 0,
                                               header.sectionSize(m_column), header.height())
                                       : m_list->visualRect(index());
        const QWidget *ground = isHeader() ? header.viewport() : m_list->viewport();
        return {ground->mapToGlobal(place.topLeft()), place.size()};
    }

    QAccessible::State state() const override
    {
        QAccessible::State state;
        state.invalid = !isValid();
        state.disabled = !m_list || !m_list->isEnabled();
        state.selectable = isSelectable();
        state.focusable = isSelectable();
        state.selected = isSelected();
        state.focused = isSelectable() && m_list->hasFocus() && m_list->currentIndex().row() == m_row &&
                        m_list->currentIndex().column() == m_column;
        state.offscreen = isValid() && !isHeader() && !m_list->viewport()->rect().intersects(visualRect());
        return state;
    }

    void *interface_cast(QAccessible::InterfaceType type) override
    {
        if (type == QAccessible::TableCellInterface)
            return static_cast<QAccessibleTableCellInterface *>(this);
        if (type == QAccessible::ActionInterface)
            return static_cast<QAccessibleActionInterface *>(this);
        return nullptr;
    }

    bool isSelected() const override
    {
        return isSelectable() && m_list->selectionModel()->isSelected(index());
    }
    QList<QAccessibleInterface *> columnHeaderCells() const override
    {
        QAccessibleInterface *list = table();
        const bool hasHeader = !isHeader() && !m_list->isHeaderHidden();
        return hasHeader ? QList<QAccessibleInterface *>{list->child(m_column)}
                         : QList<QAccessibleInterface *>{};
    }
    QList<QAccessibleInterface *> rowHeaderCells() const override { return {}; }
    int columnIndex() const override { return m_column; }
    int rowIndex() const override { return m_row; }
    int columnExtent() const override { return 1; }
    int rowExtent() const override { return 1; }
    QAccessibleInterface *table() const override { return QAccessible::queryAccessibleInterface(m_list); }

    QStringList actionNames() const override
    {
        return isSelectable() && m_list->isEnabled() ? QStringList{pressAction()} : QStringList{};
    }
    void doAction(const QString &name) override
    {
        if (actionNames().contains(name))
            m_list->setCurrentIndex(index());
    }
    QStringList keyBindingsForAction(const QString &) const override { return {}; }

private:
    bool isHeader() const { return m_row == HeaderRow; }
    bool isSelectable() const { return isValid() && !isHeader(); }
    QModelIndex index() const { return m_list->model()->index(m_row, m_column); }
    QRect visualRect() const { return m_list->visualRect(index()); }

    QTreeView *m_list;
    int m_row;
    int m_column;
};

} // namespace

AccessibleList::AccessibleList(QTreeView *list) : AccessibleControl(list, QAccessible::Table), m_list(list) {}

AccessibleList::~AccessibleList()
{
    forgetCells();
}

void AccessibleList::forgetCells()
{
    for (const QAccessible::Id cell : std::exchange(m_cells, {}))
        QAccessible::deleteAccessibleInterface(cell);
}

void *AccessibleList::interface_cast(QAccessible::InterfaceType type)
{
    if (type == QAccessible::TableInterface)
        return static_cast<QAccessibleTableInterface *>(this);
    return AccessibleControl::interface_cast(type);
}

int AccessibleList::headerRows() const
{
    return m_list->isHeaderHidden() ? 0 : 1;
}

int AccessibleList::childCount() const
{
    return (headerRows() + rowCount()) * columnCount();
}

QAccessibleInterface *AccessibleList::child(int index) const
{
    if (index < 0 || index >= childCount())
        return nullptr;
    auto found = m_cells.constFind(index);
    if (found == m_cells.cend()) {
        const int row = index / columnCount() - headerRows();
        auto *cell = new AccessibleCell(m_list, row, index % columnCount());
        found = m_cells.insert(index, QAccessible::registerAccessibleInterface(cell));
    }
    return QAccessible::accessibleInterface(*found);
}

QAccessibleInterface *AccessibleList::childAt(int x, int y) const
{
    const QPoint point(x, y);
    const QHeaderView &header = *m_list->header();
    const QPoint inHeader = header.viewport()->mapFromGlobal(point);
    if (headerRows() > 0 && header.viewport()->rect().contains(inHeader))
        return child(header.logicalIndexAt(inHeader));
    const QPoint inside = m_list->viewport()->mapFromGlobal(point);
    const QModelIndex index =
        m_list->viewport()->rect().contains(inside) ? m_list->indexAt(inside) : QModelIndex();
    return cellAt(index.row(), index.column());
}

QAccessibleInterface *AccessibleList::focusChild() const
{
    const QModelIndex current = m_list->currentIndex();
    return cellAt(current.row(), current.column());
}

int AccessibleList::indexOfChild(const QAccessibleInterface *child) const
{
    const auto *cell = dynamic_cast<const AccessibleCell *>(child);
    return cell ? (cell->rowIndex() + headerRows()) * columnCount() + cell->columnIndex() : -1;
}

QAccessibleInterface *AccessibleList::cellAt(int row, int column) const
{
    if (row < 0 || column < 0 || column >= columnCount())
        return nullptr;
    return child((row + headerRows()) * columnCount() + column);
}

int AccessibleList::columnCount() const
{
    return m_list->model()->columnCount();
}

int AccessibleList::rowCount() const
{
    return m_list->model()->rowCount();
}

QString AccessibleList::columnDescription(int column) const
{
    return m_list->model()->headerData(column, Qt::Horizontal).toString();
}

int AccessibleList::selectedCellCount() const
{
    return selectedRowCount() * columnCount();
}

int AccessibleList::selectedRowCount() const
{
    return int(m_list->selectionModel()->selectedRows().size());
}

QList<QAccessibleInterface *> AccessibleList::selectedCells() const
{
    QList<QAccessibleInterface *> cells;
    for (const int row : selectedRows()) {
        for (int column = 0; column < columnCount(); ++column)
            cells.append(cellAt(row, column));
    }
    return cells;
}

QList<int> AccessibleList::selectedRows() const
{
    QList<int> rows;
    for (const QModelIndex &index : m_list->selectionModel()->selectedRows())
        rows.append(index.row());
    return rows;
}

bool AccessibleList::isRowSelected(int row) const
{
    return m_list->selectionModel()->isRowSelected(row);
}

bool AccessibleList::selectRow(int row)
{
    const QModelIndex index = m_list->model()->index(row, 0);
    if (!index.isValid() || !m_list->isEnabled())
        return false;
    m_list->setCurrentIndex(index);
    return true;
}

bool AccessibleList::unselectRow(int row)
{
    if (!isRowSelected(row) || !m_list->isEnabled())
        return false;
    m_list->selectionModel()->select(m_list->model()->index(row, 0),
                                     QItemSelectionModel::Deselect | QItemSelectionModel::Rows);
    return true;
}

void AccessibleList::modelChange(QAccessibleTableModelChangeEvent *)
{
    forgetCells();
}

} // namespace paravue
