#include "CommandLine.h"

#include "RecorderAddress.h"

#include "check/DescriptionSchema.h"
#include "device/TimeZoneTable.h"
#include "program/HelpText.h"

#include <QCommandLineParser>
#include <QCoreApplication>
#include <QMap>

namespace paravue
{

namespace
{

constexpr uint MaxTimeout = 24 * 60 * 60; // seconds
const QMap<QString, ColorScheme> ColorSchemes{
    {"light", ColorScheme::Light}, {"dark", ColorScheme::Dark}, {"system", ColorScheme::Desktop}};

class OptionText
{
    Q_DECLARE_TR_FUNCTIONS(CommandLine)
};

QString exitCodeHelp()
{
    return OptionText::tr("\nExit code:\n"
                          "  0  the window was accepted, all pictures were saved, or the\n"
                          "     checked description has no errors\n"
                          "  1  the window was rejected, the recorder has refused a command, or\n"
                          "     the checked description has errors\n"
                          "  2  the command line was wrong, or there is no screen\n"
                          "  3  no connection to the recorder, or no answer in time\n"
                          "  4  the recorder has refused the login\n"
                          "  6  a file or a program of this computer could not be used\n"
                          "  7  the recorder's answer or a description makes no sense\n"
                          "  8  stopped by a signal, or in the middle of a save\n");
}

CommandLine shown(const QString &text)
{
    CommandLine line;
    line.task = CommandLine::Task::ShowText;
    line.text = text;
    return line;
}

CommandLine refused(const QString &problem)
{
    CommandLine line;
    line.task = CommandLine::Task::RefuseUsage;
    line.text = problem;
    return line;
}

QString timeZoneList(const QString &language)
{
    constexpr int RuleWidth = 44;
    QString list;
    for (const TimeZoneRow &row : timeZoneTable())
        list +=
            QString::fromLatin1(row.rule).leftJustified(RuleWidth) + timeZoneCaption(row, language) + '\n';
    return list;
}

/// Options of Qt itself, which it reads when the application is created. They are known here so that
/// they are not refused, and left out of the help.
void acceptQtOptions(QCommandLineParser &parser)
{
    for (const char *name : {"platform", "display"}) {
        QCommandLineOption option(QString::fromLatin1(name), {}, "value");
        option.setFlags(QCommandLineOption::HiddenFromHelp);
        parser.addOption(option);
    }
}

QList<QCommandLineOption> programOptions()
{
    return {
        {{"h", "help"}, OptionText::tr("Show this help.")},
        {{"v", "version"}, OptionText::tr("Show the version.")},
        {"digest", OptionText::tr("The password in ADDRESS is the one that a user types: send its "
                                  "digest. Otherwise it is sent as it stands.")},
        {"demo", OptionText::tr("Start the recorder simulator and set that up.")},
        {"demo-data", OptionText::tr("Keep the simulator's files in DIR (with --demo)."), "DIR"},
        {"model",
         OptionText::tr("Simulate the recorder MODEL (with --demo): standard, everything or patrol."),
         "MODEL"},
        {"screenshot", OptionText::tr("Save a picture of every tab in DIR once all is loaded, and end."),
         "DIR"},
        {"language",
         OptionText::tr("Show the window in LANGUAGE, one of those that the recorder knows (such as "
                        "en or ru). It counts as an edit, so saving keeps it."),
         "LANGUAGE"},
        {"style",
         OptionText::tr("Show the window in the colours STYLE: light, dark, or system (as the desktop "
                        "asks for, which is the usual one)."),
         "STYLE"},
        {"timeout",
         OptionText::tr("Wait SECONDS for the connection and for each answer of the recorder; 0 is for ever "
                        "(without it 12 for the connection, and with --screenshot 60 for an answer)."),
         "SECONDS"},
        {"log",
         OptionText::tr("Write what happens to FILE, behind what it holds: connections, commands, changed "
                        "settings, messages. It gets no passwords and no values."),
         "FILE"},
        {"check",
         OptionText::tr("List the problems of the interface description FILE (- for the standard "
                        "input), without a recorder."),
         "FILE"},
        {"json", OptionText::tr("Print them for other programs (with --check).")},
        {"preview",
         OptionText::tr(
             "Show the window that the interface description FILE describes, on copies of local files: "
             "nothing is sent anywhere, and no file is changed."),
         "FILE"},
        {"files",
         OptionText::tr(
             "Take the configuration files that go with FILE from DIR (with --check or --preview)."),
         "DIR"},
        {"open",
         OptionText::tr("Edit the snapshot FILE without a recorder. Saving keeps the edits in FILE, beside "
                        "what the recorder had."),
         "FILE"},
        {"send-to",
         OptionText::tr("Set up the recorder ADDRESS, and offer the edits in the snapshot to be taken over "
                        "(with --open)."),
         "ADDRESS"},
        {"keep-secrets",
         OptionText::tr("Keep passwords too in the snapshots of recorders, and in FILE (with --open).")},
        {"schema", OptionText::tr("Print the RELAX NG schema of interface descriptions, for XML editors.")},
        {"time-zones",
         OptionText::tr("List the time zones of the world with the rules that recorders take for them (in "
                        "Russian with --language ru).")}};
}

QString valueProblem(const QCommandLineParser &parser)
{
    for (const char *option : {"demo-data", "model", "screenshot", "language", "log", "check", "preview",
                               "files", "open", "send-to"}) {
        if (parser.isSet(option) && parser.value(option).isEmpty())
            return OptionText::tr("--%1 needs a value").arg(QLatin1String(option));
    }
    bool isNumber = false;
    const uint seconds = parser.value("timeout").toUInt(&isNumber);
    if (parser.isSet("timeout") && (!isNumber || seconds > MaxTimeout))
        return OptionText::tr("--timeout takes a number of seconds from 0 to %1").arg(MaxTimeout);
    if (parser.isSet("style") && !ColorSchemes.contains(parser.value("style")))
        return OptionText::tr("--style takes light, dark or system");
    const QString language = parser.value("language");
    if (language.contains('/') || language.contains('\''))
        return OptionText::tr("a language is a name such as en");
    return {};
}

/// What is wrong with the options for work on local files; empty when nothing is.
QString localProblem(const QCommandLineParser &parser)
{
    const bool checks = parser.isSet("check");
    const bool previews = parser.isSet("preview");
    if (checks && previews)
        return OptionText::tr("--check and --preview exclude each other");
    if ((checks || previews) && (parser.isSet("demo") || !parser.positionalArguments().isEmpty()))
        return OptionText::tr("--check and --preview read a file and take no recorder");
    if (checks && (parser.isSet("screenshot") || parser.isSet("language")))
        return OptionText::tr("--check opens no window; use --preview");
    if (!checks && !previews && parser.isSet("files"))
        return OptionText::tr("--files needs --check or --preview");
    return !checks && parser.isSet("json") ? OptionText::tr("--json needs --check") : QString();
}

/// What is wrong with the options for snapshots; empty when nothing is.
QString snapshotProblem(const QCommandLineParser &parser)
{
    if (!parser.isSet("open"))
        return parser.isSet("send-to") ? OptionText::tr("--send-to needs --open") : QString();
    if (parser.isSet("check") || parser.isSet("preview") || parser.isSet("demo"))
        return OptionText::tr("--open excludes --check, --preview and --demo");
    if (!parser.positionalArguments().isEmpty())
        return OptionText::tr("--open reads a file and takes no recorder; use --send-to");
    if (parser.isSet("send-to") && parser.isSet("screenshot"))
        return OptionText::tr("--send-to asks, so that there are no pictures of it");
    return {};
}

QString demoProblem(const QCommandLineParser &parser)
{
    const bool isDemo = parser.isSet("demo");
    if (isDemo && !parser.positionalArguments().isEmpty())
        return OptionText::tr("--demo brings its own recorder and takes no address");
    for (const char *option : {"demo-data", "model"}) {
        if (!isDemo && parser.isSet(option))
            return OptionText::tr("--%1 needs --demo").arg(QLatin1String(option));
    }
    return {};
}

QString addressProblem(const QCommandLineParser &parser)
{
    const qsizetype addresses = parser.positionalArguments().size();
    if (parser.isSet("demo") || parser.isSet("check") || parser.isSet("preview") || parser.isSet("open") ||
        addresses == 1)
        return {};
    return addresses == 0 ? OptionText::tr("no address was given")
                          : OptionText::tr("more than one address was given");
}

/// Everything but the address.
CommandLine sessionOf(const QCommandLineParser &parser)
{
    CommandLine line;
    line.demo = parser.isSet("demo");
    line.demoDataFolder = parser.value("demo-data");
    line.demoModel = parser.value("model");
    line.screenshotFolder = parser.value("screenshot");
    line.language = parser.value("language");
    line.colorScheme = ColorSchemes.value(parser.value("style"), ColorScheme::Desktop);
    line.logFile = parser.value("log");
    if (parser.isSet("timeout"))
        line.timeout = std::chrono::seconds(parser.value("timeout").toUInt());
    line.description = parser.value(parser.isSet("check") ? "check" : "preview");
    line.filesFolder = parser.value("files");
    line.json = parser.isSet("json");
    line.snapshot = parser.value("open");
    line.sendsEdits = parser.isSet("send-to");
    line.keepsSecrets = parser.isSet("keep-secrets");
    if (parser.isSet("check"))
        line.task = CommandLine::Task::CheckDescription;
    return line;
}

} // namespace

CommandLine CommandLine::parse(const QStringList &words)
{
    QCommandLineParser parser;
    parser.setSingleDashWordOptionMode(QCommandLineParser::ParseAsLongOptions);
    parser.setApplicationDescription(OptionText::tr("Shows the setup window of a network video recorder."));
    parser.addOptions(programOptions());
    acceptQtOptions(parser);
    parser.addPositionalArgument(
        "ADDRESS",
        OptionText::tr("The recorder: [login:password@]host[:port]. Without a login the "
                       "remembered one is used."),
        "[ADDRESS]");

    const bool isParsed = parser.parse(words);
    if (parser.isSet("help"))
        return shown(helpText(parser) + exitCodeHelp());
    if (parser.isSet("version"))
        return shown(QCoreApplication::applicationName() + ' ' + QCoreApplication::applicationVersion() +
                     '\n');
    if (!isParsed)
        return refused(parser.errorText());
    if (parser.isSet("schema"))
        return shown(QString::fromUtf8(descriptionSchema()));
    if (parser.isSet("time-zones"))
        return shown(timeZoneList(parser.value("language")));

    for (const auto &findProblem :
         {valueProblem, localProblem, snapshotProblem, demoProblem, addressProblem}) {
        if (const QString problem = findProblem(parser); !problem.isEmpty())
            return refused(problem);
    }
    CommandLine line = sessionOf(parser);
    if (line.demo || !line.description.isEmpty() || (!line.snapshot.isEmpty() && !line.sendsEdits))
        return line;
    const auto password =
        parser.isSet("digest") ? RecorderAddress::Password::AsTyped : RecorderAddress::Password::AsSent;
    const RecorderAddress recorder = RecorderAddress::fromText(
        line.sendsEdits ? parser.value("send-to") : parser.positionalArguments().constFirst(), password);
    if (!recorder.problem.isEmpty())
        return refused(recorder.problem);
    line.address = recorder.address;
    return line;
}

} // namespace paravue
