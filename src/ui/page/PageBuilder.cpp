#include "ui/page/PageBuilder.h"

#include "ui/base/Alignment.h"
#include "ui/base/PageTabs.h"
#include "ui/base/UiLimits.h"
#include "ui/base/WindowStyle.h"
#include "ui/base/WindowText.h"
#include "ui/binding/BuiltDescription.h"
#include "ui/binding/ControlContext.h"
#include "ui/binding/FieldNotes.h"
#include "ui/binding/ToolTip.h"
#include "ui/description/ElementAttributes.h"
#include "ui/page/GridCell.h"
#include "ui/page/NotedFieldItem.h"
#include "ui/page/PageArea.h"
#include "ui/page/PageLayout.h"
#include "ui/page/SeparatorItem.h"
#include "ui/page/WheelGuard.h"

#include <QGridLayout>
#include <QLabel>
#include <QScopedValueRollback>

#include <algorithm>
#include <map>
#include <numeric>
#include <utility>
#include <vector>

namespace paravue
{

namespace
{

struct Cell {
    QList<QWidget *> widgets;
    int rowSpan = 1;
    int columnSpan = 1;
};
/// By row and column.
using Cells = std::multimap<std::pair<int, int>, Cell>;

bool isHorizontalLine(const QWidget *widget)
{
    const auto *frame = qobject_cast<const QFrame *>(widget);
    return frame && frame->frameShape() == QFrame::HLine;
}

bool isHorizontalLine(const Cell &cell)
{
    return cell.widgets.size() == 1 && isHorizontalLine(cell.widgets.first());
}

/// The widgets of \a row in the columns of \a line.
QList<QWidget *> widgetsInRow(const Cells &cells, int row, int column, const Cell &line)
{
    QList<QWidget *> widgets;
    const auto end = cells.lower_bound({row, column + std::max(line.columnSpan, 1)});
    for (auto cell = cells.lower_bound({row, column}); cell != end; ++cell)
        widgets.append(cell->second.widgets);
    return widgets;
}

/// What stands right above a line is the heading of what stands below: a label of its own, or the row of
/// labels that a table begins with.
void showHeadings(const Cells &cells)
{
    for (const auto &[position, cell] : cells) {
        if (!isHorizontalLine(cell))
            continue;
        const auto [row, column] = position;
        const QList<QWidget *> above = widgetsInRow(cells, row - 1, column, cell);
        const bool areLabels = std::all_of(above.begin(), above.end(),
                                           [](QWidget *widget) { return qobject_cast<QLabel *>(widget); });
        if (!areLabels || (above.size() > 1 && !widgetsInRow(cells, row - 2, column, cell).isEmpty()))
            continue;
        for (QWidget *label : above) {
            QFont font = label->font();
            font.setWeight(QFont::DemiBold);
            label->setFont(font);
        }
    }
}

/// Lets those of \a lines that stand in a row of their own go across the whole of \a grid.
void crossGrid(const QGridLayout &grid, const Cells &cells, const QList<SeparatorItem *> &lines)
{
    const int rows = grid.rowCount();
    std::vector<int> taken(rows + 1); // the cells that begin in a row, less those that end above it
    for (const auto &[position, cell] : cells) {
        const int row = position.first;
        if (row < 0 || row >= rows)
            continue; // was left out
        ++taken[row];
        --taken[cell.rowSpan < 0 ? rows : std::min(row + cell.rowSpan, rows)];
    }
    std::partial_sum(taken.begin(), taken.end(), taken.begin());
    for (SeparatorItem *line : lines) {
        if (taken[line->row()] == 1)
            line->crossGrid(grid);
    }
}

} // namespace

/// An item of a grid.
struct PageBuilder::Item {
    explicit Item(const QDomElement &item) : element(item), attributes(item), cell(GridCell::of(attributes))
    {
    }

