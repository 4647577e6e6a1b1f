#pragma once

#include <QByteArray>
#include <QString>

namespace recorder
{

/// A request line that was understood. Command words are exact, upper case, one blank apart.
struct Command {
    enum class Kind { Unknown, Get, Put };

    Kind kind = Kind::Unknown;
    /// Protocol name of the file, for example "net".
    QString file;
    /// False for a file that the recorder hands out but does not accept.
    bool writable = false;
};

Command parseCommand(const QByteArray &line);

} // namespace recorder
