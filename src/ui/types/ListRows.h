#pragma once

#include "controls/SortableListView.h"
#include "ui/base/UiLimits.h"
#include "ui/binding/ControlContext.h"
#include "ui/binding/ControlTable.h"

#include <QList>
#include <QString>
#include <QStringList>

#include <algorithm>

/// Shared by the adapters of lists.
namespace paravue
{

/// How many of \a stored rows a list shows. Tells the user when that is less than there are.
int shownRows(ControlContext &context, int stored);

/// The visible captions of the columns.
QStringList columnHeaders(ControlContext &context, const Control &control);

/// Where the rows of a list that knows its own keys stand in the store: the address that all of them begin
/// with, the key of their number, and the key that tells whether they are numbered from 0 or from 1.
struct RowKeys {
    QString prefix; ///< file/section
    QString count;
    QString name;

    int first(OrbSetup &store) const;
};

/// Gives a new \a list the columns of its description or, without any, \a usual ones.
void addColumns(SortableListView &list, ControlContext &context, const Control &control,
                const QStringList &usual);

/// The states of a list that the user picks a row of.
QStringList rowStates();
QString rowState(const SortableListView &list);

/// Reads the rows of a list, each of them by \a read with \a fields values at most. Sets whether the list
/// shows all rows.
template <class Row, class Read>
QList<Row> storedRows(SortableListView &list, ControlContext &context, const Control &control,
                      const RowKeys &keys, int fields, Read read)
{
    list.setComplete(!keys.prefix.isEmpty());
    if (keys.prefix.isEmpty())
        return {};
    const auto value = [&](const QString &key) { return context.value(control, keys.prefix + key); };
    const int stored = value(keys.count).toInt();
    const int count = shownRows(context, stored);
    list.setComplete(stored <= count);
    const int first = value(keys.name + u'0').isEmpty() ? 1 : 0;
    QList<Row> rows;
    rows.reserve(count);
    for (int row = 0; row < count; ++row) {
        if (!context.take(ControlContext::ListCells, std::max(fields, list.columnCount()))) {
            list.setComplete(false);
            break;
        }
        rows.append(read(value, QString::number(first + row)));
    }
    return rows;
}

} // namespace paravue
