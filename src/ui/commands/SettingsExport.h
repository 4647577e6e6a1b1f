#pragma once

#include "ui/description/Assignment.h"

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

    /// The present values of the listed addresses, each address once.
    QList<Assignment> values(OrbSetup &store) const;
    /// Those of \a assignments whose address is listed.
    QList<Assignment> listed(const QList<Assignment> &assignments) const;

private:
    void collect(const QDomElement &element);

    QStringList m_keys;
    QStringList m_patterns;
};

/// The line for \a assignment; nothing when there is none that reads back.
std::optional<QString> settingsLine(const Assignment &assignment);
/// The lines of \a text; what is no such line is left out.
QList<Assignment> readSettingsLines(const QByteArray &text);

} // namespace paravue
