// paravue-ctl: reads, sets and keeps the settings of a recorder without a window, for scripts.

#include "Commands.h"
#include "ControlCommandLine.h"
#include "ControlText.h"
#include "LoginSource.h"
#include "RecorderSession.h"
#include "TerminalText.h"
#include "program/ConsoleOutput.h"
#include "recorder/StopSignal.h"
#include "store/LogText.h"
#include "translations/InstallTranslations.h"

#include <QCoreApplication>
#include <QTextStream>

using namespace paravue;

namespace
{

void printError(const QString &text)
{
    QTextStream(stderr) << "paravue-ctl: " << text << Qt::endl;
}

Outcome run(const ControlCommandLine &line)
{
    if (line.hasPasswordInAddress)
        printError(
            ControlText::tr("warning: other users of this computer can see the password in the address"));
    QString address;
    if (const Outcome completed = completeAddress(line, address); !completed.isDone())
        return completed;
    RecorderSession session(address, line);
    if (line.command == u"get")
        return runGet(session, line);
    if (line.command == u"backup")
        return runBackup(session, line);
    return runSet(session, line);
}

} // namespace

int main(int argc, char **argv)
{
    const ConsoleOutput output;
    const QCoreApplication application(argc, argv);
    QCoreApplication::setApplicationName("paravue-ctl");
    QCoreApplication::setApplicationVersion(PARAVUE_VERSION);
    installTranslations();

    const ControlCommandLine line = ControlCommandLine::parse(QCoreApplication::arguments());
    switch (line.task) {
    case ControlCommandLine::Task::ShowText:
        QTextStream(stdout) << line.text;
        return int(ExitCode::Done);
    case ControlCommandLine::Task::RefuseUsage:
        printError(line.text + u'\n' + ControlText::tr("Try paravue-ctl --help."));
        return int(ExitCode::WrongUsage);
    case ControlCommandLine::Task::RunCommand:
        break;
    }
    // A signal ends the exchange, so that the local copies of the recorder's files are removed.
    recorder::quitOnStopSignal();
    const Outcome outcome = run(line);
    if (!outcome.problem.isEmpty())
        printError(terminalText(logText(outcome.problem)));
    return int(outcome.code);
}
