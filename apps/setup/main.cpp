// paravue-setup: shows the setup window of one recorder. A host of the library like any other: it uses the
// public headers only.

#include "CheckReport.h"
#include "CommandLine.h"
#include "SetupProgram.h"
#include "recorder/StopSignal.h"

#include <QApplication>
#include <QTextStream>
#include <QTimer>

using namespace paravue;

namespace
{

/// Reads the command line without a screen, so that help and usage errors reach every terminal.
CommandLine readCommandLine(int argc, char **argv)
{
    const QCoreApplication terminalOnly(argc, argv);
    return CommandLine::parse(QCoreApplication::arguments());
}

} // namespace

int main(int argc, char **argv)
{
    QCoreApplication::setApplicationName("paravue-setup");
    QCoreApplication::setApplicationVersion(PARAVUE_VERSION);

    const CommandLine commandLine = readCommandLine(argc, argv);
    switch (commandLine.task) {
    case CommandLine::Task::ShowText:
        QTextStream(stdout) << commandLine.text;
        return Accepted;
    case CommandLine::Task::RefuseUsage:
        QTextStream(stderr) << "paravue-setup: " << commandLine.text << "\nTry paravue-setup --help.\n";
        return WrongUsage;
    case CommandLine::Task::CheckDescription:
        return runCheck(commandLine);
    case CommandLine::Task::RunSession:
        break;
    }

    const QApplication application(argc, argv);
    // The program does not end with its window: a save may still be running.
    QApplication::setQuitOnLastWindowClosed(false);
    // A signal cancels the window, so that the local copies of the recorder's files are removed.
    recorder::quitOnStopSignal();

    ExitCode exitCode = Failed;
    QTimer::singleShot(0, [&] {
        exitCode = runSession(commandLine);
        QCoreApplication::quit();
    });
    QApplication::exec();
    return exitCode;
}
