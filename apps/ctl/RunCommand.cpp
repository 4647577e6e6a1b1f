#include "Commands.h"
#include "ControlCommandLine.h"
#include "ControlText.h"
#include "Prompt.h"
#include "RecorderSession.h"
#include "Terminal.h"
#include "TerminalText.h"
#include "device/protocol/DeviceCommands.h"
#include "program/StopSignal.h"

#include <QFile>
#include <QFileInfo>
#include <QRegularExpression>
#include <QSaveFile>
#include <QTextStream>

#include <algorithm>
#include <iterator>
#include <memory>

namespace paravue
{

namespace
{

const QString ReportFunction = QStringLiteral("get_report");
const QString PackageFunction = QStringLiteral("soft_istall_packet");
/// Where the function looks up the path of the package.
const QString PackagePath = QStringLiteral("general/paravue_ctl/package");

/// A function that takes an argument.
struct ArgumentRule {
    const char *function;
    const char *path;    ///< the value that the function sends
    const char *pattern; ///< of the whole argument
    bool isRequired;
};
constexpr ArgumentRule ArgumentRules[] = {
    {"soft_istall_packet", "general/paravue_ctl/package", ".+", true},
    {"remove_package", "general/remove_package/name", "[A-Za-z0-9][A-Za-z0-9+._-]*", true},
    {"set_time", "time/untitled/YYYYMMDDHHMMSS", "\\d{14}", true},
    {"set_time_ntp", "time/untitled/TIME_SERVER", "[A-Za-z0-9.:_-]+", false},
};

const ArgumentRule *ruleOf(const QString &function)
{
    const auto found =
        std::find_if(std::begin(ArgumentRules), std::end(ArgumentRules),
                     [&](const ArgumentRule &rule) { return function == QLatin1StringView(rule.function); });
    return found == std::end(ArgumentRules) ? nullptr : &*found;
}

Outcome wrongUsage(const QString &problem)
{
    return {ExitCode::WrongUsage, problem};
}

Outcome checkArgument(const QString &function, const QStringList &arguments)
{
    const ArgumentRule *rule = ruleOf(function);
    if (arguments.isEmpty())
        return rule && rule->isRequired ? wrongUsage(ControlText::tr("%1 needs an argument").arg(function))
                                        : Outcome();
    if (!rule)
        return wrongUsage(ControlText::tr("%1 takes no argument").arg(function));
    const QString &argument = arguments.constFirst();
    const QRegularExpression whole(QRegularExpression::anchoredPattern(QString::fromLatin1(rule->pattern)));
    if (!whole.match(argument).hasMatch())
        return wrongUsage(ControlText::tr("%1 cannot be the argument of %2").arg(argument, function));
    if (function == PackageFunction && !(QFileInfo(argument).isFile() && QFileInfo(argument).isReadable()))
        return {ExitCode::LocalFile, ControlText::tr("the file %1 cannot be read").arg(argument)};
    return {};
}

QString dangerText(DeviceCommand::Danger danger)
{
    return danger == DeviceCommand::Danger::Restart
               ? ControlText::tr("it restarts the recorder, which records nothing meanwhile")
               : ControlText::tr("what it removes from the recorder is lost for good");
}

/// Asks on the terminal, if there is one.
bool isConfirmed(const ControlCommandLine &line, const QString &danger)
{
    if (!line.asks || !isTerminal(stdin) || !isTerminal(stderr))
        return false;
    quitOnStopSignal(); // the command has not begun
    QTextStream(stderr) << ControlText::tr("%1 at %2: %3. Run it (yes/no)? ")
                               .arg(line.arguments.constFirst(), line.host(), danger)
                        << Qt::flush;
    return isYesTyped();
}

Outcome check(const ControlCommandLine &line)
{
    const QString &function = line.arguments.constFirst();
    const DeviceCommand *command = runnableCommand(function);
    if (!command)
        return wrongUsage(
            ControlText::tr("the functions are %1").arg(runnableCommandNames().join(QStringLiteral(", "))));
    if (const Outcome checked = checkArgument(function, line.arguments.mid(1)); !checked.isDone())
        return checked;
    if (!line.output.isEmpty() && function != ReportFunction)
        return wrongUsage(ControlText::tr("only %1 has something to write").arg(ReportFunction));
    if (!line.output.isEmpty() && !line.force && QFileInfo::exists(line.output))
        return {ExitCode::LocalFile, ControlText::tr("%1 exists; --force overwrites it").arg(line.output)};
    if (command->danger == DeviceCommand::Danger::None || line.yes)
        return {};
    const QString danger = dangerText(command->danger);
    return isConfirmed(line, danger)
               ? Outcome()
               : notConfirmed(
                     ControlText::tr("%1 was not confirmed: %2; --yes runs it").arg(function, danger));
}

class FunctionRun : public std::enable_shared_from_this<FunctionRun>
{
public:
    FunctionRun(const std::shared_ptr<RecorderSession> &session, const ControlCommandLine &line,
                const CommandEnd &end)
        : m_session(session), m_line(line), m_end(end), m_function(line.arguments.constFirst()),
          m_argument(line.arguments.value(1))
    {
    }

