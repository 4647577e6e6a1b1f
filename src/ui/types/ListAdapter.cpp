#include "controls/ListView.h"
#include "controls/OwnTexts.h"
#include "ui/base/UiLimits.h"
#include "ui/base/WindowText.h"
#include "ui/binding/ControlAdapter.h"
#include "ui/binding/ControlContext.h"
#include "ui/description/InterfaceDocument.h"
#include "ui/types/AdapterTexts.h"
#include "ui/types/ListRows.h"

#include <QHeaderView>

#include <algorithm>
#include <memory>

namespace paravue
{
namespace
{

using Rows = QList<QStringList>;

Rows fixedRows(ControlContext &context, const Control &control)
{
    Rows rows;
    for (const QString &text : childTexts(control.element, QStringLiteral("text")))
        rows.append({context.text(control, text)});
    return rows;
}

int storedRowCount(ControlContext &context, const Control &control)
{
    const QDomElement count = control.element.firstChildElement(QStringLiteral("row_count"));
    if (count.isNull())
        return 0;
    return shownRows(context, context.value(control, addressText(count)).toInt());
}

Rows storedRows(ControlContext &context, const Control &control)
{
    const QStringList templates =
        childAddresses(control.element, QStringLiteral("column_source")).mid(0, limits::ListColumns);
    const int count = storedRowCount(context, control);
    Rows rows;
    rows.reserve(count);
    for (int row = 0; row < count; ++row) {
        if (!context.take(ControlContext::ListCells, std::max<qsizetype>(1, templates.size())))
            break;
        QStringList cells;
        for (const QString &address : templates)
            cells.append(context.value(control, address + QString::number(row)));
        rows.append(cells);
    }
    return rows;
}

/// Rows of texts: first the fixed ones of the description, then as many as the address in "row_count" says,
/// each cell with the value at its column's address with the row number, from 0, behind it.
class ListAdapter : public TypedAdapter<ListView>
{
public:
    ListAdapter()
        : TypedAdapter({.children = {{"column", {{"width"}}}, {"text"}},
                        .keys = {{},
                                 {.form = KeyRule::Rows,
                                  .tag = "column_source",
                                  .countTag = "row_count",
                                  .captionTag = "column"}},
                        .cost = 40})
    {
    }

    QWidget *create(ControlContext &context, const Control &control, QWidget *parent) const override
    {
        auto *list = new ListView(parent);
        list->setColumns(columnHeaders(context, control), columnWidths(control, limits::ListColumns));
        keepTranslated(*list, [list] { list->setPlaceholder(WindowText::tr("No entries")); });
        return list;
    }

    Qt::Orientations fills(const QDomElement &) const override { return Qt::Horizontal | Qt::Vertical; }

    bool load(ControlContext &context, const Control &control) const override
    {
        ListView &list = widget(control);
        const bool newHeaders = list.setHeaders(columnHeaders(context, control));
        return list.setRows(fixedRows(context, control) + storedRows(context, control)) || newHeaders;
    }
};

} // namespace

std::unique_ptr<const ControlAdapter> makeListAdapter()
{
    return std::make_unique<ListAdapter>();
}

} // namespace paravue
