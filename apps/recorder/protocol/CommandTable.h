#pragma once

#include "recorder/files/Accounts.h"

#include <QByteArray>
#include <QString>

namespace recorder
{

/// What commands do other than exchanging files.
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

/// A parsed request line. The words of commands are upper case with one blank between them.
struct Command {
    enum class Kind { Unknown, Get, Put, Run };

    Kind kind = Kind::Unknown;
    /// Get and Put: the protocol name of the file, for example "net".
    QString file;
    /// Put: false for a file that can only be read.
    bool writable = false;
    /// Run: the function, whether it has a body, and the access level that it needs.
    Function function = Function::Report;
    bool takesBody = false;
    AccessLevel level = GuestLevel;

    /// "the file net", or "the command DO FORMAT".
    QString label() const;
    QByteArray line;
};

Command parseCommand(const QByteArray &line);

} // namespace recorder
