#pragma once

#include <QList>
#include <QMap>
#include <QString>
#include <QStringList>

#include <chrono>

namespace paravue
{

/// A command of the program, as its help, its man page and its completions have it.
struct ControlCommand {
    QString name;
    QString arguments;  ///< as in a synopsis, "ADDRESS [PATTERN...]"
    QString text;       ///< what it does
    int leastArguments; ///< the address included
    int mostArguments;  ///< below 0 for any number
    /// And takes an inventory in its place.
    bool hasAddress() const { return arguments.startsWith(QStringLiteral("ADDRESS")); }
};
QList<ControlCommand> controlCommands();

/// An option of the program, likewise.
struct ControlOption {
    QStringList names;    ///< without the dashes
    QString value;        ///< what its value is called; empty when it takes none
    QString text;         ///< what it does
    QStringList commands; ///< the commands that take it; empty: all of them
};
QList<ControlOption> controlOptions();

/// The command line of paravue-ctl.
struct ControlCommandLine {
    enum class Task { RunCommand, ShowText, RefuseUsage };

    Task task = Task::RunCommand;
    QString text; ///< what to show: the help, the version, or what is wrong with the command line

    QString command;
    QString address;                   ///< [login:password@]host[:port], in the form that OrbNetSetup takes
    bool hasPasswordInAddress = false; ///< also in one of the arguments that may be addresses
    bool isPasswordTyped = false;      ///< the one in an address is what a user types
    QStringList arguments;             ///< behind the address

    QString login;        ///< empty: the remembered one
    QString passwordFile; ///< empty: none
    std::chrono::milliseconds timeout{15000};
    std::chrono::milliseconds timeLimit{600000}; ///< of one exchange
    int retries = 0;
    bool json = false;
    bool secrets = false;
    bool captions = false;
    bool force = false;
    bool dryRun = false;
    bool yes = false;              ///< what is dangerous is confirmed
    bool asks = true;              ///< for a password, on a terminal
    QString inventory;             ///< empty: the command is for the recorder at the address
    QString group;                 ///< empty: all recorders of the inventory
    QString limit;                 ///< a pattern of their names; empty: all
    int jobs = 32;                 ///< so many recorders at once
    int stopAfter = 0;             ///< so many failures; 0: never
    int canary = 0;                ///< so many first, before the others
    QString resume;                ///< the file that tells what was done; empty: none
    QString recorderName;          ///< in the inventory
    QMap<QString, QString> values; ///< of the inventory, by path
    QString wanted;                ///< the file of wanted values of a check; empty: none
    QString file;                  ///< with values to be set; empty: none
    QString output;                ///< the file to be written; empty: the usual place

    /// Reads the words of a command line, the program's name first. Needs a QCoreApplication.
    static ControlCommandLine parse(const QStringList &words);

    /// Takes \a text as the address. What is wrong with it, without repeating it; empty when nothing is.
    QString setAddress(const QString &text);
    /// The address without a login.
    QString host() const { return address.mid(address.lastIndexOf(u'@') + 1); }
};

} // namespace paravue
