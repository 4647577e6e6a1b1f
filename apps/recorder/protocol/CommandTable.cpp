#include "recorder/protocol/CommandTable.h"

namespace recorder
{

namespace
{

struct TransferRow {
    const char *subject;
    const char *file;
    bool writable;
};

constexpr TransferRow TransferRows[] = {
    {"SETUP", "interface", false}, {"CONFIG", "streams", true},      {"NET CONFIG", "net", true},
    {"TIME CONFIG", "time", true}, {"TIMER CONFIG", "timers", true}, {"SOFT CONFIG", "soft", false},
    {"DISK CONFIG", "disk", true}, {"USER CONFIG", "users", true},   {"STATE CONFIG", "state", true},
};

struct FunctionRow {
    const char *line;
    Function function;
    bool takesBody;
    AccessLevel level;
};

constexpr FunctionRow FunctionRows[] = {
    {"ADJUST VIDEO", Function::AdjustPicture, true, OperatorLevel},
    {"DO CLEAR EMAILS", Function::ClearEmails, true, OperatorLevel},
    {"DO FORMAT", Function::Format, true, AdministratorLevel},
    {"DO REBOOT", Function::Reboot, false, AdministratorLevel},
    {"GET REPORT", Function::Report, false, GuestLevel},
    {"INSTALL DEB", Function::InstallPackage, true, AdministratorLevel},
    // Does not replace the list of packages: the body names the package to remove.
    {"PUT SOFT CONFIG", Function::RemovePackage, true, AdministratorLevel},
    {"RESET SETTINGS", Function::ResetSettings, false, AdministratorLevel},
    {"SEND TEST EMAIL", Function::SendTestEmail, false, OperatorLevel},
};

Command::Kind kindOf(QByteArrayView verb)
{
    if (verb == "GET")
        return Command::Kind::Get;
    return verb == "PUT" ? Command::Kind::Put : Command::Kind::Unknown;
}

Command transfer(const QByteArray &line)
{
    Command command;
    const qsizetype blank = line.indexOf(' ');
    if (blank < 0)
        return command;
    const QByteArrayView subject = QByteArrayView(line).sliced(blank + 1);
    for (const TransferRow &row : TransferRows) {
        if (subject != QByteArrayView(row.subject))
            continue;
        command.kind = kindOf(QByteArrayView(line).first(blank));
        command.file = QString::fromLatin1(row.file);
        command.writable = row.writable;
    }
    return command;
}

} // namespace

QString Command::label() const
{
    return kind == Kind::Run ? QStringLiteral("the command %1").arg(QString::fromLatin1(line))
                             : QStringLiteral("the file %1").arg(file);
}

Command parseCommand(const QByteArray &line)
{
    Command command = transfer(line);
    for (const FunctionRow &row : FunctionRows) {
        if (line != QByteArrayView(row.line))
            continue;
        command.kind = Command::Kind::Run;
        command.function = row.function;
        command.takesBody = row.takesBody;
        command.level = row.level;
    }
    command.line = line;
    return command;
}

} // namespace recorder
