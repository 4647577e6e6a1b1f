#pragma once

#include <QScopedValueRollback>
#include <QSet>
#include <QString>
#include <QStringList>

#include <array>
#include <functional>

class OrbSetup;

namespace paravue
{

class BuiltDescription;
struct Control;

/// What a control type needs of the window it is built into.
class ControlContext
{
public:
    /// \a report receives translated messages for the user. All must outlive the context.
    ControlContext(OrbSetup &store, BuiltDescription &description,
                   std::function<void(const QString &)> report);

    OrbSetup &store() { return m_store; }
    BuiltDescription &description() { return m_description; }

    /// The visible form of \a raw. The control is reloaded whenever a value that the text shows is written.
    QString text(const Control &control, const QString &raw);
    /// The visible form of \a raw for a text that is used once and not followed.
    QString text(const QString &raw);
    /// The value at \a address. The control is reloaded whenever a value is written there.
    QString value(const Control &control, const QString &address);
    void watch(const Control &control, const QString &address);

    void report(const QString &message) { m_report(message); }
    /// For what would come up again at every change: says it once for each description.
    void reportOnce(const QString &message);

    /// True while a time task acts rather than the user.
    bool isUnattended() const { return m_isUnattended; }

    enum Resource { Characters, ListCells, GridLines };
    /// Takes \a amount from what the present operation may make. False, with one message to the user for the
    /// whole operation, when it is used up.
    bool take(Resource resource, qsizetype amount);
    /// A new operation begins.
    void startOver();
    /// Another description begins.
    void startDescription() { m_reported.clear(); }

private:
    friend class UnattendedScope;

    template <class Resolve>
    QString resolved(const QString &raw, Resolve resolve);

    OrbSetup &m_store;
    BuiltDescription &m_description;
    std::function<void(const QString &)> m_report;
    std::array<qsizetype, 3> m_left{}; ///< by resource
    bool m_isExhausted = false;
    bool m_isUnattended = false;
    QSet<QString> m_reported;
};

/// Who acts from here to the end of the scope: a time task, or the user, who may act within one.
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
