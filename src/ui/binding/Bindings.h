#pragma once

#include "ui/binding/FileAccessGuard.h"
#include "ui/description/Assignment.h"

#include <QList>
#include <QStringList>

class QWidget;

namespace paravue
{

class ActionRunner;
class ControlContext;
class ControlTable;
class EditSteps;
struct Control;
struct ValueEdit;

/// Carries values between the configuration store and the controls.
class Bindings
{
public:
    Bindings(ControlContext &context, ActionRunner &actions, FileAccessGuard &paths);

    /// First load of controls that were just built: each shows its value, then runs its state actions. Writes
    /// nothing and runs no calls.
    void loadNew(const QList<int> &numbers);
    /// Reloads all controls.
    void reload();
    /// The user has changed the value of \a sender.
    void changed(QWidget *sender);
    /// Writes all of them into the store, and then reloads each control that shows any of the addresses.
    void write(const QList<Assignment> &assignments, ValueOrigin origin = ValueOrigin::Description);

    /// Sets these values to what they have behind them ("after") and shows them.
    void putBack(const QList<ValueEdit> &edits);
    /// \a show is called whenever a control was loaded or edited, so that it may hold another value.
    void setControlObserver(const std::function<void(const Control &)> &show) { m_controlShown = show; }
    /// What is written from now on can be undone with \a steps.
    void setEditSteps(EditSteps *steps) { m_steps = steps; }

    /// A value was changed that belongs to the recorder, since setEdited(false). Files that are only of this
    /// computer, such as "general", do not count.
    bool isEdited() const { return m_isEdited; }
    void setEdited(bool isEdited) { m_isEdited = isEdited; }

    /// \a show is called when the language was changed, after all controls were reloaded.
    void setLanguageObserver(const std::function<void()> &show) { m_languageChanged = show; }
    /// Writes what controls show of these addresses when that changes by itself: a function is going to send
    /// it.
    void writeRunningValues(const QStringList &addresses);

private:
    bool isValueToRead(const Control &control) const;
    void reload(Control &control);
    QList<int> dependants(const QStringList &paths) const;
    void reloadDependants(const QStringList &paths);
    void logChange(const QList<Assignment> &assignments);

    ControlContext &m_context;
    ControlTable &m_table;
    ActionRunner &m_actions;
    FileAccessGuard &m_fileAccess;
    std::function<void()> m_languageChanged;
    std::function<void(const Control &)> m_controlShown;
    EditSteps *m_steps = nullptr;
    bool m_isEdited = false;
    QString m_loggedChange; ///< the address that was logged last
};

} // namespace paravue
