#pragma once

#include "Appearance.h"

#include <QString>
#include <QStringList>

#include <chrono>
#include <optional>

namespace paravue
{

/// What the user asked the program to do.
struct CommandLine {
    enum class Task { RunSession, CheckDescription, ShowText, RefuseUsage };

    Task task = Task::RunSession;
    QString text; ///< what to show: the help, the version, or what is wrong with the command line

    QString address;         ///< of the recorder, possibly without a login; empty with demo
    bool demo = false;       ///< start the recorder simulator and connect to that
    QString demoDataFolder;  ///< where the simulator keeps its files; empty: in a temporary folder
    QString description;     ///< not empty: the interface description to check, or to show without a recorder
    QString filesFolder;     ///< the configuration files that go with it; empty: none
    bool json = false;       ///< print the result of the check for other programs
    QString snapshot;        ///< not empty: the snapshot to edit, or to send the edits of
    bool sendsEdits = false; ///< of the snapshot to the recorder at the address
    bool keepsSecrets = false;                      ///< in snapshots
    QString demoModel;                              ///< which recorder it simulates; empty: its usual one
    QString screenshotFolder;                       ///< not empty: save a picture of every tab there and end
    QString language;                               ///< not empty: show the window in this language
    ColorScheme colorScheme = ColorScheme::Desktop; ///< of the window
    QString logFile;                                ///< not empty: write there what happens
    std::optional<std::chrono::seconds> timeout; ///< for the connection and for each answer of the recorder

    /// Reads the words of a command line, the program's name first. Needs a QCoreApplication.
    static CommandLine parse(const QStringList &words);
};

} // namespace paravue
