#include "ui/binding/ActionRunner.h"

#include "ui/base/SafeText.h"
#include "ui/base/UiLimits.h"
#include "ui/base/WindowText.h"
#include "ui/binding/BuiltDescription.h"
#include "ui/binding/CallableSlot.h"
#include "ui/binding/ControlAdapter.h"
#include "ui/binding/ControlContext.h"

#include <QAbstractButton>
#include <QLabel>
#include <QLoggingCategory>
#include <QScopedValueRollback>

namespace paravue
{
namespace
{

Q_LOGGING_CATEGORY(actionLog, "paravue.actions")

bool isCall(const QDomElement &action)
{
    return action.attribute(QStringLiteral("type")) == QLatin1String("call");
}

QList<QDomElement> actionsOf(const QDomElement &owner)
{
    // A copy: an action may change the document, or replace it.
    QList<QDomElement> actions;
    for (QDomElement action = owner.firstChildElement(QStringLiteral("action")); !action.isNull();
         action = action.nextSiblingElement(QStringLiteral("action")))
        actions.append(action);
    return actions;
}

} // namespace

/// The actions of one element. Those of the outermost one are what a gesture has started.
class ActionRunner::Group
{
public:
    Group(ActionRunner &runner, QWidget *origin) : m_runner(runner)
    {
        if (m_runner.m_groups++ == 0)
            m_runner.m_origin = origin;
    }
    ~Group()
    {
        if (--m_runner.m_groups > 0)
            return;
        m_runner.m_isAbandoned = false;
        m_runner.m_origin = nullptr;
    }
    Q_DISABLE_COPY_MOVE(Group)

private:
    ActionRunner &m_runner;
};

ActionRunner::ActionRunner(ControlContext &context) : m_context(context), m_description(context.description())
{
}

void ActionRunner::reactToChange(const Control &control)
{
    const QString actionState = control.adapter->actionState(control);
    const QString callState = control.adapter->callState(control);
    const bool runsCalls = control.adapter->traits().runsCalls;
    const Group group(*this, control.widget);
    for (const QDomElement &action : actionsOf(control.element)) {
        const QString &state = isCall(action) ? callState : actionState;
        const bool asksForState = action.hasAttribute(QStringLiteral("state"));
        if (asksForState && (state.isEmpty() || action.attribute(QStringLiteral("state")) != state))
            continue;
        if (isCall(action)) {
            if (asksForState || runsCalls)
                runCall(action);
        } else if (asksForState) {
            setEnabled(action, action.attribute(QStringLiteral("type")) == QLatin1String("enable"));
        }
    }
}

void ActionRunner::reactToState(const Control &control)
{
    const QString state = control.adapter ? control.adapter->actionState(control) : QString();
    if (state.isEmpty())
        return;
    for (QDomElement action = control.element.firstChildElement(QStringLiteral("action")); !action.isNull();
         action = action.nextSiblingElement(QStringLiteral("action"))) {
        if (!isCall(action) && action.attribute(QStringLiteral("state")) == state)
            setEnabled(action, action.attribute(QStringLiteral("type")) == QLatin1String("enable"));
    }
}

void ActionRunner::runCalls(const QDomElement &owner)
{
    const Group group(*this, nullptr);
    for (const QDomElement &action : actionsOf(owner)) {
        if (isCall(action))
            runCall(action);
    }
}

void ActionRunner::setEnabled(const QDomElement &action, bool enabled)
{
    if (!enabled && action.attribute(QStringLiteral("type")) != QLatin1String("disable"))
        return;
    for (QWidget *widget : m_description.widgets(action.text().trimmed())) {
        // A disabled window could not be closed any more.
        if (!widget->isWindow() && widget->testAttribute(Qt::WA_ForceDisabled) == enabled)
            widget->setEnabled(enabled);
    }
}

void ActionRunner::runCall(const QDomElement &action)
{
    if (!enter())
        return;
    const QString tag = action.text().trimmed();
    m_work += 1 + m_description.document().elements(tag).size();
    QList<QPointer<QWidget>> widgets;
    for (QWidget *widget : m_description.widgets(tag))
        widgets.append(widget);
    if (widgets.isEmpty())
        qCWarning(actionLog) << "no control has the tag" << action.text();
    for (const QPointer<QWidget> &widget : widgets) {
        if (widget && !m_unwinding && !m_isAbandoned)
            invoke(widget, action);
    }
    leave();
}

void ActionRunner::suspend(const std::function<void()> &wait)
{
    const QScopedValueRollback depth(m_depth, 0);
    const QScopedValueRollback work(m_work, qsizetype(0));
    const QScopedValueRollback unwinding(m_unwinding, false);
    const QScopedValueRollback groups(m_groups, 0);
    const QScopedValueRollback abandoned(m_isAbandoned, false);
    const QScopedValueRollback origin(m_origin, QPointer<QWidget>());
    wait();
}

void ActionRunner::invoke(const QPointer<QWidget> &target, const QDomElement &action)
{
    const QString slot = action.attribute(QStringLiteral("slot"), QStringLiteral("setText"));
    const bool hasParam = action.hasAttribute(QStringLiteral("param"));
    const QMetaObject &widgetClass = *target->metaObject();
    if (setsCaption(widgetClass, slot, hasParam)) {
        setCaption(*target, action);
        return;
    }
    const QMetaMethod method = callableSlot(widgetClass, slot, hasParam);
    if (!method.isValid()) {
        qCWarning(actionLog) << widgetClass.className() << "has no slot" << slot
                             << (hasParam ? "with a text" : "without an argument");
        return;
    }
    if (!hasParam) {
        method.invoke(target, Qt::DirectConnection);
        return;
    }
    const QString param = m_context.text(action.attribute(QStringLiteral("param")));
    const QScopedValueRollback running(m_action, action);
    // The name of the slot that was found: the requested name may have blanks around it.
    const bool isPermitted = !m_permit || m_permit(*target, QString::fromLatin1(method.name()), param);
    if (isPermitted && target)
        method.invoke(target, Qt::DirectConnection, Q_ARG(QString, param));
}

void ActionRunner::setCaption(QWidget &target, const QDomElement &action)
{
    const QString text = m_context.text(action.attribute(QStringLiteral("param")));
    if (auto *button = qobject_cast<QAbstractButton *>(&target)) {
        button->setText(text);
    } else if (auto *label = qobject_cast<QLabel *>(&target)) {
        label->setTextFormat(safeTextFormat(text));
        label->setText(text);
    }
}

bool ActionRunner::enter()
{
    if (m_unwinding || m_isAbandoned)
        return false;
    if (m_depth == 0)
        m_work = 0;
    // A limit of depth is not enough: ten actions that call ten actions each, and so on, would run for years.
    if (m_depth >= limits::ActionDepth || m_work >= limits::ActionWork) {
        m_unwinding = true;
        m_context.report(WindowText::tr("The actions of the interface description do not come to an end"));
        return false;
    }
    ++m_depth;
    return true;
}

void ActionRunner::leave()
{
    if (--m_depth == 0)
        m_unwinding = false;
}

} // namespace paravue
