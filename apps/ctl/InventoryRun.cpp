#include "InventoryRun.h"

#include "Commands.h"
#include "ControlCommandLine.h"
#include "ControlText.h"
#include "Inventory.h"
#include "Metrics.h"
#include "OpenFiles.h"
#include "ProgressLine.h"
#include "RecorderSession.h"
#include "RunJournal.h"
#include "Terminal.h"
#include "TerminalText.h"
#include "ValuePatterns.h"
#include "store/LogText.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QRegularExpression>
#include <QTextStream>

#include <algorithm>
#include <cstddef>
#include <cstdio>
#include <memory>
#include <optional>
#include <vector>

namespace paravue
{

namespace
{

/// Puts the variables of \a recorder in the place of their names in braces. What names no variable is a
/// \a problem: it would be sent as it stands.
QString filledIn(const QString &text, const InventoryEntry &recorder, QString &problem)
{
    static const QRegularExpression Name(QStringLiteral("\\{([A-Za-z_][A-Za-z0-9_]*)\\}"));
    QString result;
    qsizetype position = 0;
    for (const QRegularExpressionMatch &match : Name.globalMatch(text)) {
        const QString name = match.captured(1);
        if (name != u"name" && !recorder.variables.contains(name))
            problem = ControlText::tr("\"%1\" has no variable \"%2\"").arg(recorder.name, name);
        result += QStringView(text).mid(position, match.capturedStart() - position);
        result += name == u"name" ? recorder.name : recorder.variables.value(name);
        position = match.capturedEnd();
    }
    return result + text.mid(position);
}

/// The command for one recorder.
QString makeLine(const ControlCommandLine &all, const InventoryEntry &recorder, ControlCommandLine &line)
{
    line = all;
    line.recorderName = recorder.name;
    line.asks = false; // several would ask at once
    if (!recorder.login.isEmpty())
        line.login = recorder.login;
    if (!recorder.passwordFile.isEmpty())
        line.passwordFile = recorder.passwordFile;
    QString problem = line.setAddress(recorder.address);
    for (QString &argument : line.arguments)
        argument = filledIn(argument, recorder, problem);
    line.output = filledIn(line.output, recorder, problem);
    for (auto value = recorder.values.cbegin(); value != recorder.values.cend(); ++value)
        line.values.insert(value.key(), filledIn(*value, recorder, problem));
    return problem;
}

struct RecorderRun {
    QString name;
    QString work; ///< for the journal
    ControlCommandLine line;
    std::optional<Outcome> outcome; ///< once it has ended
};

class InventoryRun : public std::enable_shared_from_this<InventoryRun>
{
public:
    InventoryRun(const ControlCommandLine &line, const OutcomeHandler &end) : m_line(line), m_end(end) {}

    void start()
    {
        if (const Outcome prepared = prepare(); !prepared.isDone())
            return m_end(prepared);
        limitJobs();
        beginMore();
    }

private:
    /// Sessions beyond the limit of open files would fail; fewer at once take longer.
    void limitJobs()
    {
        const int wanted = int(std::min(size_t(m_line.jobs), m_runs.size()));
        m_jobs = raiseOpenFiles(wanted);
        if (m_jobs < wanted)
            QTextStream(stderr) << "paravue-ctl: "
                                << ControlText::tr("the limit of open files allows %1 jobs, not %2")
                                       .arg(m_jobs)
                                       .arg(m_line.jobs)
                                << Qt::endl;
    }

    Outcome prepare()
    {
        Inventory inventory;
        if (const Outcome read = Inventory::read(m_line.inventory, inventory); !read.isDone())
            return read;
        if (!m_line.group.isEmpty() && !inventory.hasGroup(m_line.group))
            return {ExitCode::WrongUsage,
                    ControlText::tr("no recorder is in the group %1").arg(m_line.group)};
        if (!m_line.resume.isEmpty()) {
            if (const Outcome opened = m_journal.open(m_line.resume, m_line); !opened.isDone())
                return opened;
        }
        ValuePatterns limit(m_line.limit.isEmpty() ? QStringList() : QStringList(m_line.limit));
        for (const InventoryEntry &recorder : inventory.recorders()) {
            if ((!m_line.group.isEmpty() && !recorder.groups.contains(m_line.group)) ||
                !limit.contains(recorder.name))
                continue;
            RecorderRun run{recorder.name, {}, {}, {}};
            if (const QString problem = makeLine(m_line, recorder, run.line); !problem.isEmpty())
                return {ExitCode::WrongUsage, problem};
            run.work = m_journal.workOf(run.line);
            if (!m_journal.contains(run.name, run.work))
                m_runs.push_back(run);
        }
        return limit.unmatched().isEmpty()
                   ? Outcome()
                   : Outcome{ExitCode::WrongUsage, ControlText::tr("no recorder fits %1").arg(m_line.limit)};
    }

    /// How many may have begun by now.
    size_t allowed() const
    {
        if (m_isStopped || (m_line.stopAfter > 0 && m_failures >= m_line.stopAfter))
            return m_next;
        const size_t canaries = std::min(size_t(m_line.canary), m_runs.size());
        const bool areDone =
            std::all_of(m_runs.begin(), m_runs.begin() + std::ptrdiff_t(canaries),
                        [](const RecorderRun &run) { return run.outcome && run.outcome->isDone(); });
        return areDone ? m_runs.size() : canaries;
    }

