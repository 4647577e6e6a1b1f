#include "CommandLine.h"

#include "RecorderAddress.h"

#include "device/TimeZoneTable.h"

#include <QCommandLineParser>
#include <QCoreApplication>

namespace paravue
{

namespace
{

class OptionText
{
    Q_DECLARE_TR_FUNCTIONS(CommandLine)
};

QString exitCodeHelp()
{
    return OptionText::tr("\nExit code:\n"
                          "  0  the window was accepted, all pictures were saved, or the\n"
                          "     checked description has no errors\n"
                          "  1  the window was rejected, or the checked description has errors\n"
                          "  2  the command line was wrong\n"
                          "  3  something failed: a file could not be read, the recorder not be\n"
                          "     saved to or its simulator not started, or pictures not be taken\n");
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
    for (const char *name : {"platform", "style", "display"}) {
        QCommandLineOption option(QString::fromLatin1(name), {}, "value");
        option.setFlags(QCommandLineOption::HiddenFromHelp);
        parser.addOption(option);
    }
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

} // namespace

CommandLine CommandLine::parse(const QStringList &words)
{
    const QCommandLineOption help({"h", "help"}, OptionText::tr("Show this help."));
    const QCommandLineOption version({"v", "version"}, OptionText::tr("Show the version."));
    const QCommandLineOption digest(
        "digest", OptionText::tr("The password in ADDRESS is the one that a user types: send its "
                                 "digest. Otherwise it is sent as it stands."));
    const QCommandLineOption demo("demo", OptionText::tr("Start the recorder simulator and set that up."));
    const QCommandLineOption demoData(
        "demo-data", OptionText::tr("Keep the simulator's files in DIR (with --demo)."), "DIR");
    const QCommandLineOption model(
        "model", OptionText::tr("Simulate the recorder MODEL (with --demo): standard or everything."),
        "MODEL");
    const QCommandLineOption screenshot(
        "screenshot", OptionText::tr("Save a picture of every tab in DIR once all is loaded, and end."),
        "DIR");
    const QCommandLineOption language(
        "language",
        OptionText::tr("Show the window in LANGUAGE, one of those that the recorder knows (such as "
                       "en or ru). It counts as an edit, so saving keeps it."),
        "LANGUAGE");
    const QCommandLineOption check(
        "check", OptionText::tr("List the problems of the interface description FILE, without a recorder."),
        "FILE");
    const QCommandLineOption json("json", OptionText::tr("Print them for other programs (with --check)."));
    const QCommandLineOption preview(
        "preview",
        OptionText::tr(
            "Show the window that the interface description FILE describes, on copies of local files: "
            "nothing is sent anywhere, and no file is changed."),
        "FILE");
    const QCommandLineOption files(
        "files",
        OptionText::tr(
            "Take the configuration files that go with FILE from DIR (with --check or --preview)."),
        "DIR");

    const QCommandLineOption timeZones(
        "time-zones",
        OptionText::tr("List the time zones of the world with the rules that recorders take for them (in "
                       "Russian with --language ru)."));

    QCommandLineParser parser;
    parser.setSingleDashWordOptionMode(QCommandLineParser::ParseAsLongOptions);
    parser.setApplicationDescription(OptionText::tr("Shows the setup window of a network video recorder."));
    parser.addOptions({help, version, digest, demo, demoData, model, screenshot, language, check, json,
                       preview, files, timeZones});
    acceptQtOptions(parser);
    parser.addPositionalArgument(
        "ADDRESS",
        OptionText::tr("The recorder: [login:password@]host[:port]. Without a login the "
                       "remembered one is used."),
        "[ADDRESS]");

    const bool isParsed = parser.parse(words);
    if (parser.isSet(help))
        return shown(parser.helpText() + exitCodeHelp());
    if (parser.isSet(version))
        return shown(QCoreApplication::applicationName() + ' ' + QCoreApplication::applicationVersion() +
                     '\n');
    if (!isParsed)
        return refused(parser.errorText());
    if (parser.isSet(timeZones))
        return shown(timeZoneList(parser.value(language)));

    CommandLine line;
    line.demo = parser.isSet(demo);
    line.demoDataFolder = parser.value(demoData);
    line.demoModel = parser.value(model);
    line.screenshotFolder = parser.value(screenshot);
    line.language = parser.value(language);
    line.description = parser.value(parser.isSet(check) ? check : preview);
    line.filesFolder = parser.value(files);
    line.json = parser.isSet(json);
    if (parser.isSet(check))
        line.task = Task::CheckDescription;
    const bool isLocal = parser.isSet(check) || parser.isSet(preview);

    for (const QCommandLineOption &option : {demoData, model, screenshot, language, check, preview, files}) {
        if (parser.isSet(option) && parser.value(option).isEmpty())
            return refused(OptionText::tr("--%1 needs a value").arg(option.names().first()));
    }
    if (const QString problem = localProblem(parser); !problem.isEmpty())
        return refused(problem);
    const QStringList addresses = parser.positionalArguments();
    if (line.demo && !addresses.isEmpty())
        return refused(OptionText::tr("--demo brings its own recorder and takes no address"));
    if (!line.demo && !isLocal && addresses.size() != 1)
        return refused(addresses.isEmpty() ? OptionText::tr("no address was given")
                                           : OptionText::tr("more than one address was given"));
    for (const QCommandLineOption &option : {demoData, model}) {
        if (!line.demo && parser.isSet(option))
            return refused(OptionText::tr("--%1 needs --demo").arg(option.names().first()));
    }
    if (line.language.contains('/') || line.language.contains('\''))
        return refused(OptionText::tr("a language is a name such as en"));
    if (line.demo || isLocal)
        return line;

    const auto password =
        parser.isSet(digest) ? RecorderAddress::Password::AsTyped : RecorderAddress::Password::AsSent;
    const RecorderAddress recorder = RecorderAddress::fromText(addresses.first(), password);
    if (!recorder.problem.isEmpty())
        return refused(recorder.problem);
    line.address = recorder.address;
    return line;
}

} // namespace paravue
