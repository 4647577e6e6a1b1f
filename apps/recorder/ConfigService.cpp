#include "ConfigService.h"

#include "Gzip.h"
#include "IniText.h"

#include <algorithm>

namespace recorder
{

namespace
{

constexpr char ClockName[] = "YYYYMMDDHHMMSS";
constexpr char ClockKey[] = "/YYYYMMDDHHMMSS";

} // namespace

ConfigService::ConfigService(const QString &dataDir) : m_folder(dataDir) {}

std::optional<Account> ConfigService::login(const QByteArray &name, const QByteArray &password) const
{
    const std::optional<QByteArray> users = m_folder.read(QStringLiteral("users"));
    return users ? findAccount(readAccounts(*users), name, password) : std::nullopt;
}

Answer ConfigService::get(const QString &file)
{
    const std::optional<QByteArray> content = m_folder.read(file);
    if (!content)
        return errorAnswer(QStringLiteral("there is no file %1").arg(file));
    if (file == QLatin1String("interface"))
        return okAnswer(packedInterface(*content));
    return okAnswer(file == QLatin1String("time") ? withClock(*content) : *content);
}

Answer ConfigService::put(const QString &file, const QByteArray &body, const Account &account)
{
    const QString reason = fault(file, body, account);
    if (!reason.isEmpty())
        return errorAnswer(reason);
    const bool isTime = file == QLatin1String("time");
    if (!m_folder.replace(file, isTime ? mergedTime(body) : body))
        return errorAnswer(QStringLiteral("the file %1 cannot be written").arg(file));
    if (isTime)
        setClock(body);
    return okAnswer();
}

QByteArray ConfigService::packedInterface(const QByteArray &plain)
{
    if (isGzip(plain))
        return plain;
    if (m_interface.plain != plain || m_interface.gzip.isEmpty())
        m_interface = {plain, gzip(plain)};
    return m_interface.gzip;
}

/// The kept file has the clock key as the client left it, usually empty; what is handed out tells the time.
QByteArray ConfigService::withClock(const QByteArray &timeFile) const
{
    if (!iniValues(timeFile).contains(ClockKey))
        return timeFile;
    return withIniValues(timeFile, {{ClockName, m_clock.digits()}});
}

QString ConfigService::fault(const QString &file, const QByteArray &body, const Account &account) const
{
    if (account.level < OperatorLevel)
        return QStringLiteral("the user %1 may not change settings").arg(QString::fromUtf8(account.name));
    if (const QString reason = iniFault(body); !reason.isEmpty())
        return reason;
    if (file == QLatin1String("users"))
        return usersFault(body, account);
    if (file == QLatin1String("time")) {
        const QByteArray digits = iniValues(body).value(ClockKey);
        if (!digits.isEmpty() && !RecorderClock::isValid(digits))
            return QStringLiteral("wrong date or time");
    }
    return {};
}

/// Clients send every file when they save, so an operator's users file is accepted as long as it changes
/// nothing.
QString ConfigService::usersFault(const QByteArray &body, const Account &account) const
{
    if (account.level >= AdministratorLevel)
        return accountsFault(body);
    const std::optional<QByteArray> kept = m_folder.read(QStringLiteral("users"));
    return kept && iniValues(*kept) == iniValues(body)
               ? QString()
               : QStringLiteral("only an administrator may change users");
}

/// A client may send some values of the time file only, to set the clock for example; the others stay.
QByteArray ConfigService::mergedTime(const QByteArray &body) const
{
    const QByteArray kept = m_folder.read(QStringLiteral("time")).value_or(QByteArray());
    const QMap<QByteArray, QByteArray> sent = iniValues(body);
    const QList<QByteArray> keptKeys = iniValues(kept).keys();
    const bool complete = std::all_of(keptKeys.begin(), keptKeys.end(),
                                      [&](const QByteArray &key) { return sent.contains(key); });
    if (complete)
        return body;
    QMap<QByteArray, QByteArray> named;
    for (auto value = sent.cbegin(); value != sent.cend(); ++value)
        named.insert(value.key().mid(value.key().indexOf('/') + 1), value.value());
    return withIniValues(kept, named);
}

void ConfigService::setClock(const QByteArray &timeFile)
{
    // An empty value, as clients send it that save everything, is no time and sets nothing.
    m_clock.set(iniValues(timeFile).value(ClockKey));
}

} // namespace recorder
