#pragma once

#include <QByteArray>
#include <QList>
#include <QString>
#include <QStringList>

#include <optional>

class OrbSetup;
class QDomElement;

/// Settings as a file of this computer, UTF-8 text with one line per value:
///
///     file/section/key = 'value'
///
/// The line is a key line of the store's own files, so the value stands in double quotes when it holds a
/// single quote. What holds both, or a line end, has no such line.
namespace paravue
{

/// The addresses that an element of the description lists: its "key" elements and, by a pattern for section
/// and key, its "regexp_key" elements.
class SettingsSection
{
public:
    explicit SettingsSection(const QDomElement &element);

    /// The present values of the listed addresses, as address/value, each address once.
    QStringList values(OrbSetup &store) const;
    /// Those of \a assignments (address/value) whose address is listed.
    QStringList listed(const QStringList &assignments) const;

private:
    void collect(const QDomElement &element);

    QStringList m_keys;
    QStringList m_patterns;
};

/// The line for \a assignment (address/value); nothing when there is none that reads back.
std::optional<QString> settingsLine(const QString &assignment);
/// The lines of \a text as address/value; what is no such line is left out.
QStringList readSettingsLines(const QByteArray &text);

} // namespace paravue
