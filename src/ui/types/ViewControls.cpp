#include "ui/types/ViewControls.h"

#include "controls/ListView.h"
#include "entry/cSetupWidget.h"
#include "ui/base/UiLimits.h"
#include "ui/base/WindowText.h"
#include "ui/binding/ControlContext.h"
#include "ui/binding/ControlTable.h"
#include "ui/description/InterfaceDocument.h"
#include "ui/page/PageBuilder.h"
#include "ui/types/ListControls.h"

#include <QHeaderView>
#include <QTabWidget>

#include <algorithm>

namespace paravue
{
namespace
{

using Rows = QList<QStringList>;

QStringList columnHeaders(ControlContext &context, const Control &control)
{
    QStringList headers;
    for (const QString &text :
         childTexts(control.element, QStringLiteral("column")).mid(0, limits::ListColumns))
        headers.append(context.text(control, text));
    return headers;
}

Rows fixedRows(ControlContext &context, const Control &control)
{
    Rows rows;
    for (const QString &text : childTexts(control.element, "text"))
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
        childAddresses(control.element, "column_source").mid(0, limits::ListColumns);
    const int count = storedRowCount(context, control);
    Rows rows;
    rows.reserve(count);
    for (int row = 0; row < count; ++row) {
        if (!context.take(ControlContext::ListCells, qMax(1, templates.size())))
            break;
        QStringList cells;
        for (const QString &address : templates)
            cells.append(context.value(control, address + QString::number(row)));
        rows.append(cells);
    }
    return rows;
}

} // namespace

QWidget *TabWidgetControl::create(ControlContext &, const Control &, QWidget *parent) const
{
    return new QTabWidget(parent);
}

const QMetaObject &TabWidgetControl::widgetClass() const
{
    return QTabWidget::staticMetaObject;
}

void TabWidgetControl::addPages(PageBuilder &builder, const Control &control) const
{
    builder.buildTabs(control.element, qobject_cast<QTabWidget *>(control.widget));
}

bool TabWidgetControl::load(ControlContext &context, const Control &control) const
{
    auto *tabs = qobject_cast<QTabWidget *>(control.widget);
    const bool changed = showTabCaptions(control.element, *tabs,
                                         [&](const QString &raw) { return context.text(control, raw); });
    // The page that the user has opened meanwhile is not taken away by a reload.
    const QDomElement selection = control.element.firstChildElement(QStringLiteral("selection"));
    if (!control.loaded && !selection.isNull())
        tabs->setCurrentIndex(selection.text().toInt());
    return changed;
}

QWidget *ListControl::create(ControlContext &context, const Control &control, QWidget *parent) const
{
    auto *list = new ListView(parent);
    QList<int> widths;
    for (QDomElement column = control.element.firstChildElement(QStringLiteral("column"));
         !column.isNull() && widths.size() < limits::ListColumns;
         column = column.nextSiblingElement(QStringLiteral("column")))
        widths.append(std::min(intAttribute(column, QStringLiteral("width")), limits::Pixels));
    list->setColumns(columnHeaders(context, control), widths);
    list->setPlaceholder(WindowText::tr("No entries"));
    return list;
}

const QMetaObject &ListControl::widgetClass() const
{
    return ListView::staticMetaObject;
}

bool ListControl::load(ControlContext &context, const Control &control) const
{
    auto *list = qobject_cast<ListView *>(control.widget);
    const bool newHeaders = list->setHeaders(columnHeaders(context, control));
    return list->setRows(fixedRows(context, control) + storedRows(context, control)) || newHeaders;
}

QWidget *SetupControl::create(ControlContext &context, const Control &, QWidget *parent) const
{
    auto *setup = new cSetupWidget(&context.store());
    setup->setParent(parent);
    return setup;
}

const QMetaObject &SetupControl::widgetClass() const
{
    return cSetupWidget::staticMetaObject;
}

void NestedGrid::addTo(PageBuilder &builder, QGridLayout &grid, const GridCell &cell,
                       const QDomElement &item) const
{
    builder.addGrid(grid, cell, item);
}

void Spacer::addTo(PageBuilder &builder, QGridLayout &grid, const GridCell &cell,
                   const QDomElement &item) const
{
    const bool horizontal = item.attribute(QStringLiteral("orientation")) == QLatin1String("horizontal");
    builder.addSpacer(horizontal ? Qt::Horizontal : Qt::Vertical, grid, cell);
}

} // namespace paravue
