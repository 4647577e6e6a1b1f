#pragma once

#include "Outcome.h"

#include <QJsonObject>
#include <QString>

#include <functional>

namespace paravue
{

struct ControlCommandLine;

/// What a command has found or done, for people and for programs.
struct CommandReport {
    QString text; ///< whole lines; empty when there is nothing to tell
    QJsonObject document;
};

/// Is called once, through the event loop or within the call that has started the command.
using CommandEnd = std::function<void(const Outcome &, const CommandReport &)>;

/// The commands. Several may run at once.
void runGet(const ControlCommandLine &line, const CommandEnd &end);
void runSet(const ControlCommandLine &line, const CommandEnd &end);
void runDescribe(const ControlCommandLine &line, const CommandEnd &end);
void runDiff(const ControlCommandLine &line, const CommandEnd &end);
void runRestore(const ControlCommandLine &line, const CommandEnd &end);
void runCheck(const ControlCommandLine &line, const CommandEnd &end);
void runBackup(const ControlCommandLine &line, const CommandEnd &end);
void runFunction(const ControlCommandLine &line, const CommandEnd &end);
void runReport(const ControlCommandLine &line, const CommandEnd &end);
void runMetrics(const ControlCommandLine &line, const CommandEnd &end);

/// Runs the command that \a line names.
void runCommand(const ControlCommandLine &line, const CommandEnd &end);

} // namespace paravue
