// paravue-ctl: reads, sets and keeps the settings of a recorder without a window, for scripts.

#include "Commands.h"
#include "ControlCommandLine.h"
#include "ControlText.h"
#include "InventoryRun.h"
#include "ProgressLine.h"
#include "RecorderSession.h"
#include "TerminalText.h"
#include "program/ConsoleOutput.h"
#include "program/PortableSettings.h"
#include "program/StopSignal.h"
#include "store/LogText.h"
#include "translations/InstallTranslations.h"

#include <QCoreApplication>
#include <QJsonDocument>
#include <QTextStream>

#include <cstdio>
#include <optional>

using namespace paravue;

namespace
{

void printError(const QString &text)
{
    QTextStream(stderr) << "paravue-ctl: " << text << Qt::endl;
}

void print(const CommandReport &report, bool isJson)
{
    QTextStream out(stdout);
    if (!isJson)
        out << report.text;
    else if (!report.document.isEmpty())
        out << QJsonDocument(report.document).toJson();
}

ExitCode run(const ControlCommandLine &line)
{
    std::optional<ExitCode> code;
    const OutcomeHandler end = [&code](const Outcome &outcome) {
        progressline::clear();
        if (!outcome.problem.isEmpty())
            printError(terminalText(logText(outcome.problem)));
        code = outcome.code;
        QCoreApplication::exit();
    };
    if (line.inventory.isEmpty())
        runCommand(line, [&](const Outcome &outcome, const CommandReport &report) {
            progressline::clear();
            print(report, line.json);
            end(outcome);
        });
    else
        runInventory(line, end);
    // A signal ends the exchange, so that the local copies of the recorder's files are removed.
    paravue::quitOnStopSignal();
    if (!code)
        QCoreApplication::exec();
    if (!code)
        RecorderSession::stopAll();
    while (!code)
        QCoreApplication::exec();
    return *code;
}

/// What was done counts as such only when its output has reached somebody; a failure stays the failure that
/// it was.
ExitCode withOutput(ExitCode code)
{
    const bool isWritten = std::fflush(stdout) == 0 && std::ferror(stdout) == 0;
    if (isWritten || (code != ExitCode::Done && code != ExitCode::Different))
        return code;
    printError(ControlText::tr("standard output cannot be written"));
    return ExitCode::LocalFile;
}

} // namespace

int main(int argc, char **argv)
{
    const ConsoleOutput output;
    const QCoreApplication application(argc, argv);
    QCoreApplication::setApplicationName("paravue-ctl");
    QCoreApplication::setApplicationVersion(PARAVUE_VERSION);
    keepSettingsBesideProgram(QCoreApplication::applicationDirPath());
    installTranslations();

    const ControlCommandLine line = ControlCommandLine::parse(QCoreApplication::arguments());
    switch (line.task) {
    case ControlCommandLine::Task::ShowText:
        QTextStream(stdout) << line.text;
        return int(withOutput(ExitCode::Done));
    case ControlCommandLine::Task::RefuseUsage:
        printError(line.text + u'\n' + ControlText::tr("Try paravue-ctl --help."));
        return int(ExitCode::WrongUsage);
    case ControlCommandLine::Task::RunCommand:
        break;
    }
    if (line.hasPasswordInAddress)
        printError(
            ControlText::tr("warning: other users of this computer can see the password in the address"));
    return int(withOutput(run(line)));
}
