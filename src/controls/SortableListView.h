#pragma once

#include "controls/ListView.h"

namespace paravue
{

/// A list with the name of each row in the first column. The user selects one row, and sorts by a click on a
/// header; the third click restores the order of the configuration.
///
/// A row is identified by its place in the configuration, whatever order is shown.
///
/// Keys: arrows, Page Up and Down, Home, End and the first letters of a name select a row; Enter (or a double
/// click) and Delete are reported by lastChange().
class SortableListView : public ListView
{
    Q_OBJECT

public:
    /// What valueChanged() stands for: another row (or none) is selected, the rows were edited, the user
    /// wants to open the selected row, or to remove it.
    enum Change { Selected, Edited, Activated, DeletePressed };

    explicit SortableListView(QWidget *parent = nullptr);

    /// Emits nothing. A row with the name of the selected one is selected afterwards, if there is one.
    bool setRows(const QList<QStringList> &rows) override;

    /// The selected row, or -1.
    int selectedRow() const;

    Change lastChange() const { return m_lastChange; }

    /// False when there are more rows than are shown; such a list must not be written back.
    bool isComplete() const { return m_isComplete; }
    void setComplete(bool complete) { m_isComplete = complete; }

Q_SIGNALS:
    void valueChanged();

protected:
    void keyPressEvent(QKeyEvent *event) override;

    /// Emits valueChanged(), during which lastChange() is \a change. A receiver may even delete the list.
    void notify(Change change);
    /// Shows other rows and selects the row \a selected, or none for -1. Emits nothing.
    void showRows(const QList<QStringList> &rows, int selected);
    /// The row that is shown below \a row, or else above it, or -1.
    int neighbour(int row) const;
    /// A number to sort a cell by instead of its text; an invalid one leaves it to the text.
    virtual QVariant sortKey(int row, int column) const;

private:
    QTreeWidgetItem *item(int row) const;
    void populate(int selected);

    QList<QStringList> m_rows; ///< in the order of the configuration
    Change m_lastChange = Selected;
    bool m_isComplete = true;
    bool m_isPopulating = false;
};

} // namespace paravue
