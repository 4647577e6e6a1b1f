#include "ui/binding/Bindings.h"

#include "controls/ControlStyle.h"
#include "controls/WindowLook.h"
#include "store/OrbSetup.h"
#include "ui/base/WindowText.h"
#include "ui/binding/ActionRunner.h"
#include "ui/binding/BuiltDescription.h"
#include "ui/binding/ControlAdapter.h"
#include "ui/binding/ControlContext.h"
#include "ui/binding/EditSteps.h"
#include "ui/binding/FieldNotes.h"
#include "ui/binding/ToolTip.h"
#include "ui/description/TextResolver.h"

#include <QLoggingCategory>
#include <QPushButton>
#include <QScopedValueRollback>
#include <QSet>

namespace paravue
{

namespace
{

Q_LOGGING_CATEGORY(valueLog, "paravue.values", QtWarningMsg)

/// True for a new value in a file that is sent to the recorder.
bool changesRecorder(OrbSetup &store, const Assignment &assignment)
{
    const QString &path = assignment.path;
    const bool isLocal = path.startsWith(QLatin1String("general/")) || path.startsWith(QLatin1String("tmp/"));
    return !isLocal && assignment.hasValue && ConfigAddress(path).hasKey() &&
           store.value(path) != assignment.value;
}

} // namespace

Bindings::Bindings(ControlContext &context, ActionRunner &actions, FileAccessGuard &paths)
    : m_context(context), m_table(context.description().table()), m_actions(actions), m_fileAccess(paths)
{
}

/// A control that the user can never use only shows its value.
bool Bindings::isValueToRead(const Control &control) const
{
    if (control.widget->isEnabled())
        return false;
    const bool isButton = qobject_cast<QPushButton *>(control.widget);
    return !isButton && !control.adapter->traits().hasPages &&
           m_context.description().enableTargets().leaveDisabled(control.element);
}

void Bindings::loadNew(const QList<int> &numbers)
{
    for (const int number : numbers) {
        Control *control = m_table.find(number);
        if (!control || !control->adapter || !control->widget)
            continue;
        WindowLook::styleControls(*control->widget);
        if (isValueToRead(*control))
            showAsValue(*control->widget);
        control->adapter->load(m_context, *control);
        loadFieldNotes(m_context, *control);
        control->loaded = true;
        if (m_controlShown)
            m_controlShown(*control);
        m_actions.reactToState(*control);
    }
}

void Bindings::reload()
{
    for (const int number : m_table.numbersSince(0)) {
        if (Control *control = m_table.find(number))
            reload(*control);
    }
}

void Bindings::reload(Control &control)
{
    if (!control.widget)
        return;
    loadToolTip(m_context, control);
    const bool hasChanged = control.adapter && control.adapter->load(m_context, control);
    loadFieldNotes(m_context, control);
    if (m_controlShown)
        m_controlShown(control);
    if (hasChanged)
        m_actions.reactToState(control);
}

void Bindings::changed(QWidget *sender)
{
    Control *control = m_table.of(sender);
    if (!control)
        return;
    if (!control->adapter) {
        m_context.report(
            WindowText::tr("Unknown control type action \"%1\"").arg(control->element.attribute("type")));
        return;
    }
    const EditSteps::Gesture gesture(m_steps, control->adapter->historyMove(*control));
    const int number = control->number;
    const QList<Assignment> assignments = control->adapter->assignments(m_context, *control);
    logChange(assignments);
    const bool isTyped = control->adapter->isTyped(*control) && !m_actions.isRunning();
    write(assignments, isTyped ? ValueOrigin::Person : ValueOrigin::Description);
    // A write may run any code, even replace the description.
    control = m_table.find(number);
    if (!control || control->widget != sender)
        return;
    if (m_controlShown && assignments.isEmpty()) // nothing was loaded again
        m_controlShown(*control);
    m_actions.reactToChange(*control);
}

/// Once while one value is edited, and without the value, which may be a password.
void Bindings::logChange(const QList<Assignment> &assignments)
{
    const QString path = assignments.isEmpty() ? QString() : assignments.constFirst().path;
    if (path != m_loggedChange && !path.isEmpty())
        qCInfo(valueLog).noquote() << "changed" << path;
    m_loggedChange = path;
}

void Bindings::write(const QList<Assignment> &assignments, ValueOrigin origin)
{
    const EditSteps::Gesture gesture(m_steps);
    QStringList paths;
    for (const Assignment &given : assignments) {
        const QString text = given.text();
        m_isEdited = m_isEdited || changesRecorder(m_context.store(), given);
        // When the key of the description is no complete address, the value supplies the rest of it.
        const bool isAddress = ConfigAddress(given.path).hasKey();
        const Assignment assignment = isAddress ? given : Assignment::fromText(text);
        if (m_steps && assignment.hasValue && !m_context.isUnattended())
            m_steps->note(assignment.path);
        m_context.store().setValue(text);
        m_fileAccess.written(assignment, origin);
        paths << assignment.path;
    }
    reloadDependants(paths);
}

void Bindings::putBack(const QList<ValueEdit> &edits)
{
    QStringList paths;
    for (const ValueEdit &edit : edits) {
        m_context.store().putBack(edit.path, edit.after);
        // The value may have come from the recorder once.
        m_fileAccess.written({edit.path, edit.after.value_or(QString())}, ValueOrigin::Description);
        paths << edit.path;
    }
    reloadDependants(paths);
}

/// A list may write thousands of addresses; a control that shows several of them is reloaded once.
QList<int> Bindings::dependants(const QStringList &paths) const
{
    if (paths.size() == 1)
        return m_table.dependants(paths.first());
    QList<int> dependants;
    QSet<int> known;
    for (const QString &path : paths) {
        for (const int number : m_table.dependants(path)) {
            if (known.contains(number))
                continue;
            known.insert(number);
            dependants.append(number);
        }
    }
    return dependants;
}

void Bindings::reloadDependants(const QStringList &paths)
{
    const QList<int> numbers = dependants(paths); // loading may add to them
    if (paths.contains(TextResolver::LanguagePath)) {
        reload();
        if (m_languageChanged)
            m_languageChanged();
        return;
    }
    for (const int number : numbers) {
        if (Control *control = m_table.find(number))
            reload(*control);
    }
}

void Bindings::writeRunningValues(const QStringList &addresses)
{
    QList<Assignment> values;
    for (const QString &address : addresses) {
        for (const int number : m_table.dependants(OrbSetup::path(address))) {
            const Control *control = m_table.find(number);
            if (control && control->widget && control->adapter)
                values += control->adapter->runningValues(m_context, *control);
        }
    }
    // Nobody has edited them.
    const QScopedValueRollback edited(m_isEdited);
    const QScopedValueRollback<EditSteps *> steps(m_steps, nullptr);
    if (!values.isEmpty())
        write(values);
}

} // namespace paravue
