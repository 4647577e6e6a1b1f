#include "controls/SortableListView.h"

#include <QCollator>
#include <QHeaderView>
#include <QKeyEvent>
#include <QPointer>
#include <QScopedValueRollback>
#include <QScrollBar>

#include <algorithm>

namespace paravue
{

namespace
{

constexpr int RowRole = Qt::UserRole;
constexpr int SortRole = Qt::UserRole + 1;

class Row : public QTreeWidgetItem
{
public:
    using QTreeWidgetItem::QTreeWidgetItem;

    bool operator<(const QTreeWidgetItem &other) const override
    {
        const int column = treeWidget() ? treeWidget()->sortColumn() : 0;
        const int order = compare(other, column);
        return order != 0 ? order < 0 : data(0, RowRole).toInt() < other.data(0, RowRole).toInt();
    }

private:
    int compare(const QTreeWidgetItem &other, int column) const
    {
        const QVariant key = data(column, SortRole);
        const QVariant otherKey = other.data(column, SortRole);
        if (key.isValid() && otherKey.isValid())
            return key.toInt() < otherKey.toInt() ? -1 : key.toInt() > otherKey.toInt();
        return collator().compare(text(column), other.text(column));
    }

    /// Compares numbers in a text by their value: version 4.9 comes before 4.10.
    static const QCollator &collator()
    {
        static const QCollator shared = [] {
            // The collation of the C locale has no numeric mode.
            const QLocale user;
            QCollator numeric(user.language() == QLocale::C ? QLocale(QLocale::English) : user);
            numeric.setNumericMode(true);
            numeric.setCaseSensitivity(Qt::CaseInsensitive);
            return numeric;
        }();
        return shared;
    }
};

bool isEnter(const QKeyEvent &event)
{
    return event.key() == Qt::Key_Return || event.key() == Qt::Key_Enter;
}

} // namespace

SortableListView::SortableListView(QWidget *parent) : ListView(parent)
{
    setSelectionMode(SingleSelection);
    header()->setSortIndicatorClearable(true);
    header()->setSortIndicator(-1, Qt::AscendingOrder);
    setSortingEnabled(true);
    connect(header(), &QHeaderView::sortIndicatorChanged, this, [this](int column) {
        if (column < 0)
            populate(selectedRow());
    });
    connect(this, &QTreeWidget::itemSelectionChanged, this, [this] {
        if (!m_isPopulating)
            notify(Selected);
    });
    connect(this, &QTreeWidget::itemDoubleClicked, this, [this] { notify(Activated); });
}

bool SortableListView::setRows(const QList<QStringList> &rows)
{
    if (rows == m_rows)
        return false;
    int selected = selectedRow();
    if (selected >= 0 && rows.value(selected).value(0) != m_rows[selected].value(0)) {
        const QString name = m_rows[selected].value(0);
        const auto found = std::find_if(rows.begin(), rows.end(),
                                        [&](const QStringList &row) { return row.value(0) == name; });
        selected = found == rows.end() ? -1 : int(found - rows.begin());
    }
    showRows(rows, selected);
    return true;
}

void SortableListView::showRows(const QList<QStringList> &rows, int selected)
{
    m_rows = rows;
    populate(selected);
}

void SortableListView::populate(int selected)
{
    const QScopedValueRollback populating(m_isPopulating, true);
    const int position = verticalScrollBar()->value();
    setSortingEnabled(false); // one sort at the end, not one for every row
    clear();
    QList<QTreeWidgetItem *> items;
    for (int row = 0; row < m_rows.size(); ++row) {
        auto *item = new Row(m_rows[row].mid(0, columnCount()));
        item->setData(0, RowRole, row);
        for (int column = 0; column < columnCount(); ++column)
            item->setData(column, SortRole, sortKey(row, column));
        items.append(item);
    }
    addTopLevelItems(items);
    setSortingEnabled(true);
    verticalScrollBar()->setValue(position);
    if (QTreeWidgetItem *item = items.value(selected))
        setCurrentItem(item);
}

int SortableListView::selectedRow() const
{
    const QList<QTreeWidgetItem *> selected = selectedItems();
    return selected.isEmpty() ? -1 : selected.first()->data(0, RowRole).toInt();
}

int SortableListView::neighbour(int row) const
{
    QTreeWidgetItem *shown = item(row);
    const QTreeWidgetItem *next = shown ? itemBelow(shown) : nullptr;
    if (shown && !next)
        next = itemAbove(shown);
    return next ? next->data(0, RowRole).toInt() : -1;
}

QTreeWidgetItem *SortableListView::item(int row) const
{
    for (int i = 0; i < topLevelItemCount(); ++i) {
        if (topLevelItem(i)->data(0, RowRole).toInt() == row)
            return topLevelItem(i);
    }
    return nullptr;
}

QVariant SortableListView::sortKey(int, int) const
{
    return {};
}

void SortableListView::notify(Change change)
{
    const QPointer<SortableListView> self(this);
    m_lastChange = change;
    Q_EMIT valueChanged();
    if (self)
        m_lastChange = Selected;
}

void SortableListView::keyPressEvent(QKeyEvent *event)
{
    const bool hasSelection = selectedRow() >= 0;
    if (hasSelection && (isEnter(*event) || event->key() == Qt::Key_Delete)) {
        event->accept();
        notify(isEnter(*event) ? Activated : DeletePressed);
        return;
    }
    // A list that gets the focus makes its first row the current one without selecting it.
    const QList<int> keysToCurrent{Qt::Key_Up, Qt::Key_Down, Qt::Key_Home, Qt::Key_PageUp};
    if (!hasSelection && currentItem() && keysToCurrent.contains(event->key())) {
        currentItem()->setSelected(true);
        return;
    }
    ListView::keyPressEvent(event);
}

} // namespace paravue
