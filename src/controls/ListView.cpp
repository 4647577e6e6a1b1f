#include "controls/ListView.h"

#include "controls/ListColumns.h"
#include "controls/ReadableColors.h"

#include <QHeaderView>
#include <QHelpEvent>
#include <QPainter>
#include <QTextDocument>
#include <QToolTip>

#include <memory>

namespace paravue
{

ListView::ListView(QWidget *parent) : QTreeWidget(parent)
{
    setRoomyRows(*this);
    setRootIsDecorated(false);
    setUniformRowHeights(true);
    setAllColumnsShowFocus(true);
    setEditTriggers(QAbstractItemView::NoEditTriggers);
}

void ListView::setColumns(const QStringList &headers, const QList<int> &widths)
{
    setColumnCount(qMax(1, int(headers.size())));
    setHeaderLabels(headers);
    setHeaderHidden(headers.isEmpty());
    for (int column = 0; column < widths.size(); ++column) {
        if (widths[column] > 0)
            setColumnWidth(column, widths[column]);
        makeRoomForHeader(column);
    }
}

/// Headers, unlike cells, have no tool tips, and Qt cuts them.
void ListView::makeRoomForHeader(int column)
{
    const int needed = header()->sectionSizeHint(column);
    if (columnWidth(column) < needed)
        setColumnWidth(column, needed);
}

bool ListView::setHeaders(const QStringList &headers)
{
    bool changed = false;
    for (int column = 0; column < qMin(columnCount(), int(headers.size())); ++column) {
        if (headerItem()->text(column) == headers[column])
            continue;
        headerItem()->setText(column, headers[column]);
        makeRoomForHeader(column);
        changed = true;
    }
    return changed;
}

void ListView::setPlaceholder(const QString &text)
{
    m_placeholder = text;
    viewport()->update();
}

bool ListView::setRows(const QList<QStringList> &rows)
{
    bool changed = false;
    while (topLevelItemCount() > rows.size()) {
        const std::unique_ptr<QTreeWidgetItem> removed(takeTopLevelItem(topLevelItemCount() - 1));
        changed = true;
    }
    for (int row = 0; row < topLevelItemCount(); ++row) {
        QTreeWidgetItem *item = topLevelItem(row);
        for (int column = 0; column < columnCount(); ++column) {
            const QString text = rows[row].value(column);
            if (item->text(column) == text)
                continue;
            item->setText(column, text);
            changed = true;
        }
    }
    QList<QTreeWidgetItem *> added;
    for (int row = topLevelItemCount(); row < rows.size(); ++row)
        added.append(new QTreeWidgetItem(rows[row].mid(0, columnCount())));
    addTopLevelItems(added);
    return changed || !added.isEmpty();
}

bool ListView::viewportEvent(QEvent *event)
{
    if (event->type() == QEvent::ToolTip) {
        const auto *help = static_cast<QHelpEvent *>(event);
        const QModelIndex cell = indexAt(help->pos());
        if (cell.isValid() && sizeHintForIndex(cell).width() > visualRect(cell).width()) {
            QToolTip::showText(help->globalPos(), Qt::convertFromPlainText(cell.data().toString()),
                               viewport());
            return true;
        }
    }
    return QTreeWidget::viewportEvent(event);
}

void ListView::paintEvent(QPaintEvent *event)
{
    QTreeWidget::paintEvent(event);
    if (topLevelItemCount() > 0 || m_placeholder.isEmpty())
        return;
    QPainter painter(viewport());
    // QPalette::PlaceholderText is too faint on a light background.
    painter.setPen(
        paravue::mixedColor(palette().color(QPalette::Base), palette().color(QPalette::Text), 0.7));
    painter.drawText(viewport()->rect().adjusted(8, 8, -8, -8), Qt::AlignCenter | Qt::TextWordWrap,
                     m_placeholder);
}

} // namespace paravue
