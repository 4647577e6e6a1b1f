#pragma once

#include <QString>
#include <QStringList>

#include <functional>

class OrbSetup;

namespace paravue
{

class ControlTable;
class TextResolver;
struct Control;

/// What a control type needs of the window it is built into.
class ControlContext
{
public:
    /// \a report receives translated messages for the user. All must outlive the context.
    ControlContext(OrbSetup &store, TextResolver &texts, ControlTable &table,
                   std::function<void(const QString &)> report);

    OrbSetup &store() { return m_store; }

    /// The visible form of \a raw. The control is reloaded whenever a value that the text shows is written.
    QString text(const Control &control, const QString &raw);
    /// The visible form of \a raw for a text that is used once and not followed.
    QString text(const QString &raw);
    /// The value at \a address. The control is reloaded whenever a value is written there.
    QString value(const Control &control, const QString &address);
    void watch(const Control &control, const QString &address);

    void report(const QString &message) { m_report(message); }

private:
    QString withinLimits(const QString &text, bool withinLimits);

    OrbSetup &m_store;
    TextResolver &m_texts;
    ControlTable &m_table;
    std::function<void(const QString &)> m_report;
};

} // namespace paravue
