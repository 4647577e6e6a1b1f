#include "ui/history/DifferenceRows.h"

#include "changes/SecretKeys.h"

#include <QCoreApplication>
#include <QHeaderView>
#include <QTreeWidget>

namespace paravue::differencerows
{

namespace
{

class RowText
{
    Q_DECLARE_TR_FUNCTIONS(DifferenceRows)
};

constexpr int RowPathRole = Qt::UserRole;
constexpr int CaptionColumnWidth = 250;
constexpr int ValueColumnWidth = 130;

} // namespace

QString shown(const std::optional<QString> &value, bool isSecret)
{
    if (!value)
        return RowText::tr("(none)");
    if (value->isEmpty())
        return QStringLiteral("–");
    return isSecret ? SecretKeys::dots() : value->simplified();
}

void prepare(QTreeWidget &list, const QStringList &columns)
{
    list.setHeaderLabels(columns);
    list.setRootIsDecorated(false);
    list.setUniformRowHeights(true);
    list.setAllColumnsShowFocus(true);
    list.setSelectionMode(QAbstractItemView::ExtendedSelection);
    for (int column = 0; column < columns.size() - 1; ++column)
        list.header()->resizeSection(column, column == 0 ? CaptionColumnWidth : ValueColumnWidth);
}

QTreeWidgetItem *row(const QStringList &texts, const QString &path)
{
    auto *item = new QTreeWidgetItem(texts);
    for (int column = 0; column < texts.size(); ++column)
        item->setToolTip(column, texts[column]);
    item->setData(0, RowPathRole, path);
    return item;
}

QString pathOf(const QTreeWidgetItem &row)
{
    return row.data(0, RowPathRole).toString();
}

} // namespace paravue::differencerows
