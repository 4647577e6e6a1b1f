#include "recorder/device/ConfigService.h"

#include "recorder/device/MeasuredValues.h"
#include "recorder/files/Gzip.h"
#include "recorder/files/IniValues.h"

#include <algorithm>

namespace recorder
{

namespace
{

constexpr char ClockKey[] = "/YYYYMMDDHHMMSS";
constexpr char ZoneKey[] = "/TIME_ZONE";

/// The zone of a time file; the default zone when its rule cannot be read.
ZoneRule zoneOf(const QByteArray &timeFile)
{
    const std::optional<ZoneRule> zone = ZoneRule::parse(iniValues(timeFile).value(ZoneKey));
    return zone ? *zone : ZoneRule::parse({}).value_or(ZoneRule());
}

} // namespace

ConfigService::ConfigService(const QString &dataDir, const QString &model)
    : m_folder(dataDir, model), m_clock(m_folder), m_functions(m_folder)
{
}

QList<Account> ConfigService::accounts() const
{
    return readAccounts(m_folder.read(QStringLiteral("users")).value_or(QByteArray()));
}

std::optional<Account> ConfigService::login(const QByteArray &name, const QByteArray &password) const
{
    return findAccount(accounts(), name, password);
}

bool ConfigService::mayTurnCameras(const Account &account) const
{
    if (account.level != OperatorLevel)
        return account.level > OperatorLevel;
    const QByteArray users = m_folder.read(QStringLiteral("users")).value_or(QByteArray());
    return iniValues(users).value("/OPERATOR_PTZ") == "on";
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
    const QByteArray content =
        isTime ? mergedTime(body)
               : withMeasuredValues(file, body, m_folder.read(file).value_or(QByteArray()));
    if (!m_folder.replace(file, content))
        return errorAnswer(QStringLiteral("the file %1 cannot be written").arg(file));
    if (isTime)
        setClock(body, content);
    return okAnswer();
}

Answer ConfigService::run(const Command &command, const QByteArray &body, const Account &account) const
{
    if (account.level < command.level)
        return errorAnswer(
            QStringLiteral("the user %1 may not do that").arg(QString::fromUtf8(account.name)));
    const QByteArray timeFile = m_folder.read(QStringLiteral("time")).value_or(QByteArray());
    return m_functions.run(command.function, body, m_clock.reading(zoneOf(timeFile)));
}

QByteArray ConfigService::packedInterface(const QByteArray &plain)
{
    if (isGzip(plain))
        return plain;
    if (m_interface.plain != plain || m_interface.gzip.isEmpty())
        m_interface = {plain, gzip(plain)};
    return m_interface.gzip;
}

/// The stored file has the clock key as a client sent it, usually empty. Clients get the present time in it.
QByteArray ConfigService::withClock(const QByteArray &timeFile) const
{
    if (!iniValues(timeFile).contains(ClockKey))
        return timeFile;
    return withIniValues(timeFile, {{ClockKey, m_clock.digits(zoneOf(timeFile))}});
}

QString ConfigService::fault(const QString &file, const QByteArray &body, const Account &account) const
{
    if (account.level < OperatorLevel)
        return QStringLiteral("the user %1 may not change settings").arg(QString::fromUtf8(account.name));
    if (const QString reason = iniFault(body); !reason.isEmpty())
        return reason;
    if (file == QLatin1String("users"))
        return usersFault(body, account);
    if (file == QLatin1String("time"))
        return timeFault(body);
    return {};
}

/// Clients send every file when they save, so the users file of an operator is accepted if it changes
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

QString ConfigService::timeFault(const QByteArray &body) const
{
    const QMap<QByteArray, QByteArray> sent = iniValues(body);
    const QByteArray digits = sent.value(ClockKey);
    if (!digits.isEmpty() && !RecorderClock::isValid(digits))
        return QStringLiteral("wrong date or time");
    if (!ZoneRule::parse(sent.value(ZoneKey)))
        return QStringLiteral("wrong time zone");
    // A client that saves all files may have no server; one that asks for synchronisation must name it.
    const bool asksForTime = sent.value("/NTP_SYNC") == "1" && !sent.contains(ClockKey);
    return asksForTime && sent.value("/TIME_SERVER").isEmpty() ? QStringLiteral("there is no time server")
                                                               : QString();
}

/// A client may send only some values of the time file, for example to set the clock. The others stay.
QByteArray ConfigService::mergedTime(const QByteArray &body) const
{
    const QByteArray kept = m_folder.read(QStringLiteral("time")).value_or(QByteArray());
    const QMap<QByteArray, QByteArray> sent = iniValues(body);
    const QList<QByteArray> keptKeys = iniValues(kept).keys();
    const bool complete = std::all_of(keptKeys.begin(), keptKeys.end(),
                                      [&](const QByteArray &key) { return sent.contains(key); });
    if (complete)
        return body;
    return withIniValues(kept, sent);
}

void ConfigService::setClock(const QByteArray &sent, const QByteArray &timeFile) const
{
    const QMap<QByteArray, QByteArray> values = iniValues(sent);
    // Clients that save all files send an empty value, which sets nothing.
    if (!m_clock.set(values.value(ClockKey), zoneOf(timeFile)) && values.value("/USENTP") == "1" &&
        !values.value("/TIME_SERVER").isEmpty())
        m_clock.synchronise();
}

} // namespace recorder
