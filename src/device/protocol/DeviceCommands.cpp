#include "device/protocol/DeviceCommands.h"

#include <algorithm>
#include <iterator>

namespace paravue
{

namespace
{

using Kind = DeviceCommand::Kind;
using Direction = DeviceCommand::Direction;
using Danger = DeviceCommand::Danger;

// Deliberate: e-mails on "DISC1" belong to "clear_email_disk", while formatting counts the disks from 1, and
// a package is "istalled". Recorders and their descriptions know these names.
constexpr DeviceCommand Commands[] = {
    {"clear_email_usb", "DO CLEAR EMAILS\r\n", "DISC='USB'\n", Danger::Data},
    {"clear_email_disk", "DO CLEAR EMAILS\r\n", "DISC='DISC1'\n", Danger::Data},
    {"clear_email_disk1", "DO CLEAR EMAILS\r\n", "DISC='DISC2'\n", Danger::Data},
    {"get_report", "GET REPORT\r\n", "", Danger::None, Kind::Simple, Direction::Fetch},
    {"soft_istall_packet", "INSTALL DEB\r\n", "", Danger::None, Kind::InstallPackage},
    {"remove_package",
     "PUT SOFT CONFIG\r\n",
     "PACKAGE_DELETE=%1\n",
     Danger::Data,
     Kind::Simple,
     Direction::Send,
     {"general/remove_package/name"}},
    {"cancel", "", "", Danger::None, Kind::Cancel},
    {"soft_reboot", "DO REBOOT\r\n", "", Danger::Restart},
    {"soft_reset", "RESET SETTINGS\r\n", "", Danger::Data},
    {"format_usb", "DO FORMAT\r\n", "DISC='USB'\n", Danger::Data},
    {"format_disk1", "DO FORMAT\r\n", "DISC='DISC1'\n", Danger::Data},
    {"format_disk2", "DO FORMAT\r\n", "DISC='DISC2'\n", Danger::Data},
    {"set_time_current",
     "PUT TIME CONFIG\r\n",
     "YYYYMMDDHHMMSS=%1",
     Danger::None,
     Kind::SetClockToNow,
     Direction::Send,
     {"time/untitled/TIME_ZONE"}},
    {"set_time",
     "PUT TIME CONFIG\r\n",
     "YYYYMMDDHHMMSS=%1\nTIME_ZONE=%2\n",
     Danger::None,
     Kind::Simple,
     Direction::Send,
     {"time/untitled/YYYYMMDDHHMMSS", "time/untitled/TIME_ZONE"}},
    {"set_time_ntp",
     "PUT TIME CONFIG\r\n",
     "USENTP=1\nTIME_SERVER=%1\nNTP_SYNC=1\nTIME_ZONE=%2\n",
     Danger::None,
     Kind::Simple,
     Direction::Send,
     {"time/untitled/TIME_SERVER", "time/untitled/TIME_ZONE"}},
    {"adjust_bcsh",
     "ADJUST VIDEO\r\n",
     "[ stream_0 ]\r\nbrightness=%0\r\ncontrast=%1\r\nsaturation=%2\r\nhue=%3\r\nsharpness=%4\r\n",
     Danger::None,
     Kind::AdjustPicture,
     Direction::Send,
     {"streams/stream_0/brightness", "streams/stream_0/contrast", "streams/stream_0/saturation",
      "streams/stream_0/hue", "streams/stream_0/sharpness"}},
    {"send_test_email", "SEND TEST EMAIL\r\n", ""},
};

bool isRunnable(const DeviceCommand &command)
{
    return command.kind != Kind::Cancel && command.kind != Kind::AdjustPicture;
}

} // namespace

const DeviceCommand *findDeviceCommand(const QString &name)
{
    const auto found = std::find_if(std::begin(Commands), std::end(Commands), [&](const DeviceCommand &row) {
        return name == QLatin1StringView(row.name);
    });
    return found == std::end(Commands) ? nullptr : &*found;
}

QStringList runnableCommandNames()
{
    QStringList names;
    for (const DeviceCommand &command : Commands) {
        if (isRunnable(command))
            names << QString::fromLatin1(command.name);
    }
    return names;
}

const DeviceCommand *runnableCommand(const QString &name)
{
    const DeviceCommand *command = findDeviceCommand(name);
    return command && isRunnable(*command) ? command : nullptr;
}

QString filledBody(const DeviceCommand &command,
                   const std::function<QString(const QString &address)> &valueOf)
{
    std::array<QString, DeviceCommand::MaxValues> values;
    size_t count = 0;
    while (count < values.size() && command.addresses[count]) {
        values[count] = valueOf(QString::fromLatin1(command.addresses[count]));
        ++count;
    }
    const QString body = QString::fromLatin1(command.body);
    // In one step each: a value may hold a placeholder.
    switch (count) {
    case 0:
        return body;
    case 1:
        return body.arg(values[0]);
    case 2:
        return body.arg(values[0], values[1]);
    default:
        return body.arg(values[0], values[1], values[2], values[3], values[4]);
    }
}

} // namespace paravue
