#include "ui/page/PageBuilder.h"

#include "ui/base/Alignment.h"
#include "ui/base/UiLimits.h"
#include "ui/base/WindowLook.h"
#include "ui/base/WindowText.h"
#include "ui/binding/ControlContext.h"
#include "ui/binding/ControlTable.h"
#include "ui/binding/ToolTip.h"
#include "ui/description/InterfaceDocument.h"
#include "ui/page/GridFillItem.h"
#include "ui/page/PageArea.h"

#include <QGridLayout>
#include <QScopedValueRollback>
#include <QTabWidget>
#include <QVBoxLayout>

#include <algorithm>
#include <map>

namespace paravue
{
namespace
{

constexpr int ToTheEdge = -1; ///< a span up to the last row or column of the grid

Qt::Alignment cellAlignment(const QDomElement &item)
{
    return horizontalAlignment(item.attribute(QStringLiteral("alignment"))) |
           verticalAlignment(item.attribute(QStringLiteral("valign")));
}

GridCell readCell(const QDomElement &item)
{
    const auto span = [&](const QString &name) {
        const int value = intAttribute(item, name);
        return value == 0 ? 1 : std::max(value, ToTheEdge);
    };
    return {intAttribute(item, QStringLiteral("row")), intAttribute(item, QStringLiteral("column")),
            span(QStringLiteral("rowSpan")), span(QStringLiteral("columnSpan")), cellAlignment(item)};
}

bool isWithinGrid(int index, int span)
{
    return index >= 0 && index < limits::GridIndex && span <= limits::GridIndex - index;
}

bool isWithinGrid(const GridCell &cell)
{
    return isWithinGrid(cell.row, cell.rowSpan) && isWithinGrid(cell.column, cell.columnSpan);
}

} // namespace

PageBuilder::PageBuilder(ControlContext &context, ControlTable &table, QWidget &window)
    : m_context(context), m_table(table), m_window(window)
{
}

void PageBuilder::buildPage(const QDomElement &container, QWidget *page)
{
    if (m_widgets) { // a page of a tab widget inside a page: its widgets belong to the outer order
        buildGrids(container, page);
        return;
    }
    QList<QWidget *> ordered;
    QScopedValueRollback widgets(m_widgets, &ordered);
    m_created.clear();
    buildGrids(container, page);
    // A new widget is the last in the tab order anyway, so there is nothing to do for most pages.
    if (!ordered.isEmpty() && ordered != m_created) {
        for (qsizetype i = 1; i < ordered.size(); ++i)
            QWidget::setTabOrder(ordered[i - 1], ordered[i]);
    }
}

void PageBuilder::buildGrids(const QDomElement &container, QWidget *page)
{
    QScopedValueRollback parent(m_page, page);
    auto *layout = new QVBoxLayout(page);
    layout->setContentsMargins(PageMargin, PageMargin, PageMargin, PageMargin);
    layout->setSpacing(GridSpacing);
    // Forms stay together at the top left of a page; what grows by nature or has a stretch gets the room.
    Qt::Orientations pageGrows;
    for (QDomElement item = container.firstChildElement(QStringLiteral("item")); !item.isNull();
         item = item.nextSiblingElement(QStringLiteral("item"))) {
        const QString type = item.attribute(QStringLiteral("type"));
        if (type != QLatin1String("gridlayout")) {
            m_context.report(WindowText::tr("Unknown node type \"%1\"").arg(type));
            continue;
        }
        auto *row = new QHBoxLayout;
        auto *grid = new QGridLayout;
        layout->addLayout(row);
        row->addLayout(grid);
        QScopedValueRollback grows(m_grows, Qt::Orientations());
        fillGrid(*grid, item);
        pageGrows |= m_grows;
        if (!m_grows.testFlag(Qt::Horizontal))
            row->addStretch();
    }
    if (!pageGrows.testFlag(Qt::Vertical))
        layout->addStretch();
}

void PageBuilder::buildTabs(const QDomElement &container, QTabWidget *tabs, TabPages pages)
{
    for (QDomElement tab = container.firstChildElement(QStringLiteral("tab")); !tab.isNull();
         tab = tab.nextSiblingElement(QStringLiteral("tab"))) {
        auto *page = new QWidget;
        QWidget *holder = pages == Scrolling ? new PageArea(page, PageArea::OfTheWindow) : page;
        tabs->addTab(holder, m_context.text(tab.firstChildElement(QStringLiteral("name")).text()));
        buildPage(tab, page);
    }
}

void PageBuilder::fillGrid(QGridLayout &grid, const QDomElement &item)
{
    grid.setSpacing(GridSpacing);
    std::multimap<std::pair<int, int>, QList<QWidget *>> cells;
    for (QDomElement child = item.firstChildElement(); !child.isNull(); child = child.nextSiblingElement()) {
        if (child.tagName() == QLatin1String("stretch")) {
            m_grows |= applyStretch(grid, child);
        } else if (child.tagName() == QLatin1String("item")) {
            const GridCell cell = readCell(child);
            QList<QWidget *> widgets;
            QScopedValueRollback receiver(m_widgets, &widgets);
            addCell(grid, cell, child);
            cells.emplace(std::pair(cell.row, cell.column), widgets);
        }
    }
    for (const auto &[position, widgets] : cells)
        m_widgets->append(widgets);
}

Qt::Orientations PageBuilder::applyStretch(QGridLayout &grid, const QDomElement &stretch)
{
    const bool isColumn = stretch.hasAttribute(QStringLiteral("column"));
    if (!isColumn && !stretch.hasAttribute(QStringLiteral("row")))
        return {};
    const int index = intAttribute(stretch, isColumn ? QStringLiteral("column") : QStringLiteral("row"));
    if (!isWithinGrid(index, 1)) {
        m_context.report(
            WindowText::tr("A stretch of row or column %1 is beyond the limits of a grid and was left out")
                .arg(QString::number(index)));
        return {};
    }
    const int newLines = index + 1 - (isColumn ? grid.columnCount() : grid.rowCount());
    if (!m_context.take(ControlContext::GridLines, std::max(newLines, 0)))
        return {};
    const int factor = std::clamp(stretch.text().toInt(), 0, limits::Stretch);
    if (isColumn)
        grid.setColumnStretch(index, factor);
    else
        grid.setRowStretch(index, factor);
    if (factor == 0)
        return {};
    return isColumn ? Qt::Horizontal : Qt::Vertical;
}

void PageBuilder::addCell(QGridLayout &grid, const GridCell &cell, const QDomElement &item)
{
    const QString name = item.attribute(QStringLiteral("type"));
    const GridItemType *type = gridItemType(name);
    if (!type) {
        m_context.report(WindowText::tr("Unknown control type \"%1\"").arg(name));
        return;
    }
    if (!isWithinGrid(cell)) {
        m_context.report(
            WindowText::tr("A control at row %1, column %2 is beyond the limits of a grid and was left out")
                .arg(QString::number(cell.row), QString::number(cell.column)));
        return;
    }
    const int newRows = cell.row + std::max(cell.rowSpan, 1) - grid.rowCount();
    const int newColumns = cell.column + std::max(cell.columnSpan, 1) - grid.columnCount();
    if (m_context.take(ControlContext::GridLines, std::max(newRows, 0) + std::max(newColumns, 0)))
        type->addTo(*this, grid, cell, item);
}

void PageBuilder::addGrid(QGridLayout &grid, const GridCell &cell, const QDomElement &item)
{
    auto *inner = new QGridLayout;
    grid.addLayout(inner, cell.row, cell.column, cell.rowSpan, cell.columnSpan, cell.alignment);
    fillGrid(*inner, item);
}

void PageBuilder::addSpacer(Qt::Orientation orientation, QGridLayout &grid, const GridCell &cell)
{
    const auto along = QSizePolicy::Expanding;
    const auto across = QSizePolicy::Minimum;
    auto *spacer = orientation == Qt::Horizontal ? new QSpacerItem(0, 0, along, across)
                                                 : new QSpacerItem(0, 0, across, along);
    grid.addItem(spacer, cell.row, cell.column, cell.rowSpan, cell.columnSpan);
    m_grows |= orientation;
}

void PageBuilder::addControl(const ControlType &type, QGridLayout &grid, const GridCell &cell,
                             const QDomElement &item)
{
    Control &control = m_table.add(item, &type);
    QWidget *widget = type.create(m_context, control, m_page);
    m_table.attach(control, widget);
    applyLook(control, widget);
    if (item.attribute(QStringLiteral("enabled")) == QLatin1String("no"))
        widget->setEnabled(false);
    if (item.attribute(QStringLiteral("visible")) == QLatin1String("no"))
        widget->hide();
    connectChange(type, widget);

    if (const Qt::Orientations fills = type.fills(item)) {
        auto *fillItem = new GridFillItem(widget, fills);
        m_grows |= fillItem->expandingDirections();
        grid.addItem(fillItem, cell.row, cell.column, cell.rowSpan, cell.columnSpan, cell.alignment);
    } else {
        grid.addWidget(widget, cell.row, cell.column, cell.rowSpan, cell.columnSpan, cell.alignment);
    }
    m_widgets->append(widget);
    m_created.append(widget);
    type.addPages(*this, control);
}

Control &PageBuilder::adoptWindow(const QDomElement &element, QWidget *window)
{
    Control &control = m_table.add(element, nullptr);
    m_table.attach(control, window);
    applyLook(control, window);
    return control;
}

void PageBuilder::applyLook(const Control &control, QWidget *widget)
{
    const QDomElement &element = control.element;
    loadToolTip(m_context, control);
    const bool sizesItself = control.type && control.type->sizesItself();
    if (const int width = intAttribute(element, QStringLiteral("width")); width > 0 && !sizesItself)
        widget->setMinimumWidth(std::min(width, limits::Pixels));
    if (const int height = intAttribute(element, QStringLiteral("height")); height > 0 && !sizesItself)
        widget->setMinimumHeight(std::min(height, limits::Pixels));
    if (element.attribute(QStringLiteral("textside")) == QLatin1String("left"))
        widget->setLayoutDirection(Qt::RightToLeft);
}

void PageBuilder::connectChange(const ControlType &type, QWidget *widget)
{
    // By name: the window's slots have one overload per kind of signal, and a type says which fits its own.
    for (const ChangeSignal &change : {type.changeSignal(), type.secondChangeSignal()}) {
        if (change.signal)
            QObject::connect(widget, change.signal, &m_window, change.slot);
    }
}

bool showTabCaptions(const QDomElement &container, QTabWidget &tabs,
                     const std::function<QString(const QString &)> &visible)
{
    bool changed = false;
    int page = 0;
    for (QDomElement tab = container.firstChildElement(QStringLiteral("tab"));
         !tab.isNull() && page < tabs.count(); tab = tab.nextSiblingElement(QStringLiteral("tab")), ++page) {
        const QString text = visible(tab.firstChildElement(QStringLiteral("name")).text());
        if (tabs.tabText(page) == text)
            continue;
        tabs.setTabText(page, text);
        changed = true;
    }
    return changed;
}

} // namespace paravue