    QDomElement element;
    ElementAttributes attributes;
    GridCell cell;
};

PageBuilder::PageBuilder(ControlContext &context, std::function<void(QWidget *control)> changed,
                         AdapterLookup adapterOf)
    : m_context(context), m_table(context.description().table()), m_changed(std::move(changed)),
      m_adapterOf(adapterOf)
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
    auto *layout = new PageLayout(page);
    layout->setContentsMargins(PageMargin, PageMargin, PageMargin, PageMargin);
    layout->setSpacing(GridSpacing);
    // Spare room goes to widgets that grow and to lines with a stretch; without any, forms stay at the top
    // left.
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

void PageBuilder::buildTabs(const QDomElement &container, PageTabs &tabs, TabPages pages)
{
    const PageTabs::Changes changes(tabs);
    for (QDomElement tab = container.firstChildElement(QStringLiteral("tab")); !tab.isNull();
         tab = tab.nextSiblingElement(QStringLiteral("tab"))) {
        auto *page = new QWidget;
        QWidget *holder = pages == Scrolling ? new PageArea(page, PageArea::OfTheWindow) : page;
        tabs.addTab(holder, m_context.text(tab.firstChildElement(QStringLiteral("name")).text()));
        buildPage(tab, page);
    }
}

void PageBuilder::fillGrid(QGridLayout &grid, const QDomElement &item)
{
    grid.setSpacing(GridSpacing);
    Cells cells;
    QList<SeparatorItem *> lines;
    QHash<int, std::shared_ptr<FieldColumn>> columns;
    const QScopedValueRollback lineReceiver(m_lines, &lines);
    const QScopedValueRollback columnsOfGrid(m_columns, &columns);
    for (QDomElement child = item.firstChildElement(); !child.isNull(); child = child.nextSiblingElement()) {
        if (child.tagName() == QLatin1String("stretch")) {
            m_grows |= applyStretch(grid, child);
        } else if (child.tagName() == QLatin1String("item")) {
            const Item described(child);
            const GridCell &cell = described.cell;
            QList<QWidget *> widgets;
            QScopedValueRollback receiver(m_widgets, &widgets);
            addItem(grid, described);
            cells.emplace(std::pair(cell.row, cell.column), Cell{widgets, cell.rowSpan, cell.columnSpan});
        }
    }
    for (const auto &[position, cell] : cells)
        m_widgets->append(cell.widgets);
    showHeadings(cells);
    crossGrid(grid, cells, lines);
    alignWithFields(grid);
}

Qt::Orientations PageBuilder::applyStretch(QGridLayout &grid, const QDomElement &stretch)
{
    const GridLine line = GridLine::of(stretch);
    if (line.kind == GridLine::None)
        return {};
    if (!line.isWithinLimits()) {
        m_context.report(
            WindowText::tr("A stretch of row or column %1 is beyond the limits of a grid and was left out")
                .arg(QString::number(line.index)));
        return {};
    }
    const bool isColumn = line.kind == GridLine::Column;
    const int newLines = line.index + 1 - (isColumn ? grid.columnCount() : grid.rowCount());
    if (!m_context.take(ControlContext::GridLines, std::max(newLines, 0)))
        return {};
    const int factor = std::clamp(stretch.text().toInt(), 0, limits::Stretch);
    if (isColumn)
        grid.setColumnStretch(line.index, factor);
    else
        grid.setRowStretch(line.index, factor);
    if (factor == 0)
        return {};
    return isColumn ? Qt::Horizontal : Qt::Vertical;
}

void PageBuilder::addItem(QGridLayout &grid, const Item &item)
{
    const GridCell &cell = item.cell;
    const QString type = item.attributes.text(QLatin1StringView("type"));
    const LayoutItem layout = layoutItem(type);
    const ControlAdapter *adapter = layout == LayoutItem::None ? m_adapterOf(type) : nullptr;
    if (layout == LayoutItem::None && !adapter) {
        m_context.report(WindowText::tr("Unknown control type \"%1\"").arg(type));
        return;
    }
    if (!cell.isWithinLimits()) {
        m_context.report(
            WindowText::tr("A control at row %1, column %2 is beyond the limits of a grid and was "
                           "left out")
                .arg(QString::number(cell.row), QString::number(cell.column)));
        return;
    }
    if (!m_context.take(ControlContext::Items, adapter ? adapter->traits().cost : 1))
        return;
    const int newRows = cell.row + std::max(cell.rowSpan, 1) - grid.rowCount();
    const int newColumns = cell.column + std::max(cell.columnSpan, 1) - grid.columnCount();
    if (!m_context.take(ControlContext::GridLines, std::max(newRows, 0) + std::max(newColumns, 0)))
        return;
    if (layout == LayoutItem::Grid)
        addGrid(grid, item);
    else if (layout == LayoutItem::Spacer)
        addSpacer(grid, item);
    else
        addControl(*adapter, grid, item);
}

void PageBuilder::addGrid(QGridLayout &grid, const Item &item)
{
    const GridCell &cell = item.cell;
    auto *inner = new QGridLayout;
    grid.addLayout(inner, cell.row, cell.column, cell.rowSpan, cell.columnSpan, cell.alignment);
    fillGrid(*inner, item.element);
}

void PageBuilder::addSpacer(QGridLayout &grid, const Item &item)
{
    const GridCell &cell = item.cell;
    const auto along = QSizePolicy::Expanding;
    const auto across = QSizePolicy::Minimum;
    const Qt::Orientation direction = orientation(item.attributes.text(QLatin1StringView("orientation")));
    auto *spacer = direction == Qt::Horizontal ? new QSpacerItem(0, 0, along, across)
                                               : new QSpacerItem(0, 0, across, along);
    grid.addItem(spacer, cell.row, cell.column, cell.rowSpan, cell.columnSpan);
    m_grows |= direction;
}

void PageBuilder::addControl(const ControlAdapter &adapter, QGridLayout &grid, const Item &item)
{
    const GridCell &cell = item.cell;
    const ElementAttributes &attributes = item.attributes;
    Control &control = m_table.add(item.element, &adapter);
    QWidget *widget = adapter.create(m_context, control, m_page);
    m_table.attach(control, widget);
    applyLook(control, attributes, widget);
    if (attributes.text(QLatin1StringView("enabled")) == QLatin1StringView("no"))
        widget->setEnabled(false);
    if (attributes.text(QLatin1StringView("visible")) == QLatin1StringView("no"))
        widget->hide();
    connectChanges(adapter, widget);
    WheelGuard::install(widget);
    FieldNotes::attach(control, adapter.traits().showsUnit);
    const bool isNoted = adapter.traits().hasUnfitValues || FieldNotes::of(widget);
    ControlItem *placed = place(widget, adapter.fills(item.element), isNoted, grid, cell);
    const bool hasOwnWidth = attributes.number(QLatin1StringView("width")) > 0;
    if (placed && !hasOwnWidth && cell.columnSpan == 1 && ControlItem::isField(*widget)) {
        std::shared_ptr<FieldColumn> &column = (*m_columns)[cell.column];
        if (!column)
            column = std::make_shared<FieldColumn>();
        placed->join(column);
    }
    m_widgets->append(widget);
    m_created.append(widget);
    if (PageTabs *tabs = adapter.tabs(control))
        buildTabs(item.element, *tabs);
}

ControlItem *PageBuilder::place(QWidget *widget, Qt::Orientations fills, bool isNoted, QGridLayout &grid,
                                const GridCell &cell)
{
    ControlItem *item = nullptr;
    if (isHorizontalLine(widget)) {
        auto *line = new SeparatorItem(widget, cell.row);
        m_lines->append(line);
        item = line;
    } else if (isNoted) {
        item = new NotedFieldItem(widget, fills);
    } else if (fills || ControlItem::suits(*widget)) {
        item = new ControlItem(widget, fills);
    } else {
        grid.addWidget(widget, cell.row, cell.column, cell.rowSpan, cell.columnSpan, cell.alignment);
        return nullptr;
    }
    m_grows |= item->expandingDirections();
    grid.addItem(item, cell.row, cell.column, cell.rowSpan, cell.columnSpan, cell.alignment);
    showLater(widget);
    return item;
}

/// A layout shows the widgets that are added to a visible page, but not those of items.
void PageBuilder::showLater(QWidget *widget)
{
    if (!m_page->isVisible())
        return; // shown together with the page
    const auto showUnlessHidden = [widget] {
        if (!widget->testAttribute(Qt::WA_WState_ExplicitShowHide))
            widget->show();
    };
    QMetaObject::invokeMethod(widget, showUnlessHidden, Qt::QueuedConnection);
}

Control &PageBuilder::adoptWindow(const QDomElement &element, QWidget *window)
{
    Control &control = m_table.add(element, nullptr);
    m_table.attach(control, window);
    applyLook(control, ElementAttributes(element), window);
    return control;
}

void PageBuilder::applyLook(const Control &control, const ElementAttributes &attributes, QWidget *widget)
{
    loadToolTip(m_context, control);
    const bool sizesItself = control.adapter && control.adapter->traits().sizesItself;
    if (const int width = attributes.number(QLatin1StringView("width")); width > 0 && !sizesItself)
        widget->setMinimumWidth(std::min(width, limits::Pixels));
    if (const int height = attributes.number(QLatin1StringView("height")); height > 0 && !sizesItself)
        widget->setMinimumHeight(std::min(height, limits::Pixels));
    if (attributes.text(QLatin1StringView("textside")) == QLatin1StringView("left"))
        widget->setLayoutDirection(Qt::RightToLeft);
}

void PageBuilder::connectChanges(const ControlAdapter &adapter, QWidget *widget)
{
    for (const ChangeSignal connectSignal : adapter.traits().changes)
        connectSignal(*widget, m_receiver, [this, widget] { m_changed(widget); });
}

} // namespace paravue
