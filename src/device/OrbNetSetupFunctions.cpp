#include "device/OrbNetSetup.h"

#include "device/CTimeZoner.h"
#include "device/LinkLog.h"
#include "device/protocol/DeviceCommands.h"
#include "device/protocol/Limits.h"
#include "store/LogText.h"

#include <QDateTime>
#include <QFile>
#include <QFileInfo>
#include <QTimer>

using namespace paravue;

namespace
{

constexpr char AdjustPicture[] = "adjust_bcsh";

/// What the clock of a recorder with the zone rule \a zone shows now, digit by digit.
QString clockDigits(const QString &zone)
{
    const CTimeZoner zoner(zone.toLocal8Bit());
    const qint64 local = zoner.toLocal(QDateTime::currentSecsSinceEpoch());
    return QDateTime::fromSecsSinceEpoch(local, Qt::UTC).toString(QStringLiteral("yyyyMMddhhmmss"));
}

/// Nothing when it cannot be read. What is no ordinary file, a pipe for example, might never end.
std::optional<QByteArray> packageContent(const QString &path)
{
    const QFileInfo info(path);
    QFile file(path);
    if (!info.isFile() || info.size() > MaxPackageBytes || !file.open(QIODevice::ReadOnly))
        return std::nullopt;
    const QByteArray content = file.readAll();
    return file.error() == QFileDevice::NoError ? std::optional(content) : std::nullopt;
}

} // namespace

void OrbNetSetup::function(const QString &name, const QString &arg)
{
    const DeviceCommand *command = findDeviceCommand(name);
    qCInfo(linkLog).noquote() << linkLogName(address()) << "function" << logText(name);
    if (!command) {
        OrbSetup::function(name, arg);
        return;
    }
    switch (command->kind) {
    case DeviceCommand::Kind::Cancel:
        Q_EMIT progress(100);
        break;
    case DeviceCommand::Kind::AdjustPicture:
        m_bcshTimer->start();
        break;
    case DeviceCommand::Kind::InstallPackage:
        installPackage(*command, arg);
        break;
    case DeviceCommand::Kind::SetClockToNow:
        runCommand(*command, [this](const QString &zone) { return clockDigits(value(zone)); });
        break;
    case DeviceCommand::Kind::Simple:
        runCommand(*command, [this](const QString &address) { return value(address); });
        break;
    }
}

OrbSetup::FunctionUse OrbNetSetup::useOfFunction(const QString &name, const QString &arg)
{
    const DeviceCommand *command = findDeviceCommand(name);
    if (!command)
        return {name == u"save_settings"};
    const bool startsExchange =
        command->kind != DeviceCommand::Kind::Cancel && command->kind != DeviceCommand::Kind::AdjustPicture;
    FunctionUse use{.startsExchange = startsExchange, .danger = command->danger};
    if (command->kind == DeviceCommand::Kind::InstallPackage)
        use.addresses << arg;
    for (const char *address : command->addresses) {
        if (address)
            use.addresses << QString::fromLatin1(address);
    }
    return use;
}

void OrbNetSetup::runCommand(const DeviceCommand &command,
                             const std::function<QString(const QString &)> &valueOf)
{
    _do_command(QString::fromLatin1(command.request), filledBody(command, valueOf),
                command.direction == DeviceCommand::Direction::Send);
}

void OrbNetSetup::installPackage(const DeviceCommand &command, const QString &address)
{
    const QString path = value(address);
    if (const auto content = packageContent(path))
        _do_command(QByteArray(command.request), *content, true);
    else
        Q_EMIT pseudothrow(tr("Can't read file \"%1\"").arg(path));
}

void OrbNetSetup::bcshTimer()
{
    if (m_state != Idle) {
        m_bcshTimer->start();
        return;
    }
    runCommand(*findDeviceCommand(QLatin1StringView(AdjustPicture)),
               [this](const QString &address) { return value(address); });
}
