#pragma once

#include "ui/binding/ControlType.h"

#include <QSize>

/// Controls that mark the cells of a grid over a picture. Attributes "ctrlColumns" and "ctrlRows" give the
/// size of the grid (16 by 12 when absent), children "text" the names of the kinds of marks.
///
/// The rows stand at addresses made of the first "key" and the number of the row, counted from 0 at the top:
/// with the key "motion/cam0/MASK" at "motion/cam0/MASK0", "motion/cam0/MASK1" and so on. A key that ends
/// with its section names the rows ROW0, ROW1. A row is a text with one character for each cell, such as
/// "0011100"; controls/CellRows.h tells what becomes of other texts. Only rows whose cells were painted are
/// written.
namespace paravue
{

class CellGridEditor;

class CellGridControl : public ControlType
{
public:
    QWidget *create(ControlContext &, const Control &, QWidget *parent) const override;
    ChangeSignal changeSignal() const override;
    KeyForm keyForm() const override { return KeyForm::Rows; }
    Qt::Orientations fills(const QDomElement &) const override { return Qt::Horizontal | Qt::Vertical; }
    bool load(ControlContext &, const Control &) const override;
    QStringList assignments(ControlContext &, const Control &) const override;

private:
    virtual CellGridEditor *createEditor(const QDomElement &, const QSize &, QWidget *parent) const = 0;
};

/// A motion mask or, with the attribute "mask" = "privacy", one that covers parts of the picture. "1" is
/// masked, "0" is not. The first "text" is the name of what is masked.
class MaskControl : public CellGridControl
{
public:
    const QMetaObject &widgetClass() const override;

private:
    CellGridEditor *createEditor(const QDomElement &, const QSize &, QWidget *parent) const override;
};

/// Alarm zones: "1" to "9" is the zone of a cell, "0" is none. There are as many zones as "text" children,
/// which are their names; without any there are four.
class AlarmZoneControl : public CellGridControl
{
public:
    const QMetaObject &widgetClass() const override;

private:
    CellGridEditor *createEditor(const QDomElement &, const QSize &, QWidget *parent) const override;
};

} // namespace paravue
