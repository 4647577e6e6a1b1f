#include "ui/commands/SettingsExport.h"

#include "store/ConfigAddress.h"
#include "store/IniGrammar.h"
#include "store/OrbSetup.h"
#include "store/TextPattern.h"
#include "ui/description/InterfaceDocument.h"

#include <QDomElement>
#include <QSet>

#include <utility>
#include <vector>

namespace paravue
{
namespace
{

/// \a line ends with its line feed.
std::optional<Assignment> readLine(QString line)
{
    if (line.endsWith(QLatin1String("\r\n")))
        line.remove(line.size() - 2, 1);
    const auto scanned = scanIniLine(QStringView(line), EmptyValue::IsKey);
    if (scanned.kind != IniLine<QStringView>::Key || !ConfigAddress(scanned.name).hasKey())
        return std::nullopt;
    return Assignment::fromText(scanned.name.toString() + u'/' + scanned.value.toString());
}

} // namespace

SettingsSection::SettingsSection(const QDomElement &element)
{
    collect(element);
}

void SettingsSection::collect(const QDomElement &element)
{
    for (QDomElement child = element.firstChildElement(); !child.isNull();
         child = child.nextSiblingElement()) {
        if (child.tagName() == QLatin1String("key"))
            m_keys.append(addressText(child));
        else if (child.tagName() == QLatin1String("regexp_key"))
            m_patterns.append(addressText(child));
        else
            collect(child);
    }
}

QList<Assignment> SettingsSection::values(OrbSetup &store) const
{
    QList<Assignment> found;
    for (const QString &key : m_keys)
        found.append({OrbSetup::path(key), store.value(key)});
    for (const QString &pattern : m_patterns) {
        for (const QString &value : store.regexp_values(pattern))
            found.append(Assignment::fromText(value));
    }
    QList<Assignment> once;
    QSet<QString> known;
    for (const Assignment &assignment : std::as_const(found)) {
        if (!known.contains(assignment.path))
            once.append(assignment);
        known.insert(assignment.path);
    }
    return once;
}

QList<Assignment> SettingsSection::listed(const QList<Assignment> &assignments) const
{
    QSet<QString> keys;
    for (const QString &key : m_keys)
        keys.insert(OrbSetup::path(key));
    std::vector<std::pair<QString, TextPattern>> patterns; // by file
    for (const QString &pattern : m_patterns) {
        const ConfigAddress parts(pattern);
        patterns.emplace_back(parts.file().toString(), TextPattern::ofRecorder(parts.entry().toString()));
    }
    const auto isListed = [&](const ConfigAddress &address) {
        if (keys.contains(address.path().toString()))
            return true;
        for (const auto &[file, pattern] : patterns) {
            if (address.file() == file && pattern.matchesWhole(address.entry().toString()))
                return true;
        }
        return false;
    };
    QList<Assignment> result;
    for (const Assignment &assignment : assignments) {
        if (isListed(ConfigAddress(assignment.path)))
            result.append(assignment);
    }
    return result;
}

std::optional<QString> settingsLine(const Assignment &assignment)
{
    const QString &value = assignment.value;
    const QChar quote = value.contains(u'\'') ? u'"' : u'\'';
    const QString line =
        assignment.path + QStringLiteral(" = ") + quote + value + quote + QStringLiteral("\r\n");
    const auto back = readLine(line);
    const bool readsBack = back && back->path == assignment.path && back->value == value;
    return readsBack ? std::optional(line) : std::nullopt;
}

QList<Assignment> readSettingsLines(const QByteArray &text)
{
    QList<Assignment> assignments;
    for (const QString &line : QString::fromUtf8(text).split(u'\n')) {
        if (const auto read = readLine(line + u'\n'))
            assignments.append(*read);
    }
    return assignments;
}

} // namespace paravue
