#pragma once

#include "controls/EditHistory.h"
#include "ui/base/ElementRules.h"
#include "ui/binding/ControlTable.h"
#include "ui/description/Assignment.h"

#include <QList>
#include <QMetaObject>
#include <QString>
#include <QStringList>
#include <Qt>

#include <functional>
#include <optional>
#include <utility>

namespace paravue
{

class ControlContext;
class PageTabs;

/// Connects the signal that \a widget emits when the user changes it, as long as \a context lives. The
/// handler knows its widget: to find the sender of a signal, Qt walks through all connections of the
/// receiver.
using ChangeSignal = void (*)(QWidget &widget, const QObject &context, const std::function<void()> &changed);

template <auto Signal>
void onSignal(QWidget &widget, const QObject &context, const std::function<void()> &changed)
{
    const auto connect = [&]<class Widget, class... Args>(void (Widget::*signal)(Args...)) {
        QObject::connect(static_cast<Widget *>(&widget), signal, &context, changed);
    };
    connect(Signal);
}

/// What the children of a control with one tag hold.
struct KeyRule {
    enum Form {
        Value,      ///< the address of a value: file/section/key
        Assignment, ///< an address with the value that is written to it: file/section/key/value
        Group,      ///< what the addresses of several values begin with: file/section
        Rows,       ///< the same, or file/section/key: the number of a row is put behind it
    };

    Form form = Value;
    QString tag = QStringLiteral("key");
    /// Of a group: the key of the number of its rows.
    QString count = {};
    /// Of rows: the tag of the child with the address of their number, and that of the child with a column's
    /// caption.
    QString countTag = {};
    QString captionTag = {};
    /// Of rows: how many keys there are when each row has its own; 0 when the first one is for all rows.
    int keyPerRow = 0;
};

/// The attributes "minvalue" and "maxvalue" of a control.
struct RangeRule {
    int usualMost = 0; ///< without a "maxvalue"

    std::pair<int, int> rangeOf(const QDomElement &element) const;
};

/// What is specific to the controls of one type: their attributes and keys in the description, and their
/// signals.
struct ControlTraits {
    QList<ChangeSignal> changes = {};
    QList<AttributeRule> attributes = {};
    QList<ElementRule> children = {}; ///< without those that keys has
    QList<KeyRule> keys = {KeyRule()};
    std::optional<RangeRule> range = {};
    /// All states that its actions may ask for, unless they depend on the element.
    QStringList actionStates = {};
    /// A change also runs the call actions that ask for no state.
    bool runsCalls = false;
    /// The attributes "width" and "height" are those of a part of the widget, which makes room for it.
    /// Otherwise they are the least size of the widget.
    bool sizesItself = false;
    /// The widget shows the "unit" of its value itself.
    bool showsUnit = false;
    /// There are stored values that it cannot show: unfitValue().
    bool hasUnfitValues = false;
    /// It has pages of its own: tabs().
    bool hasPages = false;
    /// Time and memory that making it takes, as a number of labels: what a description may hold is limited by
    /// their sum. Measured with 3,000 controls of each type.
    int cost = 1;
};

/// Carries data between the description, the store and a widget of one type: how the widget is made, how it
/// shows its configuration values, and what a change by the user means. An adapter is stateless.
class ControlAdapter
{
public:
    explicit ControlAdapter(const ControlTraits &traits) : m_traits(traits) {}
    virtual ~ControlAdapter();

    const ControlTraits &traits() const { return m_traits; }

    /// Makes the widget. Its values come later, with load().
    virtual QWidget *create(ControlContext &context, const Control &control, QWidget *parent) const = 0;
    /// The class of the widget that create() makes: its public slots are what call actions reach.
    virtual const QMetaObject &widgetClass() const = 0;
    /// The directions in which the widget takes all the room of its cell, whatever the cell's alignment.
    virtual Qt::Orientations fills(const QDomElement &) const { return {}; }
    /// The widget that the pages of the control are built into; null without pages.
    virtual PageTabs *tabs(const Control &) const { return nullptr; }

    /// Shows the present values of the store. Writes nothing and emits no change; leaves the widget alone
    /// when it shows them already. Returns true when the widget has changed.
    virtual bool load(ControlContext &, const Control &) const { return false; }
    /// The stored value when the widget does not show it, an empty text when nothing is stored; none when it
    /// shows what is stored.
    virtual std::optional<QString> unfitValue(ControlContext &, const Control &) const { return {}; }
    /// What a change writes, in this order.
    virtual QList<Assignment> assignments(ControlContext &, const Control &) const { return {}; }
    /// What the user would call the value at \a path among the several that the control edits, such as the
    /// password of one user. Empty when the control has one value, or none with this path. \a valueAt gives
    /// values of the same file.
    using ValueAt = std::function<QString(const QString &path)>;
    virtual QString valueName(const QString &, const ValueAt &) const { return {}; }
    /// Whether the change that is being written is a step of the control's own history.
    virtual HistoryMove historyMove(const Control &) const { return HistoryMove::None; }
    /// What the control shows at this moment when that changes by itself, such as the time of a clock. Nobody
    /// has edited it, so it is written only before a function that sends it. None of a control that is
    /// disabled, which is there to be looked at.
    virtual QList<Assignment> runningValues(ControlContext &, const Control &) const { return {}; }
    /// True when the shown value was typed in, as opposed to chosen from what the description offers.
    virtual bool isTyped(const Control &) const { return false; }
    /// The state that the actions of the control may ask for ("on", "empty", ...); empty without states.
    virtual QString actionState(const Control &) const { return {}; }
    /// All states that actionState() may return for a control of this element.
    virtual QStringList actionStates(const QDomElement &) const { return m_traits.actionStates; }
    /// The same for calls. Controls that enable and disable nothing may have states all the same.
    virtual QString callState(const Control &control) const { return actionState(control); }
    virtual QStringList callStates(const QDomElement &element) const { return actionStates(element); }

private:
    const ControlTraits m_traits;
};

/// An adapter for widgets of the class \a Widget.
template <class Widget>
class TypedAdapter : public ControlAdapter
{
public:
    using ControlAdapter::ControlAdapter;

    const QMetaObject &widgetClass() const override { return Widget::staticMetaObject; }

protected:
    static Widget &widget(const Control &control) { return static_cast<Widget &>(*control.widget); }
};

/// Finds the adapter of a type; null when there is none of this name.
using AdapterLookup = const ControlAdapter *(*)(const QString &type);

} // namespace paravue
