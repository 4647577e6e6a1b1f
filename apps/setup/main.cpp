// paravue-setup: shows the setup window of one recorder. A host of the library like any other: it uses the
// public headers only.

#include "Appearance.h"
#include "CheckReport.h"
#include "CommandLine.h"
#include "DesktopColors.h"
#include "PortableSettings.h"
#include "ProgramLog.h"
#include "ScreenPlugin.h"
#include "SetupProgram.h"
#include "program/ConsoleOutput.h"
#include "recorder/StopSignal.h"

#include <QApplication>
#include <QTextStream>
#include <QTimer>

#include <cstdio>
#include <optional>

using namespace paravue;

namespace
{

/// Reads the command line without a screen, so that help and usage errors reach every terminal.
CommandLine readCommandLine(int argc, char **argv)
{
    const QCoreApplication terminalOnly(argc, argv);
    keepSettingsBesideProgram(QCoreApplication::applicationDirPath());
    return CommandLine::parse(QCoreApplication::arguments());
}

QString startLog(ProgramLog &log, const QString &path)
{
    return path.isEmpty() ? QString() : log.writeTo(path);
}

void endWithoutScreen()
{
    ProgramLog::tellFailure(missingScreenText());
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
        QTextStream(stderr) << "paravue-setup: " << commandLine.text << "\nTry paravue-setup --help.\n";
        return int(ExitCode::WrongUsage);
    case CommandLine::Task::CheckDescription:
        return int(runCheck(commandLine));
    case CommandLine::Task::RunSession:
        break;
    }

    if (const QString problem = startLog(log, commandLine.logFile); !problem.isEmpty()) {
        ProgramLog::tellFailure(problem);
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
    // The program does not end with its window: a save may still be running.
    QApplication::setQuitOnLastWindowClosed(false);
    // A signal cancels the window, so that the local copies of the recorder's files are removed.
    recorder::quitOnStopSignal();
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
    return int(recorder::hasStopSignal() ? ExitCode::Cancelled : exitCode);
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
