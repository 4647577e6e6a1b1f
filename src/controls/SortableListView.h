#pragma once

#include "controls/ListView.h"

namespace paravue
{

/// A list of things that have a name, which stands in the first column. The user picks one of them, and may
/// sort them by a click on a header; the third click brings the order of the configuration back.
///
/// A row is known by its place in the configuration, whatever order is shown.
///
/// Keys: arrows, Page Up and Down, Home, End and the first letters of a name pick a row; Enter (or a double
/// click) and Delete ask for something to be done with it, see lastChange().
class SortableListView : public ListView
{
    Q_OBJECT

public:
    /// What valueChanged() tells of: another row is picked (or none), the rows were edited, the picked row is
    /// to be opened, or to be removed.
    enum Change { Selected, Edited, Activated, DeletePressed };

    explicit SortableListView(QWidget *parent = nullptr);

    /// Emits nothing. The row with the name of the picked one is picked afterwards, if there is one.
    bool setRows(const QList<QStringList> &rows) override;

    /// The picked row, or -1.
    int selectedRow() const;

    Change lastChange() const { return m_lastChange; }

    /// False when there are more rows than are shown; such a list must not be written back.
    bool isComplete() const { return m_isComplete; }
    void setComplete(bool complete) { m_isComplete = complete; }

Q_SIGNALS:
    void valueChanged();

protected:
    void keyPressEvent(QKeyEvent *event) override;

    /// Tells what has happened. A receiver may do anything, even delete the list.
    void notify(Change change);
    /// Shows other rows and picks \a selected; -1 picks none. Emits nothing.
    void showRows(const QList<QStringList> &rows, int selected);
    /// The row that stands below \a row at present, or else above it, or -1.
    int neighbour(int row) const;
    /// A number to sort a cell by in place of its text; invalid: the text counts.
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