    void start()
    {
        // A report changes nothing.
        const QString held = m_function == ReportFunction ? QString() : m_session->lock();
        if (!held.isEmpty())
            return m_end({ExitCode::LocalFile, held}, {});
        if (m_session->store().functionUse(m_function, PackagePath).addresses.isEmpty())
            return run(true);
        m_session->fetch([run = shared_from_this()](const Outcome &fetched) {
            if (!fetched.isDone())
                return run->m_end(fetched, {});
            run->run(true);
        });
    }

private:
    void run(bool isFirst)
    {
        OrbNetSetup &store = m_session->store();
        if (const ArgumentRule *rule = ruleOf(m_function); rule && !m_argument.isEmpty())
            store.setValue(QString::fromLatin1(rule->path) + u'/' + m_argument);
        const QString address = store.address();
        m_session->runFunction(m_function, m_function == PackageFunction ? PackagePath : QString(),
                               [run = shared_from_this(), isFirst, address](const Outcome &outcome) {
                                   // After a refused login the files were fetched in its place.
                                   const bool hasRun = run->m_session->store().address() == address;
                                   if (outcome.isDone() && !hasRun && isFirst)
                                       run->run(false);
                                   else
                                       run->end(outcome);
                               });
    }

    void end(const Outcome &outcome)
    {
        if (!outcome.isDone())
            return m_end(outcome, {});
        CommandReport report;
        const QString answer = m_session->store().acceptance();
        report.document = {{"format", "paravue-function"},
                           {"version", 1},
                           {"recorder", m_session->recorder()},
                           {"function", m_function},
                           {"answer", answer}};
        if (!answer.isEmpty())
            report.text = terminalText(answer) + u'\n';
        m_end(m_function == ReportFunction ? takeReport(report) : outcome, report);
    }

    /// The answer of the recorder is its file "tmp".
    Outcome takeReport(CommandReport &report)
    {
        QFile file(m_session->store().filePath(QStringLiteral("tmp")));
        if (!file.open(QIODevice::ReadOnly))
            return {ExitCode::LocalFile,
                    ControlText::tr("cannot read %1: %2").arg(file.fileName(), file.errorString())};
        const QByteArray content = file.readAll();
        if (m_line.output.isEmpty()) {
            report.text += terminalLines(QString::fromUtf8(content));
            report.document.insert(QStringLiteral("report"), QString::fromUtf8(content));
            return {};
        }
        // A commit alone does not notice everywhere that the last bytes could not be written.
        QSaveFile output(m_line.output);
        if (!output.open(QIODevice::WriteOnly) || output.write(content) != content.size() ||
            !output.flush() || !output.commit())
            return {ExitCode::LocalFile,
                    ControlText::tr("cannot write %1: %2").arg(m_line.output, output.errorString())};
        return {};
    }

    const std::shared_ptr<RecorderSession> m_session;
    const ControlCommandLine m_line;
    const CommandEnd m_end;
    const QString m_function;
    const QString m_argument;
};

} // namespace

void runFunction(const ControlCommandLine &line, const CommandEnd &end)
{
    if (const Outcome checked = check(line); !checked.isDone())
        return end(checked, {});
    Outcome problem;
    if (const auto session = RecorderSession::open(line, problem))
        std::make_shared<FunctionRun>(session, line, end)->start();
    else
        end(problem, {});
}

} // namespace paravue
