// paravue-setup: shows the setup window of one recorder. A host of the library like any other: it uses the
// public headers only.

#include "Appearance.h"
#include "CheckReport.h"
#include "CommandLine.h"
#include "ProgramLog.h"
#include "SetupProgram.h"
#include "program/ConsoleOutput.h"
#include "recorder/StopSignal.h"

#include <QApplication>
#include <QFileInfo>
#include <QTextStream>
#include <QTimer>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <optional>

using namespace paravue;

namespace
{

/// Reads the command line without a screen, so that help and usage errors reach every terminal.
CommandLine readCommandLine(int argc, char **argv)
{
    const QCoreApplication terminalOnly(argc, argv);
    return CommandLine::parse(QCoreApplication::arguments());
}

QString startLog(ProgramLog &log, const QString &path)
{
    return path.isEmpty() ? QString() : log.writeTo(path);
}

void endWithoutScreen()
{
    ProgramLog::tellFailure("there is no screen to show the window on. Set DISPLAY or WAYLAND_DISPLAY; "
                            "with QT_QPA_PLATFORM=offscreen, --screenshot needs none.");
    std::_Exit(int(ExitCode::WrongUsage));
}

/// Without its plug-in for the screen Qt would show a message box on Windows, and wait until somebody closes
/// it.
bool hasScreenPlugin([[maybe_unused]] int argc, [[maybe_unused]] char **argv)
{
#ifdef Q_OS_WIN
    const QCoreApplication application(argc, argv);
    const QString platform = qEnvironmentVariable("QT_QPA_PLATFORM", "windows").section(u':', 0, 0);
    const QStringList folders = QCoreApplication::libraryPaths();
    return std::any_of(folders.begin(), folders.end(), [&platform](const QString &folder) {
        return QFileInfo::exists(QStringLiteral("%1/platforms/q%2.dll").arg(folder, platform));
    });
#else
    return true; // Qt ends the program, and setScreenFailure() says why
#endif
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
    if (!hasScreenPlugin(argc, argv))
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
        std::_Exit(exitCode); // the end of QtDBus would wait for the bus
    }
    return exitCode;
}
