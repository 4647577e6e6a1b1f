#pragma once

#include "recorder/files/Accounts.h"

#include <QByteArray>
#include <QString>

namespace recorder
{

/// What the recorder does apart from exchanging files.
enum class Function {
    AdjustPicture,
    ClearEmails,
    Format,
    InstallPackage,
    Reboot,
    RemovePackage,
    Report,
    ResetSettings,
    SendTestEmail
};

/// A request line that was understood. Command words are exact, upper case, one blank apart.
struct Command {
    enum class Kind { Unknown, Get, Put, Run };

    Kind kind = Kind::Unknown;
    /// Get and Put: the protocol name of the file, for example "net".
    QString file;
    /// Put: false for a file that the recorder hands out but does not accept.
    bool writable = false;
    /// Run: what is to be done, whether a body belongs to it, and who may ask for it.
    Function function = Function::Report;
    bool takesBody = false;
    AccessLevel level = GuestLevel;

    /// "the file net", or "the command DO FORMAT".
    QString label() const;
    QByteArray line;
};

Command parseCommand(const QByteArray &line);

} // namespace recorder
