#include "Commands.h"
#include "ControlCommandLine.h"
#include "ControlText.h"
#include "ExchangeLog.h"
#include "ProgressLine.h"
#include "Prompt.h"
#include "RecorderSession.h"
#include "Terminal.h"
#include "TerminalText.h"
#include "snapshots/SecretRemoval.h"

#include <QCoreApplication>
#include <QFileInfo>
#include <QJsonArray>
#include <QSaveFile>
#include <QSysInfo>
#include <QTextStream>

#include <memory>

namespace paravue
{

namespace
{

constexpr qsizetype MaxReportBytes = 4 * 1024 * 1024; // what mail servers take

/// What goes to support: one text, so that everybody can see what is in it.
struct Bundle {
    QString text;
    QStringList parts;   ///< the files
    QStringList secrets; ///< paths
    QStringList tooLarge;
    QStringList leftOut; ///< both, in words
};

QString titled(const QString &title, const QString &text)
{
    return QStringLiteral("==== %1\n\n%2\n\n").arg(title, text);
}

QString versions(const SnapshotInfo &recorder, const Outcome &outcome)
{
    QStringList lines{
        QStringLiteral("time: ") + QDateTime::currentDateTimeUtc().toString(Qt::ISODate),
        QCoreApplication::applicationName() + QStringLiteral(": ") + QCoreApplication::applicationVersion(),
        QStringLiteral("Qt: ") + QString::fromLatin1(qVersion()),
        QStringLiteral("system: ") + QSysInfo::prettyProductName(),
        QStringLiteral("recorder: ") + recorder.recorder,
        QStringLiteral("model: ") + recorder.model,
        QStringLiteral("firmware: ") + recorder.firmware,
        QStringLiteral("outcome: %1 %2").arg(int(outcome.code)).arg(outcome.problem).trimmed(),
    };
    for (QString &line : lines)
        line = terminalText(line);
    return lines.join(u'\n');
}

Bundle bundleOf(FileContents files, const SnapshotInfo &recorder, const Outcome &outcome, const QString &log)
{
    Bundle bundle;
    bundle.secrets = removeSecrets(files);
    for (const QString &path : std::as_const(bundle.secrets))
        bundle.leftOut << ControlText::tr("%1 (secret)").arg(path);
    QString contents;
    for (auto file = files.cbegin(); file != files.cend(); ++file) {
        if (contents.size() + file->size() > MaxReportBytes) {
            bundle.tooLarge << file.key();
            bundle.leftOut << ControlText::tr("%1 (%2 bytes)").arg(file.key()).arg(file->size());
            continue;
        }
        bundle.parts << file.key();
        contents += titled(QStringLiteral("file ") + file.key(), QString::fromUtf8(*file));
    }
    bundle.text = titled(QStringLiteral("versions"), versions(recorder, outcome)) +
                  titled(QStringLiteral("left out"), bundle.leftOut.join(u'\n')) +
                  titled(QStringLiteral("log"), log) + contents;
    return bundle;
}

/// Shows what is in the bundle and asks, if there is a terminal.
bool isConfirmed(const Bundle &bundle, const ControlCommandLine &line)
{
    if (line.yes)
        return true;
    if (!line.asks || !isTerminal(stdin) || !isTerminal(stderr))
        return false;
    progressline::clear();
    QTextStream terminal(stderr);
    terminal << ControlText::tr("Files: %1").arg(bundle.parts.join(QStringLiteral(", "))) << '\n';
    for (const QString &path : bundle.leftOut)
        terminal << ControlText::tr("Left out: %1").arg(terminalText(path)) << '\n';
    terminal << ControlText::tr("Write %1 (yes/no)? ").arg(line.output) << Qt::flush;
    return isYesTyped();
}

Outcome write(const Bundle &bundle, const ControlCommandLine &line)
{
    if (!isConfirmed(bundle, line))
        return notConfirmed(ControlText::tr("%1 was not confirmed; --yes writes it").arg(line.output));
    // A commit alone does not notice everywhere that the last bytes could not be written.
    QSaveFile file(line.output);
    const QByteArray bytes = bundle.text.toUtf8();
    if (!file.open(QIODevice::WriteOnly) || file.write(bytes) != bytes.size() || !file.flush() ||
        !file.commit())
        return {ExitCode::LocalFile,
                ControlText::tr("cannot write %1: %2").arg(line.output, file.errorString())};
    return {};
}

QJsonObject documentOf(const Bundle &bundle, const QString &recorder)
{
    return {{"format", "paravue-report"},
            {"version", 1},
            {"recorder", recorder},
            {"files", QJsonArray::fromStringList(bundle.parts)},
            {"secrets", QJsonArray::fromStringList(bundle.secrets)},
            {"tooLarge", QJsonArray::fromStringList(bundle.tooLarge)}};
}

void finish(RecorderSession &session, const Outcome &fetched, const ExchangeLog &log,
            const ControlCommandLine &line, const CommandEnd &end)
{
    FileContents files;
    const Outcome read = session.contents(files);
    const Outcome outcome = fetched.isDone() ? read : fetched;
    SnapshotInfo recorder;
    recorder.recorder = session.recorder();
    describeRecorder(recorder, files);
    const Bundle bundle = bundleOf(files, recorder, outcome, log.text());
    CommandReport report;
    report.document = documentOf(bundle, session.recorder());
    if (line.output.isEmpty()) {
        report.document[QStringLiteral("report")] = bundle.text;
        report.text = isTerminal(stdout) ? terminalLines(bundle.text) : bundle.text;
        return end(outcome, report);
    }
    const Outcome written = write(bundle, line);
    if (written.isDone()) {
        report.document[QStringLiteral("path")] = line.output;
        report.text = line.output + u'\n';
    }
    end(written.isDone() ? outcome : written, report);
}

} // namespace

void runReport(const ControlCommandLine &line, const CommandEnd &end)
{
    if (!line.output.isEmpty() && !line.force && QFileInfo::exists(line.output))
        return end(
            {ExitCode::LocalFile, ControlText::tr("%1 exists; --force overwrites it").arg(line.output)}, {});
    Outcome problem;
    const auto session = RecorderSession::open(line, problem);
    if (!session)
        return end(problem, {});
    const auto log = std::make_shared<ExchangeLog>(session->store().address());
    // What has failed is what support wants to know of.
    session->fetch([=](const Outcome &fetched) { finish(*session, fetched, *log, line, end); });
}

} // namespace paravue
