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

struct Line {
    QString address;
    QString value;
};

/// \a line ends with its line feed.
std::optional<Line> readLine(QString line)
{
    if (line.endsWith(QLatin1String("\r\n")))
        line.remove(line.size() - 2, 1);
    const auto scanned = scanIniLine(QStringView(line), EmptyValue::IsKey);
    if (scanned.kind != IniLine<QStringView>::Key || !ConfigAddress(scanned.name).hasKey())
        return std::nullopt;
    return Line{scanned.name.toString(), scanned.value.toString()};
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

QStringList SettingsSection::values(OrbSetup &store) const
{
    QStringList found;
    for (const QString &key : m_keys)
        found.append(OrbSetup::path(key) + u'/' + store.value(key));
    for (const QString &pattern : m_patterns)
        found.append(store.regexp_values(pattern));

    QStringList once;
    QSet<QString> known;
    for (const QString &assignment : std::as_const(found)) {
        const QString path = OrbSetup::path(assignment);
        if (!known.contains(path))
            once.append(assignment);
        known.insert(path);
    }
    return once;
}

QStringList SettingsSection::listed(const QStringList &assignments) const
{
    QSet<QString> keys;
    for (const QString &key : m_keys)
        keys.insert(OrbSetup::path(key));
    std::vector<std::pair<QString, TextPattern>> patterns; // by file
    for (const QString &pattern : m_patterns) {
        const ConfigAddress parts(pattern);
        patterns.emplace_back(parts.file().toString(), TextPattern(parts.entry().toString()));
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
    QStringList result;
    for (const QString &assignment : assignments) {
        if (isListed(ConfigAddress(assignment)))
            result.append(assignment);
    }
    return result;
}

std::optional<QString> settingsLine(const QString &assignment)
{
    const ConfigAddress parts(assignment);
    const QString address = parts.path().toString();
    const QString value = parts.rest().toString();
    const QChar quote = value.contains(u'\'') ? u'"' : u'\'';
    const QString line = address + QStringLiteral(" = ") + quote + value + quote + QStringLiteral("\r\n");
    const auto back = readLine(line);
    return back && back->address == address && back->value == value ? std::optional(line) : std::nullopt;
}

QStringList readSettingsLines(const QByteArray &text)
{
    QStringList assignments;
    for (const QString &line : QString::fromUtf8(text).split(u'\n')) {
        if (const auto read = readLine(line + u'\n'))
            assignments.append(read->address + u'/' + read->value);
    }
    return assignments;
}

} // namespace paravue
