#pragma once

#include <QString>
#include <QStringList>
#include <Qt>

class QDomElement;
class QGridLayout;
class QWidget;

struct QMetaObject;

namespace paravue
{

class ControlContext;
class PageBuilder;
struct Control;

/// Where a grid puts a cell.
struct GridCell {
    int row = 0;
    int column = 0;
    int rowSpan = 1;
    int columnSpan = 1;
    Qt::Alignment alignment;
};

/// Something that the cell of a grid may hold: the value of the cell's attribute "type" says what. A type is
/// one class and one line in controlTypes().
class GridItemType
{
public:
    virtual ~GridItemType();

    virtual void addTo(PageBuilder &builder, QGridLayout &grid, const GridCell &cell,
                       const QDomElement &item) const = 0;
};

/// The signal that tells of a change by the user, and the slot of the window that hears it, both as SIGNAL()
/// and SLOT() give them; null for controls that nobody edits.
struct ChangeSignal {
    const char *signal = nullptr;
    const char *slot = nullptr;
};

/// What the "key" children of a control hold.
enum class KeyForm {
    Value,      ///< the address of a value: file/section/key
    Assignment, ///< an address with the value that is written to it: file/section/key/value
    Group,      ///< what the addresses of several values begin with: file/section
    Rows,       ///< the same, or file/section/key: the number of a row is put behind it
};

/// A grid item that is a widget: how it is made, how it shows its configuration values, and what a change by
/// the user means. A type keeps no state: all of it lives in the widget and the description.
class ControlType : public GridItemType
{
public:
    void addTo(PageBuilder &builder, QGridLayout &grid, const GridCell &cell,
               const QDomElement &item) const override;

    /// Makes the widget. Its values come later, with load().
    virtual QWidget *create(ControlContext &context, const Control &control, QWidget *parent) const = 0;
    /// The class of the widget that create() makes: its public slots are what call actions reach.
    virtual const QMetaObject &widgetClass() const = 0;
    virtual ChangeSignal changeSignal() const { return {}; }
    /// For a widget that tells of two kinds of changes.
    virtual ChangeSignal secondChangeSignal() const { return {}; }

    virtual KeyForm keyForm() const { return KeyForm::Value; }

    /// The directions in which the widget takes all the room of its cell, whatever the cell's alignment.
    virtual Qt::Orientations fills(const QDomElement &) const { return {}; }
    /// Whether the attributes "width" and "height" are those of a part of the widget, which sees to it that
    /// there is room for it. Otherwise they are the least size of the widget.
    virtual bool sizesItself() const { return false; }
    /// Pages that the widget holds, if it is a container.
    virtual void addPages(PageBuilder &, const Control &) const {}

    /// Shows the present values of the store. Writes nothing and emits no change; leaves the widget alone
    /// when it shows them already. Returns true when the widget has changed.
    virtual bool load(ControlContext &, const Control &) const { return false; }

    /// What a change writes, as address/value texts in their order. Empty: nothing.
    virtual QStringList assignments(ControlContext &, const Control &) const { return {}; }
    /// True when the shown value was typed in, as opposed to chosen from what the description offers.
    virtual bool isTyped(const Control &) const { return false; }
    /// The state that the actions of the control may ask for ("on", "empty", ...); empty without states.
    virtual QString actionState(const Control &) const { return {}; }
    /// All states that actionState() can give.
    virtual QStringList actionStates() const { return {}; }
    /// True when a change also runs the call actions that ask for no state.
    virtual bool runsCalls() const { return false; }
};

/// The type of this name; null when there is none.
const GridItemType *gridItemType(const QString &name);

} // namespace paravue
