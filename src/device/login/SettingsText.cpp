#include "device/login/SettingsText.h"

#include "store/IniGrammar.h"

namespace paravue
{

namespace
{

bool isComment(const QString &line)
{
    return line.isEmpty() || line.startsWith(u';') || line.startsWith(u'#');
}

/// QSettings writes names that hold a "/" with a backslash.
QString withSlashes(QStringView name)
{
    return name.toString().replace(u'\\', u'/');
}

std::optional<QByteArray> decoded(QStringView value)
{
    const QByteArray hex = value.toUtf8().toLower();
    const QByteArray bytes = QByteArray::fromHex(hex);
    // fromHex() skips what is no digit.
    return bytes.toHex() == hex ? std::make_optional(bytes) : std::nullopt;
}

std::optional<SettingsMap> settingsOf(const QByteArray &text)
{
    SettingsMap settings;
    QString group = QStringLiteral("General");
    for (const QByteArray &bytes : text.split('\n')) {
        const QString line = QString::fromUtf8(bytes).trimmed();
        if (isComment(line))
            continue;
        const QString whole = line + u'\n';
        const auto parsed = scanIniLine(QStringView(whole), EmptyValue::IsKey);
        if (parsed.kind == parsed.Section) {
            group = withSlashes(parsed.name);
        } else if (parsed.kind == parsed.Key) {
            const auto value = decoded(parsed.value);
            if (!value)
                return {};
            settings[group + u'/' + withSlashes(parsed.name)] = *value;
        } else {
            return {};
        }
    }
    return settings;
}

} // namespace

std::optional<SettingsMap> parseSettings(const QByteArray &text)
{
    const auto settings = settingsOf(text);
    // Names in a damaged file may read as something else when they are written in their usual form, as
    // comments for example.
    return settings && settingsOf(settingsText(*settings)) == settings ? settings : std::nullopt;
}

QByteArray settingsText(const SettingsMap &settings)
{
    QByteArray text;
    QString group;
    for (auto entry = settings.cbegin(); entry != settings.cend(); ++entry) {
        // A group of a damaged file may begin with "/". A header without a name would be no header.
        const qsizetype groupEnd = entry.key().indexOf(u'/', 1);
        const QString entryGroup = entry.key().left(groupEnd);
        if (entryGroup != group) {
            text += (text.isEmpty() ? "[" : "\r\n[") + entryGroup.toUtf8() + "]\r\n";
            group = entryGroup;
        }
        text += entry.key().sliced(groupEnd + 1).toUtf8() + '=' + entry->toHex() + "\r\n";
    }
    return text;
}

} // namespace paravue
