#pragma once

#include "ui/binding/LocalPaths.h"
#include "ui/description/Assignment.h"

#include <QList>

class QWidget;

namespace paravue
{

class ActionRunner;
class ControlContext;
class ControlTable;
struct Control;

/// Carries values between the configuration store and the controls.
class Bindings
{
public:
    Bindings(ControlContext &context, ActionRunner &actions, LocalPaths &paths);

    /// The first pass over controls that were just built: each shows its value, then enables and disables
    /// what depends on it. Writes nothing and calls nothing.
    void loadNew(const QList<int> &numbers);
    /// Shows the present values everywhere.
    void reload();
    /// The user has changed the value of \a sender.
    void changed(QWidget *sender);
    /// Writes all of them into the store, and then reloads each control that shows any of the addresses.
    void write(const QList<Assignment> &assignments, ValueOrigin origin = ValueOrigin::Description);

private:
    void reload(Control &control);

    ControlContext &m_context;
    ControlTable &m_table;
    ActionRunner &m_actions;
    LocalPaths &m_paths;
};

} // namespace paravue
