#pragma once

#include "store/OrbSetup.h"

#include <QString>
#include <QStringList>

#include <array>
#include <functional>

namespace paravue
{

/// A one-off command that the recorder accepts besides the exchange of files.
struct DeviceCommand {
    /// What the store has to do for it.
    enum class Kind {
        Simple,         ///< sends the request with the filled body
        InstallPackage, ///< the body is the file that the function's argument leads to
        SetClockToNow,  ///< the body holds the present time in the recorder's zone
        AdjustPicture,  ///< waits until the adjustments pause
        Cancel          ///< nothing goes over the wire
    };
    enum class Direction { Send, Fetch };
    using Danger = OrbSetup::FunctionDanger;

    static constexpr int MaxValues = 5;

    const char *name;
    const char *request; ///< with its line end
    const char *body;    ///< its placeholders stand for the values at the addresses, in ascending order
    Danger danger = Danger::None;
    Kind kind = Kind::Simple;
    Direction direction = Direction::Send;
    std::array<const char *, MaxValues> addresses = {};
};

/// The command of the function \a name; null when the recorder has none.
const DeviceCommand *findDeviceCommand(const QString &name);

/// The functions that run a command of their own at once, in the order of the protocol.
QStringList runnableCommandNames();
/// The command of such a function; null for others.
const DeviceCommand *runnableCommand(const QString &name);

/// The body of \a command with the values that \a valueOf gives for its addresses. Values are taken
/// literally, also when they look like placeholders.
QString filledBody(const DeviceCommand &command,
                   const std::function<QString(const QString &address)> &valueOf);

} // namespace paravue
