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

    /// What a change by the user means: the state actions that fit, and the calls.
    void reactToChange(const Control &control);
    /// What a loaded value means: the enabling and disabling only. Opening a window must not press buttons.
    void reactToState(const Control &control);
    /// The call actions of an element that is no control: a button of the window, a dialog.
    void runCalls(const QDomElement &owner);
    /// One call action, whatever element it stands in: a time task is one too.
    void runCall(const QDomElement &action);
    /// True while actions act rather than the user.
    bool isRunning() const { return m_depth > 0; }
    /// \a permit decides about each call before it is made; it may wait for the user.
    using Permit = std::function<bool(const QWidget &target, const QString &slot, const QString &param)>;
    void setPermit(const Permit &permit) { m_permit = permit; }
    /// Runs \a wait, in which the user acts on: what happens there is no part of the actions that led to it.
    void suspend(const std::function<void()> &wait);

private:
    void setEnabled(const QDomElement &action, bool enabled);
    void invoke(const QPointer<QWidget> &target, const QDomElement &action);
    void setCaption(QWidget &target, const QDomElement &action);
    bool enter();
    void leave();

    ControlContext &m_context;
    BuiltDescription &m_description;
    Permit m_permit;
    int m_depth = 0;
    qsizetype m_work = 0;     ///< elements that actions have looked at since the outermost one began
    bool m_unwinding = false; ///< an endless chain was cut, and nothing more runs until it has ended
};

} // namespace paravue
