#include "device/login/SavedCredentials.h"

#include "device/protocol/DeviceAddress.h"

#include <QList>
#include <QRegularExpression>

namespace paravue
{

namespace
{

const QString CountKey = QStringLiteral("authorization/count");

QString numbered(const char *key, qsizetype number)
{
    return QStringLiteral("authorization/%1%2").arg(QLatin1StringView(key), QString::number(number));
}

QString comparable(const QByteArray &url)
{
    return comparableUrl(QString::fromLocal8Bit(url));
}

/// Numbers may be missing: a number without an url is no record. The count holds either way, whether the file
/// counts records or numbers.
QList<Credentials> savedRecords(const SettingsMap &settings)
{
    QList<Credentials> records;
    const int count = settings.value(CountKey).toInt();
    const qsizetype lastNumber = settings.size(); // there are five keys for each
    for (qsizetype i = 0; i < lastNumber && records.size() < count; ++i) {
        Credentials record;
        record.url = settings.value(numbered("url", i));
        if (record.url.isEmpty())
            continue;
        record.remember = true;
        record.name = settings.value(numbered("name", i));
        record.login = settings.value(numbered("login", i));
        record.level = settings.value(numbered("level", i)).toInt();
        record.password = settings.value(numbered("password", i));
        records << record;
    }
    return records;
}

void removeRecords(SettingsMap &settings)
{
    static const QRegularExpression recordKey(
        QStringLiteral("^authorization/(name|url|login|level|password)\\d+$"));
    settings.removeIf(
        [](const SettingsMap::iterator &entry) { return recordKey.match(entry.key()).hasMatch(); });
}

} // namespace

std::optional<Credentials> savedCredentials(const SettingsMap &settings, const QByteArray &url)
{
    const QString wanted = comparable(url);
    for (const Credentials &record : savedRecords(settings)) {
        if (comparable(record.url) == wanted)
            return record;
    }
    return {};
}

void saveCredentials(SettingsMap &settings, const Credentials &record)
{
    QList<Credentials> records = savedRecords(settings);
    const QString url = comparable(record.url);
    records.removeIf([&](const Credentials &other) { return comparable(other.url) == url; });
    if (record.remember)
        records << record;

    removeRecords(settings);
    for (qsizetype i = 0; i < records.size(); ++i) {
        const Credentials &kept = records.at(i);
        settings[numbered("name", i)] = kept.name;
        settings[numbered("url", i)] = kept.url;
        settings[numbered("login", i)] = kept.login;
        settings[numbered("level", i)] = QByteArray::number(kept.level);
        settings[numbered("password", i)] = kept.password;
    }
    settings[CountKey] = QByteArray::number(records.size());
}

} // namespace paravue
