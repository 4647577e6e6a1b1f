#include "ControlCommandLine.h"

#include "ControlText.h"
#include "SettingsSource.h"
#include "device/protocol/DeviceCommands.h"
#include "program/HelpText.h"
#include "setup/RecorderAddress.h"

#include <QCommandLineParser>
#include <QCoreApplication>

#include <algorithm>

namespace paravue
{

namespace
{

constexpr int MaxTimeoutSeconds = 24 * 60 * 60;
/// An exchange may last so many time-outs.
constexpr int UsualTimeLimit = 40;
constexpr int MaxRetries = 100;
constexpr int MaxRecorders = 1000000;

/// \a text in indented lines.
QString wrapped(const QString &text)
{
    constexpr int Width = 79;
    const QString indent(6, u' ');
    QString lines;
    QString line = indent;
    for (const QString &word : text.split(u' ')) {
        if (line.size() > indent.size() && line.size() + word.size() > Width) {
            lines += line.chopped(1) + u'\n';
            line = indent;
        }
        line += word + u' ';
    }
    return lines + line.chopped(1) + u'\n';
}

QString commandTable()
{
    QString text = u'\n' + ControlText::tr("Commands:") + u'\n';
    for (const ControlCommand &command : controlCommands())
        text += QStringLiteral("  %1 %2\n").arg(command.name, command.arguments) + wrapped(command.text);
    return text;
}

QString notes()
{
    return ControlText::tr(
        "\nADDRESS is [login:password@]host[:port]. Without a password in it, the password\n"
        "is the one of --password-file, that of the environment variable PARAVUE_PASSWORD,\n"
        "the remembered one, or typed after the recorder has refused these. A password in\n"
        "ADDRESS can be seen by other users of this computer.\n"
        "\n"
        "A value is named FILE/SECTION/KEY. In a PATTERN, * stands for any letters and ? for\n"
        "one; \"net\" and \"net/untitled\" mean everything in the file and in the section.\n"
        "\nExit code:\n"
        "  0  done\n"
        "  1  the recorder has refused something\n"
        "  2  the command line was wrong\n"
        "  3  no connection to the recorder, or no answer in time\n"
        "  4  the recorder has refused the login\n"
        "  5  values differ, were not found or not kept, or something was not confirmed\n"
        "  6  a file on this computer could not be used, or the recorder is locked\n"
        "  7  what the recorder has sent, or a file of values, makes no sense\n"
        "  8  stopped before it was done\n");
}

ControlCommandLine ended(ControlCommandLine::Task task, const QString &text)
{
    ControlCommandLine line;
    line.task = task;
    line.text = text;
    return line;
}

ControlCommandLine refused(const QString &problem)
{
    return ended(ControlCommandLine::Task::RefuseUsage, problem);
}

QString withDashes(const QString &name)
{
    return (name.size() == 1 ? QStringLiteral("-") : QStringLiteral("--")) + name;
}

/// What is wrong with the options; empty when nothing is.
QString optionProblem(const QCommandLineParser &parser, const QString &command)
{
    for (const ControlOption &option : controlOptions()) {
        if (!parser.isSet(option.names.last()))
            continue;
        const QString name = withDashes(option.names.last());
        if (!option.commands.isEmpty() && !option.commands.contains(command))
            return ControlText::tr("%1 is not for the command %2").arg(name, command);
        if (!option.value.isEmpty() && parser.value(option.names.last()).isEmpty())
            return ControlText::tr("%1 needs a value").arg(name);
    }
    return {};
}

/// False unless the value of the option \a name, when it is given, is a number within the limits.
bool readNumber(const QCommandLineParser &parser, const QString &name, int least, int most, int &number)
{
    if (!parser.isSet(name))
        return true;
    bool isNumber = false;
    number = parser.value(name).toInt(&isNumber);
    return isNumber && number >= least && number <= most;
}

void addRows(QCommandLineParser &parser)
{
    for (const ControlOption &option : controlOptions())
        parser.addOption(QCommandLineOption(option.names, option.text, option.value));
    parser.addPositionalArgument("COMMAND", ControlText::tr("What to do; see below."), "COMMAND");
    parser.addPositionalArgument("ADDRESS", ControlText::tr("The recorder."), "ADDRESS");
    parser.addPositionalArgument("ARGUMENT", ControlText::tr("What the command takes."), "[ARGUMENT...]");
}

QList<ControlCommand>::const_iterator findCommand(const QList<ControlCommand> &commands, const QString &name)
{
    return std::find_if(commands.begin(), commands.end(),
                        [&](const ControlCommand &command) { return command.name == name; });
}

QString readCommand(ControlCommandLine &line, const QStringList &words)
{
    const QList<ControlCommand> commands = controlCommands();
    if (words.isEmpty())
        return ControlText::tr("no command was given");
    line.command = words.first();
    const auto command = findCommand(commands, line.command);
    if (command == commands.end())
        return ControlText::tr("there is no command \"%1\"").arg(line.command);
    if (!line.inventory.isEmpty() && !command->hasAddress())
        return ControlText::tr("%1 takes no inventory").arg(command->name);
    line.arguments = words.mid(1);
    const qsizetype count = line.arguments.size() + (line.inventory.isEmpty() ? 0 : 1);
    if (count == 0 && command->hasAddress())
        return ControlText::tr("no address was given");
    if (count < command->leastArguments)
        return ControlText::tr("too few arguments: %1 takes %2").arg(command->name, command->arguments);
    if (command->mostArguments >= 0 && count > command->mostArguments)
        return ControlText::tr("too many arguments: %1 takes %2").arg(command->name, command->arguments);
    return {};
}

/// Takes the addresses out of the arguments, or tests them.
QString readAddresses(ControlCommandLine &line)
{
    if (!line.inventory.isEmpty())
        return {};
    const QList<ControlCommand> commands = controlCommands();
    if (findCommand(commands, line.command)->hasAddress())
        return line.setAddress(line.arguments.takeFirst());
    for (const QString &source : line.arguments.first(2)) {
        ControlCommandLine own = line;
        if (isLocalSource(source))
            continue;
        if (const QString problem = own.setAddress(source); !problem.isEmpty())
            return problem;
        line.hasPasswordInAddress = line.hasPasswordInAddress || own.hasPasswordInAddress;
    }
    return {};
}

QString readInventoryOptions(ControlCommandLine &line, const QCommandLineParser &parser)
{
    line.group = parser.value("group");
    line.limit = parser.value("limit");
    line.resume = parser.value("resume");
    const std::pair<QString, int *> numbers[] = {
        {"jobs", &line.jobs}, {"stop-after", &line.stopAfter}, {"canary", &line.canary}};
    for (const auto &[name, number] : numbers) {
        if (!readNumber(parser, name, 1, MaxRecorders, *number))
            return ControlText::tr("--%1 takes a number from 1 to %2").arg(name).arg(MaxRecorders);
    }
    if (!line.inventory.isEmpty()) {
        const bool needsOutput = line.command == u"report";
        return (line.output.isEmpty() && !needsOutput) || line.output.contains(u'{')
                   ? QString()
                   : ControlText::tr("with an inventory %1 needs -o with a variable such as {name}")
                         .arg(line.command);
    }
    for (const char *name : {"group", "limit", "jobs", "stop-after", "canary", "resume"}) {
        if (parser.isSet(QLatin1StringView(name)))
            return ControlText::tr("%1 needs --inventory").arg(withDashes(QLatin1StringView(name)));
    }
    return {};
}

QString readOptions(ControlCommandLine &line, const QCommandLineParser &parser)
{
    line.login = parser.value("login");
    line.passwordFile = parser.value("password-file");
    line.isPasswordTyped = parser.isSet("digest");
    line.json = parser.isSet("json");
    line.secrets = parser.isSet("secrets");
    line.captions = parser.isSet("captions");
    line.force = parser.isSet("force");
    line.yes = parser.isSet("yes");
    line.dryRun = parser.isSet("dry-run");
    line.file = parser.value("file");
    line.wanted = parser.value("wanted");
    line.output = parser.value("output");
    int seconds = 15;
    if (!readNumber(parser, "timeout", 1, MaxTimeoutSeconds, seconds))
        return ControlText::tr("--timeout takes a number from 1 to %1").arg(MaxTimeoutSeconds);
    line.timeout = std::chrono::seconds(seconds);
    seconds = std::min(seconds * UsualTimeLimit, MaxTimeoutSeconds);
    if (!readNumber(parser, "time-limit", 1, MaxTimeoutSeconds, seconds))
        return ControlText::tr("--%1 takes a number from 1 to %2").arg("time-limit").arg(MaxTimeoutSeconds);
    line.timeLimit = std::chrono::seconds(seconds);
    if (!readNumber(parser, "retries", 0, MaxRetries, line.retries))
        return ControlText::tr("--retries takes a number from 0 to %1").arg(MaxRetries);
    const QString problem = optionProblem(parser, line.command);
    return problem.isEmpty() ? readInventoryOptions(line, parser) : problem;
}

} // namespace

QList<ControlCommand> controlCommands()
{
    return {
        {"get", "ADDRESS [PATTERN...]", ControlText::tr("Prints the values that a PATTERN names, or all."), 1,
         -1},
        {"set", "ADDRESS [KEY=VALUE...]",
         ControlText::tr(
             "Sets values, sends the files that they are in and compares what the recorder has then."),
         1, -1},
        {"diff", "A B [PATTERN...]",
         ControlText::tr(
             "Prints the values that differ. A and B are each a recorder, a snapshot, a folder of "
             "its files, or a file of wanted values; what has a \"/\" or exists is no recorder."),
         2, -1},
        {"check", "ADDRESS [KEY=VALUE...]",
         ControlText::tr("Prints which wanted values the recorder does not have."), 1, -1},
        {"backup", "ADDRESS",
         ControlText::tr("Keeps the settings as a snapshot, among those of the setup window or in a file."),
         1, 1},
        {"restore", "ADDRESS SNAPSHOT [PATTERN...]",
         ControlText::tr(
             "Sets the values that a PATTERN names, or all, to those of a snapshot, as set does."),
         2, -1},
        {"describe", "ADDRESS [PATTERN...]",
         ControlText::tr("Prints what can be set, and what the values may be, from the recorder's interface "
                         "description."),
         1, -1},
        {"run", "ADDRESS FUNCTION [ARGUMENT]",
         ControlText::tr("Runs a function of the recorder. FUNCTION is one of %1.")
             .arg(runnableCommandNames().join(QStringLiteral(", "))),
         2, 3},
        {"report", "ADDRESS",
         ControlText::tr("Prints what support needs to know, without secrets: versions, the log of the "
                         "exchange and the files."),
         1, 1},
        {"metrics", "ADDRESS",
         ControlText::tr("Prints figures of the recorder in the text format of Prometheus."), 1, 1},
    };
}

QList<ControlOption> controlOptions()
{
    return {
        {{"h", "help"}, {}, ControlText::tr("Show this help."), {}},
        {{"v", "version"}, {}, ControlText::tr("Show the version."), {}},
        {{"login"},
         "NAME",
         ControlText::tr("Log in with this name (without it the remembered one, or admin)."),
         {}},
        {{"password-file"},
         "FILE",
         ControlText::tr(
             "The password as it is typed is the first line of FILE, which only its owner may read."),
         {}},
        {{"digest"},
         {},
         ControlText::tr(
             "The password in ADDRESS is the one that a user types: send its digest. Otherwise it is "
             "sent as it stands."),
         {}},
        {{"timeout"},
         "SECONDS",
         ControlText::tr("Wait for the recorder no longer than this (without it 15)."),
         {}},
        {{"time-limit"},
         "SECONDS",
         ControlText::tr("End an exchange that lasts longer, though the recorder goes on answering "
                         "(without it 40 times the timeout)."),
         {}},
        {{"retries"},
         "NUMBER",
         ControlText::tr("Fetch again so often when there is no connection or no answer (without it 0)."),
         {}},
        {{"json"}, {}, ControlText::tr("Print for other programs."), {}},
        {{"captions"}, {}, ControlText::tr("Print what the setup window calls the values, too."), {"get"}},
        {{"secrets"},
         {},
         ControlText::tr(
             "Print passwords and the like, or keep them in the snapshot. Otherwise they are left "
             "out."),
         {"get", "set", "diff", "check", "backup", "restore"}},
        {{"file"},
         "FILE",
         ControlText::tr("Set what FILE says, too: a line KEY=VALUE for each value."),
         {"set"}},
        {{"wanted"},
         "FILE",
         ControlText::tr("Compare with what FILE says: a line KEY=VALUE for each value."),
         {"check"}},
        {{"inventory"},
         "FILE",
         ControlText::tr(
             "Run COMMAND, without ADDRESS, with each recorder that FILE (.ini, .json or .csv) lists."),
         {}},
        {{"group"}, "NAME", ControlText::tr("Only the recorders of this group of the inventory."), {}},
        {{"limit"}, "PATTERN", ControlText::tr("Only the recorders whose names fit."), {}},
        {{"jobs"}, "NUMBER", ControlText::tr("So many recorders at once (without it 32)."), {}},
        {{"stop-after"}, "NUMBER", ControlText::tr("Begin no more recorders after so many failures."), {}},
        {{"canary"},
         "NUMBER",
         ControlText::tr(
             "Run with so many recorders first, and with the others only when all of these are done."),
         {}},
        {{"resume"},
         "FILE",
         ControlText::tr("Leave out the recorders that FILE lists as done, and add those that are done now."),
         {}},
        {{"n", "dry-run"},
         {},
         ControlText::tr("Show what would be sent, and send nothing."),
         {"set", "restore"}},
        {{"o", "output"},
         "FILE",
         ControlText::tr("Write the snapshot, or the report of the recorder, as FILE."),
         {"backup", "run", "report"}},
        {{"y", "yes"},
         {},
         ControlText::tr(
             "Do not ask before something is lost or the recorder restarts, or before a report is written."),
         {"run", "report"}},
        {{"force"},
         {},
         ControlText::tr("Overwrite FILE when it exists; set keys that the recorder does not have and values "
                         "that its description does not allow; restore the "
                         "snapshot of another recorder."),
         {"set", "backup", "restore", "run", "report"}},
    };
}

QString ControlCommandLine::setAddress(const QString &text)
{
    const RecorderAddress read = RecorderAddress::fromText(
        text, isPasswordTyped ? RecorderAddress::Password::AsTyped : RecorderAddress::Password::AsSent);
    address = read.address;
    hasPasswordInAddress = address.contains(u'@');
    if (!read.problem.isEmpty())
        return read.problem;
    if (hasPasswordInAddress && (!login.isEmpty() || !passwordFile.isEmpty()))
        return ControlText::tr("the login is given in the address or by options");
    return {};
}

ControlCommandLine ControlCommandLine::parse(const QStringList &words)
{
    QCommandLineParser parser;
    parser.setApplicationDescription(
        ControlText::tr("Reads, sets and keeps the settings of a network video recorder without a window."));
    addRows(parser);
    const bool isParsed = parser.parse(words);
    if (parser.isSet("help"))
        return ended(Task::ShowText, helpText(parser) + commandTable() + notes());
    if (parser.isSet("version"))
        return ended(Task::ShowText, QCoreApplication::applicationName() + ' ' +
                                         QCoreApplication::applicationVersion() + '\n');
    if (!isParsed)
        return refused(parser.errorText());
    ControlCommandLine line;
    line.inventory = parser.value("inventory");
    QString problem = readCommand(line, parser.positionalArguments());
    if (problem.isEmpty())
        problem = readOptions(line, parser);
    if (problem.isEmpty())
        problem = readAddresses(line);
    return problem.isEmpty() ? line : refused(problem);
}

} // namespace paravue
