#include "CommandTable.h"

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

Command::Kind kindOf(QByteArrayView verb)
{
    if (verb == "GET")
        return Command::Kind::Get;
    return verb == "PUT" ? Command::Kind::Put : Command::Kind::Unknown;
}

} // namespace

Command parseCommand(const QByteArray &line)
{
    const qsizetype blank = line.indexOf(' ');
    if (blank < 0)
        return {};
    const Command::Kind kind = kindOf(QByteArrayView(line).first(blank));
    const QByteArrayView subject = QByteArrayView(line).sliced(blank + 1);
    for (const TransferRow &row : TransferRows) {
        if (kind != Command::Kind::Unknown && subject == QByteArrayView(row.subject))
            return {kind, QString::fromLatin1(row.file), row.writable};
    }
    return {};
}

} // namespace recorder