    void beginMore()
    {
        if (m_isBeginning)
            return; // a run may end within its beginning
        m_isBeginning = true;
        while (m_next < allowed() && m_running < m_jobs) {
            const size_t index = m_next++;
            ++m_running;
            runCommand(m_runs[index].line, [run = shared_from_this(), index](const Outcome &outcome,
                                                                             const CommandReport &report) {
                run->note(index, outcome, report);
            });
        }
        m_isBeginning = false;
        if (m_running == 0)
            finish();
    }

    void note(size_t index, const Outcome &outcome, const CommandReport &report)
    {
        RecorderRun &run = m_runs[index];
        run.outcome = outcome;
        run.line = {}; // with 100,000 recorders these are many words
        --m_running;
        ++m_ended;
        if (outcome.code == ExitCode::Cancelled)
            m_isStopped = true;
        else if (!outcome.isDone())
            ++m_failures;
        print(run, report);
        if (outcome.isDone() && !m_line.dryRun)
            noteDone(run);
        showProgress();
        beginMore();
    }

    /// Without a journal the run could not be taken up again, so it does not go on. What could not be printed
    /// is done again then.
    void noteDone(const RecorderRun &run)
    {
        if (std::fflush(stdout) != 0 || std::ferror(stdout) != 0)
            return;
        const Outcome noted = m_journal.note(run.name, run.work);
        if (noted.isDone())
            return;
        m_isStopped = true;
        m_journalProblem = noted;
    }

    static Colour colourOf(const RecorderRun &run)
    {
        if (!run.outcome || run.outcome->code == ExitCode::Different)
            return Colour::Yellow;
        return run.outcome->isDone() ? Colour::Green : Colour::Red;
    }

    void showProgress() const
    {
        progressline::show(
            ControlText::tr("%1 of %2, not done: %3").arg(m_ended).arg(m_runs.size()).arg(m_failures));
    }

    void print(const RecorderRun &run, const CommandReport &report)
    {
        progressline::clear();
        if (m_line.command == u"metrics" && !m_line.json) {
            for (const auto &sample : report.document[QStringLiteral("samples")].toArray())
                m_metrics.append(MetricSample::fromJson(sample.toObject()));
            return; // those of one metric have to stand together
        }
        QTextStream out(stdout);
        if (!m_line.json) {
            const QStringList lines = report.text.split(u'\n', Qt::SkipEmptyParts);
            for (const QString &line : lines)
                out << terminalText(run.name) << ": " << line << '\n';
            return;
        }
        const QJsonObject object{{"format", "paravue-result"},
                                 {"version", 1},
                                 {"name", run.name},
                                 {"exitCode", int(run.outcome->code)},
                                 {"problem", logText(run.outcome->problem)},
                                 {"result", report.document}};
        out << QJsonDocument(object).toJson(QJsonDocument::Compact) << '\n';
    }

    static QString stateOf(const RecorderRun &run)
    {
        if (!run.outcome)
            return ControlText::tr("not begun");
        switch (run.outcome->code) {
        case ExitCode::Done:
            return ControlText::tr("done");
        case ExitCode::Different:
            return ControlText::tr("differs");
        case ExitCode::Cancelled:
            return ControlText::tr("stopped");
        default:
            return ControlText::tr("failed (%1)").arg(int(run.outcome->code));
        }
    }

    /// For people; beside JSON it is a message.
    void printTable() const
    {
        const bool isMessage = m_line.json || m_line.command == u"metrics";
        QTextStream out(isMessage ? stderr : stdout);
        qsizetype width = 0;
        qsizetype stateWidth = 0;
        for (const RecorderRun &run : m_runs) {
            width = std::max(width, run.name.size());
            stateWidth = std::max(stateWidth, stateOf(run).size());
        }
        if (!isMessage)
            out << '\n';
        for (const RecorderRun &run : m_runs) {
            const QString problem = run.outcome ? terminalText(logText(run.outcome->problem)) : QString();
            const QString state = problem.isEmpty() ? stateOf(run) : stateOf(run).leftJustified(stateWidth);
            out << terminalText(run.name).leftJustified(width) << "  "
                << (isMessage ? state : coloured(state, colourOf(run)))
                << (problem.isEmpty() ? QString() : QStringLiteral("  ") + problem) << '\n';
        }
    }

    Outcome outcome() const
    {
        Outcome all;
        for (const RecorderRun &run : m_runs) {
            const ExitCode code = run.outcome ? run.outcome->code : ExitCode::Cancelled;
            const bool isWorse = all.isDone() || all.code == ExitCode::Different;
            if (isWorse && code != ExitCode::Done && run.outcome)
                all.code = code;
        }
        const bool isWhole = m_ended == m_runs.size();
        return all.isDone() && !isWhole ? Outcome{ExitCode::Cancelled} : all;
    }

    void finish()
    {
        progressline::clear();
        QTextStream(stdout) << metricsText(m_metrics);
        printTable();
        const OutcomeHandler end = std::move(m_end);
        end(m_journalProblem.isDone() ? outcome() : m_journalProblem);
    }

    const ControlCommandLine m_line;
    OutcomeHandler m_end;
    RunJournal m_journal;
    Outcome m_journalProblem;
    QList<MetricSample> m_metrics;
    std::vector<RecorderRun> m_runs;
    size_t m_next = 0;  ///< to begin
    size_t m_ended = 0; ///< of those that have begun
    int m_running = 0;
    int m_jobs = 0; ///< at once
    int m_failures = 0;
    bool m_isBeginning = false;
    bool m_isStopped = false;
};

} // namespace

void runInventory(const ControlCommandLine &line, const OutcomeHandler &end)
{
    std::make_shared<InventoryRun>(line, end)->start();
}

} // namespace paravue
