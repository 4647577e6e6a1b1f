// paravue-setup: shows the setup window of one recorder. A host of the library like any other: it uses the
// public headers only.

#include "Appearance.h"
#include "CheckReport.h"
#include "CommandLine.h"
#include "DesktopColors.h"
#include "ProgramLog.h"
#include "ScreenPlugin.h"
#include "SetupProgram.h"
#include "program/ConsoleOutput.h"
#include "program/PortableSettings.h"
#include "program/StopSignal.h"
#include "translations/InstallTranslations.h"

#include <QApplication>
#include <QLocale>
#include <QTextStream>
#include <QTimer>

#include <cstdio>
#include <optional>

using namespace paravue;

namespace
{

class ProgramText
{
    Q_DECLARE_TR_FUNCTIONS(SetupProgram)
};

QString screenProblem; ///< in the user's language: without a screen there is no application that could
                       ///< translate it

/// Reads the command line without a screen, so that help and usage errors reach every terminal.
CommandLine readCommandLine(int argc, char **argv)
{
    const QCoreApplication terminalOnly(argc, argv);
    keepSettingsBesideProgram(QCoreApplication::applicationDirPath());
    installTranslations();
    screenProblem = missingScreenText();
    CommandLine line = CommandLine::parse(QCoreApplication::arguments());
    if (line.task == CommandLine::Task::RefuseUsage)
        line.text += u'\n' + ProgramText::tr("Try paravue-setup --help.");
    return line;
}

int check(const CommandLine &commandLine, int argc, char **argv)
{
    const QCoreApplication terminalOnly(argc, argv);
    installTranslations();
    return int(runCheck(commandLine));
}

QStringList wantedLanguages(const CommandLine &commandLine)
{
    QStringList languages = QLocale::system().uiLanguages();
    if (!commandLine.language.isEmpty())
        languages.prepend(commandLine.language);
    return languages;
}

QString startLog(ProgramLog &log, const QString &path)
{
    return path.isEmpty() ? QString() : log.writeTo(path);
}

void endWithoutScreen()
{
    ProgramLog::tellFailure(screenProblem);
    ConsoleOutput::showUnlessConnected(screenProblem);
    ConsoleOutput::endProgram(int(ExitCode::WrongUsage));
}

bool findsScreenPlugin(int argc, char **argv)
{
    const QCoreApplication terminalOnly(argc, argv);
    return hasScreenPlugin(QCoreApplication::arguments());
}

/// The words without --style, which QApplication would take for one of its own options.
QList<char *> wordsForQt(int argc, char **argv)
{
    QList<char *> words;
    for (int i = 0; i < argc; ++i) {
        const QByteArrayView word(argv[i]);
        if (word == "--style" || word == "-style")
            ++i; // and its value
        else if (!word.startsWith("--style=") && !word.startsWith("-style="))
            words.append(argv[i]);
    }
    return words;
}

int run(int argc, char **argv)
{
    QCoreApplication::setApplicationName("paravue-setup");
    QCoreApplication::setApplicationVersion(PARAVUE_VERSION);

    ProgramLog log;
    const CommandLine commandLine = readCommandLine(argc, argv);
    switch (commandLine.task) {
    case CommandLine::Task::ShowText:
        QTextStream(stdout) << commandLine.text;
        return int(ExitCode::Done);
    case CommandLine::Task::RefuseUsage:
        QTextStream(stderr) << "paravue-setup: " << commandLine.text << '\n';
        ConsoleOutput::showUnlessConnected(commandLine.text);
        return int(ExitCode::WrongUsage);
    case CommandLine::Task::CheckDescription:
        return check(commandLine, argc, argv);
    case CommandLine::Task::RunSession:
        break;
    }

    // The command line does not wait for a program with windows, and other programs use the console
    // meanwhile.
    ConsoleOutput::restoreConsole();
    if (const QString problem = startLog(log, commandLine.logFile); !problem.isEmpty()) {
        ProgramLog::tellFailure(problem);
        ConsoleOutput::showUnlessConnected(problem);
        return int(ExitCode::LocalFile);
    }
    if (!findsScreenPlugin(argc, argv))
        endWithoutScreen();
    ProgramLog::setScreenFailure(endWithoutScreen);
    QList<char *> words = wordsForQt(argc, argv);
    int count = int(words.size());
    words.append(nullptr);
    const QApplication application(count, words.data());
    ProgramLog::setScreenFailure(nullptr);
    installTranslations(wantedLanguages(commandLine));
    // The program does not end with its window: a save may still be running.
    QApplication::setQuitOnLastWindowClosed(false);
    // A signal cancels the window, so that the local copies of the recorder's files are removed.
    paravue::quitOnStopSignal();
    // Pictures are the same in every run, unless told otherwise.
    std::optional<Appearance> appearance;
    if (commandLine.colorScheme != ColorScheme::Desktop || commandLine.screenshotFolder.isEmpty())
        appearance.emplace(commandLine.colorScheme);

    ExitCode exitCode = ExitCode::Cancelled;
    QTimer::singleShot(0, [&] {
        exitCode = runSession(commandLine);
        QCoreApplication::quit();
    });
    QApplication::exec();
    return int(paravue::hasStopSignal() ? ExitCode::Cancelled : exitCode);
}

} // namespace

int main(int argc, char **argv)
{
    const ConsoleOutput output;
    const int exitCode = run(argc, argv);
    if (DesktopColors::isBusSilent()) {
        std::fflush(nullptr);
        ConsoleOutput::endProgram(exitCode); // the end of QtDBus would wait for the bus
    }
    return exitCode;
}
