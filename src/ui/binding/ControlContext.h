#pragma once

#include "ui/description/StoreReference.h"

#include <QScopedValueRollback>
#include <QSet>
#include <QString>
#include <QStringList>

#include <array>
#include <functional>

namespace paravue
{

class BuiltDescription;
struct Control;

/// What adapters and tasks need of the window.
class ControlContext
{
public:
    /// \a report receives translated messages for the user. All must outlive the context.
    ControlContext(OrbSetup &store, BuiltDescription &description,
                   std::function<void(const QString &)> report);

    OrbSetup &store() { return *m_store; }
    BuiltDescription &description() { return m_description; }

    /// The visible form of \a raw. The control is reloaded whenever a value that the text shows is written.
    QString text(const Control &control, const QString &raw);
    /// The visible form of \a raw, without a reload when its values change.
    QString text(const QString &raw);
    /// The value at \a address. The control is reloaded whenever a value is written there.
    QString value(const Control &control, const QString &address);
    void watch(const Control &control, const QString &address);

    void report(const QString &message) { m_report(message); }
    /// Reports a problem that would recur at every change once per description.
    void reportOnce(const QString &message);

    /// True while a time task runs.
    bool isUnattended() const { return m_isUnattended; }

    enum Resource { Characters, ListCells, GridLines, Items };
    /// Charges \a amount to the budget of the present operation. False, with one message to the user per
    /// operation, when the budget is exhausted.
    bool take(Resource resource, qsizetype amount);
    /// Resets the budget: a new operation begins.
    void startOver();
    /// Resets what is kept per description.
    void startDescription() { m_reported.clear(); }

private:
    friend class UnattendedScope;

    template <class Resolve>
    QString resolved(const QString &raw, Resolve resolve);

    StoreReference m_store;
    BuiltDescription &m_description;
    std::function<void(const QString &)> m_report;
    std::array<qsizetype, 4> m_left{}; ///< by resource
    bool m_isExhausted = false;
    bool m_isUnattended = false;
    QSet<QString> m_reported;
};

/// Says until the end of the scope whether a time task or the user acts. Scopes nest: the user may act in a
/// dialog that a task has opened.
class UnattendedScope
{
public:
    UnattendedScope(ControlContext &context, bool isUnattended) : m_flag(context.m_isUnattended, isUnattended)
    {
    }

private:
    QScopedValueRollback<bool> m_flag;
};

} // namespace paravue
