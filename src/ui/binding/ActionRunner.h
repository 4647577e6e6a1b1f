#pragma once

#include <QDomElement>
#include <QList>
#include <QPointer>
#include <QString>

#include <functional>

class QWidget;

namespace paravue
{

class BuiltDescription;
class ControlContext;
struct Control;

/// Runs the "action" elements of the description.
///
/// An action names a tag; its targets are the widgets of the elements that have a child with this tag. A
/// state action enables or disables them while the control is in the action's state, a call action invokes a
/// public slot on each of them, with the translated "param" as its one argument when there is one.
class ActionRunner
{
public:
    explicit ActionRunner(ControlContext &context);

    /// Runs what a change by the user triggers: state actions whose state fits, and calls.
    void reactToChange(const Control &control);
    /// Runs what a loaded value triggers: state actions only, as loading must not press buttons.
    void reactToState(const Control &control);
    /// Runs the call actions of an element without a control: a button of the window, a dialog.
    void runCalls(const QDomElement &owner);
    /// Runs one call action or time task.
    void runCall(const QDomElement &action);
    /// What the running action has called was refused by the user: nothing more runs of what the gesture that
    /// has started it would do.
    void abandon() { m_isAbandoned = m_groups > 0; }
    /// The control whose gesture has started what runs; null when it was none.
    const QWidget *origin() const { return m_origin; }
    /// The action that runs.
    QDomElement action() const { return m_action; }
    /// True while calls run.
    bool isRunning() const { return m_depth > 0; }
    /// \a permit decides about each call before it is made; it may wait for the user.
    using Permit = std::function<bool(const QWidget &target, const QString &slot, const QString &param)>;
    void setPermit(const Permit &permit) { m_permit = permit; }
    /// Runs \a wait, an event loop in which the user acts; actions in it are counted from zero against the
    /// limits.
    void suspend(const std::function<void()> &wait);

private:
    void setEnabled(const QDomElement &action, bool enabled);
    void invoke(const QPointer<QWidget> &target, const QDomElement &action);
    void setCaption(QWidget &target, const QDomElement &action);
    bool enter();
    void leave();
    class Group;

    ControlContext &m_context;
    BuiltDescription &m_description;
    Permit m_permit;
    int m_depth = 0;
    int m_groups = 0; ///< elements whose actions run, one inside the other
    bool m_isAbandoned = false;
    QPointer<QWidget> m_origin;
    QDomElement m_action;
    qsizetype m_work = 0; ///< elements that actions have visited since the outermost one began
    bool m_unwinding =
        false; ///< an endless chain was cut; nothing more runs until its outermost action returns
};

} // namespace paravue
