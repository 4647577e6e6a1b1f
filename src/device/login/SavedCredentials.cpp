#include "device/login/SavedCredentials.h"

#include "device/protocol/DeviceAddress.h"

#include <QList>
#include <QMultiMap>
#include <QRegularExpression>

#include <limits>

namespace paravue
{

namespace
{

const QString CountKey = QStringLiteral("authorization/count");

QString numbered(const char *key, const QString &number)
{
    return QStringLiteral("authorization/%1%2").arg(QLatin1StringView(key), number);
}

QString comparable(const QByteArray &url)
{
    return comparableUrl(QString::fromLocal8Bit(url));
}

/// The numbers of the records that have an url, as texts, in their order.
QStringList recordNumbers(const SettingsMap &settings)
{
    static const QRegularExpression urlKey(QStringLiteral("^authorization/url(\\d+)$"));
    QMultiMap<qulonglong, QString> numbers;
    for (auto entry = settings.cbegin(); entry != settings.cend(); ++entry) {
        const QString number = urlKey.match(entry.key()).captured(1);
        if (number.isEmpty() || entry->isEmpty())
            continue;
        bool fits = false;
        const qulonglong place = number.toULongLong(&fits);
        numbers.insert(fits ? place : std::numeric_limits<qulonglong>::max(), number);
    }
    return numbers.values();
}

/// Numbers may be missing, as after somebody has edited the file. The count ends the unbroken list from 0 on,
/// behind which a program may have left records of a longer one. What stands behind a gap is no such rest.
QList<Credentials> savedRecords(const SettingsMap &settings)
{
    QList<Credentials> records;
    const qsizetype count = settings.value(CountKey).toLongLong();
    qsizetype unbroken = 0;
    for (const QString &number : recordNumbers(settings)) {
        const bool isInList = number == QString::number(unbroken);
        if (isInList && unbroken++ >= count)
            continue;
        Credentials record;
        record.remember = true;
        record.url = settings.value(numbered("url", number));
        record.name = settings.value(numbered("name", number));
        record.login = settings.value(numbered("login", number));
        record.level = settings.value(numbered("level", number)).toInt();
        record.password = settings.value(numbered("password", number));
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
        const QString number = QString::number(i);
        settings[numbered("name", number)] = kept.name;
        settings[numbered("url", number)] = kept.url;
        settings[numbered("login", number)] = kept.login;
        settings[numbered("level", number)] = QByteArray::number(kept.level);
        settings[numbered("password", number)] = kept.password;
    }
    settings[CountKey] = QByteArray::number(records.size());
}

} // namespace paravue
