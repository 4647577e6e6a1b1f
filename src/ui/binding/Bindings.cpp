#include "ui/binding/Bindings.h"

#include "store/OrbSetup.h"
#include "ui/base/WindowText.h"
#include "ui/binding/ActionRunner.h"
#include "ui/binding/ControlContext.h"
#include "ui/binding/ControlTable.h"
#include "ui/binding/ControlType.h"
#include "ui/binding/ToolTip.h"

#include <QSet>

namespace paravue
{

Bindings::Bindings(ControlContext &context, ControlTable &table, ActionRunner &actions, LocalPaths &paths)
    : m_context(context), m_table(table), m_actions(actions), m_paths(paths)
{
}

void Bindings::loadNew(const QList<int> &numbers)
{
    for (const int number : numbers) {
        Control *control = m_table.find(number);
        if (!control || !control->type || !control->widget)
            continue;
        control->type->load(m_context, *control);
        control->loaded = true;
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
    if (control.type && control.type->load(m_context, control))
        m_actions.reactToState(control);
}

void Bindings::changed(QWidget *sender)
{
    Control *control = m_table.of(sender);
    if (!control)
        return;
    if (!control->type) {
        m_context.report(
            WindowText::tr("Unknown control type action \"%1\"").arg(control->element.attribute("type")));
        return;
    }
    const int number = control->number;
    const bool isTyped = control->type->isTyped(*control) && !m_actions.isRunning();
    write(control->type->assignments(m_context, *control),
          isTyped ? ValueOrigin::Person : ValueOrigin::Description);
    // A write can lead anywhere, even to a new description.
    control = m_table.find(number);
    if (control && control->widget == sender)
        m_actions.reactToChange(*control);
}

void Bindings::write(const QString &assignment, ValueOrigin origin)
{
    write(QStringList(assignment), origin);
}

void Bindings::write(const QStringList &assignments, ValueOrigin origin)
{
    // A list shows thousands of addresses and writes all of them: whoever shows several is reloaded once.
    QList<int> dependants;
    QSet<int> known;
    for (const QString &assignment : assignments) {
        m_context.store().setValue(assignment);
        m_paths.written(assignment, origin);
        for (const int number : m_table.dependants(OrbSetup::path(assignment))) {
            if (known.contains(number))
                continue;
            known.insert(number);
            dependants.append(number);
        }
    }
    for (const int number : dependants) {
        if (Control *control = m_table.find(number))
            reload(*control);
    }
}

} // namespace paravue
