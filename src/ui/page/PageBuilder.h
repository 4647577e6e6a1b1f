#pragma once

#include "ui/binding/ControlAdapter.h"

#include <QDomElement>
#include <QHash>
#include <QList>

#include <functional>
#include <memory>

class QGridLayout;

namespace paravue
{

class ControlItem;
class ElementAttributes;
class FieldColumn;
class PageTabs;
class SeparatorItem;
struct GridCell;

/// Turns the page content of a description into widgets: grids, their cells, and the pages of tabs. Every
/// control is registered in the table in the order in which it is built, and is wired to the window.
class PageBuilder
{
public:
    /// \a changed is called with each control that the user changes, \a adapterOf knows the types of
    /// controls. The context must outlive the builder.
    PageBuilder(ControlContext &context, std::function<void(QWidget *control)> changed,
                AdapterLookup adapterOf);

    /// Fills \a page with the grids of \a container (a tab or a dialog); the page gets its layout from here.
    /// The tab key walks through the page row by row.
    void buildPage(const QDomElement &container, QWidget *page);
    enum TabPages {
        Plain,
        Scrolling ///< a page that is larger than the window scrolls
    };
    /// One page per "tab" child of \a container.
    void buildTabs(const QDomElement &container, PageTabs &tabs, TabPages pages = Plain);

    /// Decorates the element of a window and applies the attributes that windows share with controls. A
    /// window that could be hidden or disabled could not be closed any more, so these two do not apply.
    Control &adoptWindow(const QDomElement &element, QWidget *window);

private:
    struct Item;

    void fillGrid(QGridLayout &grid, const QDomElement &item);
    /// Returns the direction in which the grid now wants to grow.
    Qt::Orientations applyStretch(QGridLayout &grid, const QDomElement &stretch);
    void addItem(QGridLayout &grid, const Item &item);
    void addGrid(QGridLayout &grid, const Item &item);
    void addSpacer(QGridLayout &grid, const Item &item);
    void addControl(const ControlAdapter &adapter, QGridLayout &grid, const Item &item);
    /// Returns null when the grid has made the item itself.
    ControlItem *place(QWidget *widget, Qt::Orientations fills, bool isNoted, QGridLayout &grid,
                       const GridCell &cell);
    void showLater(QWidget *widget);
    void buildGrids(const QDomElement &container, QWidget *page);
    void applyLook(const Control &control, const ElementAttributes &attributes, QWidget *widget);
    void connectChanges(const ControlAdapter &adapter, QWidget *widget);

    ControlContext &m_context;
    ControlTable &m_table;
    std::function<void(QWidget *control)> m_changed;
    QObject m_receiver; ///< of all changes: they are not passed on any more once the builder is gone
    AdapterLookup m_adapterOf;
    QWidget *m_page = nullptr;                 ///< parent of the widgets that are being built
    QList<QWidget *> *m_widgets = nullptr;     ///< receives the widgets of the cell that is being built
    QList<SeparatorItem *> *m_lines = nullptr; ///< receives the lines of the grid that is being built
    QHash<int, std::shared_ptr<FieldColumn>> *m_columns = nullptr; ///< its fields without a width, by column
    Qt::Orientations m_grows;   ///< directions in which the grid that is being built takes room
    QList<QWidget *> m_created; ///< the widgets of the page in the order of the description
};

} // namespace paravue
