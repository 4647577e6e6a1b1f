#pragma once

#include "ui/binding/ControlType.h"

/// Containers and everything that only shows.
namespace paravue
{

class TabWidgetControl : public ControlType
{
public:
    QWidget *create(ControlContext &, const Control &, QWidget *parent) const override;
    const QMetaObject &widgetClass() const override;
    Qt::Orientations fills(const QDomElement &) const override { return Qt::Horizontal | Qt::Vertical; }
    void addPages(PageBuilder &, const Control &) const override;
    bool load(ControlContext &, const Control &) const override;
};

/// Rows of texts: first the fixed ones of the description, then as many as the address in "row_count" says,
/// each cell with the value at its column's address with the row number, from 0, behind it.
class ListControl : public ControlType
{
public:
    QWidget *create(ControlContext &, const Control &, QWidget *parent) const override;
    const QMetaObject &widgetClass() const override;
    Qt::Orientations fills(const QDomElement &) const override { return Qt::Horizontal | Qt::Vertical; }
    bool load(ControlContext &, const Control &) const override;
};

/// A cSetupWidget on the store of the window: nothing to see, but actions can call its slots.
class SetupControl : public ControlType
{
public:
    QWidget *create(ControlContext &, const Control &, QWidget *parent) const override;
    const QMetaObject &widgetClass() const override;
};

class NestedGrid : public GridItemType
{
public:
    void addTo(PageBuilder &, QGridLayout &, const GridCell &, const QDomElement &item) const override;
};

class Spacer : public GridItemType
{
public:
    void addTo(PageBuilder &, QGridLayout &, const GridCell &, const QDomElement &item) const override;
};

} // namespace paravue
