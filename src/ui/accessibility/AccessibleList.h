#pragma once

#include "ui/accessibility/AccessibleControl.h"

#include <QHash>

class QTreeView;

namespace paravue
{

/// A list of rows as screen readers see it: a table of cells below a row of column headers, under the name of
/// the control. Qt's own table would use the widget's unique name.
///
/// Its children are the cells in reading order, headers first: Qt's focus and selection events count them
/// this way.
class AccessibleList : public AccessibleControl, public QAccessibleTableInterface
{
public:
    explicit AccessibleList(QTreeView *list);
    ~AccessibleList() override;

    void *interface_cast(QAccessible::InterfaceType type) override;
    int childCount() const override;
    QAccessibleInterface *child(int index) const override;
    QAccessibleInterface *childAt(int x, int y) const override;
    QAccessibleInterface *focusChild() const override;
    int indexOfChild(const QAccessibleInterface *child) const override;

    QAccessibleInterface *caption() const override { return nullptr; }
    QAccessibleInterface *summary() const override { return nullptr; }
    QAccessibleInterface *cellAt(int row, int column) const override;
    int columnCount() const override;
    int rowCount() const override;
    QString columnDescription(int column) const override;
    QString rowDescription(int) const override { return {}; }

    int selectedCellCount() const override;
    int selectedColumnCount() const override { return 0; }
    int selectedRowCount() const override;
    QList<QAccessibleInterface *> selectedCells() const override;
    QList<int> selectedColumns() const override { return {}; }
    QList<int> selectedRows() const override;
    bool isColumnSelected(int) const override { return false; }
    bool isRowSelected(int row) const override;
    bool selectRow(int row) override;
    bool selectColumn(int) override { return false; }
    bool unselectRow(int row) override;
    bool unselectColumn(int) override { return false; }
    void modelChange(QAccessibleTableModelChangeEvent *event) override;

private:
    int headerRows() const;
    void forgetCells();

    QTreeView *m_list;
    mutable QHash<int, QAccessible::Id> m_cells; ///< by child index; made when they are asked for
};

} // namespace paravue
