#include "ui/types/ListRows.h"

#include "store/OrbSetup.h"
#include "ui/base/WindowText.h"
#include "ui/types/AdapterTexts.h"

namespace paravue
{
namespace
{

const QString selectedState = QStringLiteral("selected");
const QString unselectedState = QStringLiteral("unselected");
const QString activatedState = QStringLiteral("activated"); // Enter, double click
const QString deleteState = QStringLiteral("delete");       // the Delete key

} // namespace

int shownRows(ControlContext &context, int stored)
{
    if (stored > limits::ListRows)
        context.reportOnce(WindowText::tr("A list has %1 rows; only the first %2 are shown")
                               .arg(QString::number(stored), QString::number(limits::ListRows)));
    return std::clamp(stored, 0, limits::ListRows);
}

QStringList columnHeaders(ControlContext &context, const Control &control)
{
    return captions(context, control, QStringLiteral("column"), limits::ListColumns);
}

int RowKeys::first(OrbSetup &store) const
{
    return store.value(prefix + name + u'0').isEmpty() ? 1 : 0;
}

void addColumns(SortableListView &list, ControlContext &context, const Control &control,
                const QStringList &usual)
{
    const QStringList headers = columnHeaders(context, control);
    list.setColumns(headers.isEmpty() ? usual : headers, columnWidths(control, limits::ListColumns));
}

QStringList rowStates()
{
    return {selectedState, unselectedState, activatedState, deleteState};
}

QString rowState(const SortableListView &list)
{
    switch (list.lastChange()) {
    case SortableListView::Activated:
        return activatedState;
    case SortableListView::DeletePressed:
        return deleteState;
    default:
        return list.selectedRow() < 0 ? unselectedState : selectedState;
    }
}

} // namespace paravue
