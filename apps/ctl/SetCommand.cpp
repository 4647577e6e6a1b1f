#include "Commands.h"
#include "ControlCommandLine.h"
#include "ControlText.h"
#include "RecorderSession.h"
#include "SecretValues.h"
#include "TerminalText.h"
#include "WantedValues.h"
#include "changes/ChangeList.h"
#include "changes/FileValues.h"
#include "device/EditedFiles.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QTextStream>

namespace paravue
{

namespace
{

/// What a run of the command was to send, and what became of it.
struct SetReport {
    QString recorder;
    QList<Change> changes;
    QStringList files; ///< to be sent
    QStringList arrived;
    bool isDryRun = false;
    bool isConfirmed = false;
};

QString shown(const std::optional<QString> &value, bool isHidden)
{
    return isHidden ? SecretKeys::dots() : terminalText(value.value_or(QString()));
}

void printText(const SetReport &report, bool showsSecrets)
{
    QTextStream out(stdout);
    for (const Change &change : report.changes) {
        const bool isHidden = change.isSecret && !showsSecrets;
        out << change.path << ": " << shown(change.oldValue, isHidden) << " -> "
            << shown(change.newValue, isHidden) << '\n';
    }
    if (report.changes.isEmpty())
        out << ControlText::tr("The recorder has these values already.") << '\n';
    else if (report.isDryRun)
        out << ControlText::tr("Not sent: %1").arg(report.files.join(QStringLiteral(", "))) << '\n';
    else if (report.isConfirmed)
        out << ControlText::tr("Sent and confirmed: %1").arg(report.files.join(QStringLiteral(", "))) << '\n';
}

void printJson(const SetReport &report, bool showsSecrets)
{
    const auto json = [&](const Change &change, const std::optional<QString> &value) {
        return value && (showsSecrets || !change.isSecret) ? QJsonValue(*value) : QJsonValue();
    };
    QJsonArray changes;
    for (const Change &change : report.changes) {
        changes.append(QJsonObject{{"path", change.path},
                                   {"old", json(change, change.oldValue)},
                                   {"new", json(change, change.newValue)},
                                   {"secret", change.isSecret}});
    }
    const QJsonObject document{{"format", "paravue-changes"},
                               {"version", 1},
                               {"recorder", report.recorder},
                               {"dryRun", report.isDryRun},
                               {"changes", changes},
                               {"files", QJsonArray::fromStringList(report.files)},
                               {"arrived", QJsonArray::fromStringList(report.arrived)},
                               {"confirmed", report.isConfirmed}};
    QTextStream(stdout) << QJsonDocument(document).toJson();
}

/// Which values differ from those that were sent.
Outcome compare(const SetReport &report, const FileContents &files)
{
    QStringList otherwise;
    QHash<QString, FileValues> values;
    for (const Change &change : report.changes) {
        const QString file = change.path.section(u'/', 0, 0);
        if (!values.contains(file))
            values.insert(file, FileValues(files.value(file)));
        if (values[file].value(change.path.section(u'/', 1)).value_or(QString()) != change.newValue)
            otherwise << change.path;
    }
    if (otherwise.isEmpty())
        return {};
    return {ExitCode::Different, ControlText::tr("the recorder has not kept %1 as it was sent")
                                     .arg(otherwise.join(QStringLiteral(", ")))};
}

/// \a failed with what the recorder has got, which is neither the old nor the new configuration.
Outcome withArrivals(const Outcome &failed, const SaveStatus &status)
{
    if (status.arrived.isEmpty())
        return {failed.code, ControlText::tr("%1; nothing has arrived").arg(failed.problem)};
    return {failed.code, ControlText::tr("%1; arrived: %2; not confirmed: %3")
                             .arg(failed.problem, status.arrived.join(QStringLiteral(", ")),
                                  status.missing.join(QStringLiteral(", ")))};
}

class SetRun
{
public:
    SetRun(RecorderSession &session, const ControlCommandLine &line, const QList<WantedValue> &wanted)
        : m_session(session), m_line(line), m_wanted(wanted)
    {
    }

    Outcome run()
    {
        if (const Outcome fetched = m_session.fetch(); !fetched.isDone())
            return fetched;
        Outcome outcome = edit();
        if (!outcome.isDone())
            return outcome;
        m_report.isConfirmed = m_report.changes.isEmpty();
        if (!m_report.isConfirmed && !m_line.dryRun)
            outcome = send();
        print();
        return outcome;
    }

private:
    /// Makes the edits in the fetched files.
    Outcome edit()
    {
        OrbNetSetup &store = m_session.store();
        if (const Outcome checked = checkWantedValues(m_wanted, m_session, m_line.force); !checked.isDone())
            return checked;
        FileContents files;
        if (const Outcome read = m_session.contents(files); !read.isDone())
            return read;
        const SecretValues secrets(files);
        ChangeList changes(store);
        for (const WantedValue &value : m_wanted)
            store.setValue(value.path + u'/' + value.value);
        m_report.changes = changes.all();
        QSet<QString> paths;
        for (Change &change : m_report.changes) {
            change.isSecret = change.isSecret || secrets.contains(change.path);
            paths.insert(change.path);
        }
        m_report.files = editedFiles(store, paths);
        return {};
    }

    Outcome send()
    {
        Outcome sent = m_session.send(m_report.files);
        // After a refused login everything was fetched anew, in place of the edits.
        if (sent.isDone() && !m_session.store().saveStatus().replaced.isEmpty()) {
            if (const Outcome edited = edit(); !edited.isDone())
                return edited;
            sent = m_session.send(m_report.files);
        }
        const SaveStatus status = m_session.store().saveStatus();
        m_report.arrived = status.arrived;
        if (!sent.isDone())
            return withArrivals(sent, status);
        if (status.arrived.size() != m_report.files.size())
            return withArrivals({ExitCode::Login, ControlText::tr("the files were not sent")}, status);
        return confirm();
    }

    Outcome confirm()
    {
        FileContents files;
        const Outcome fetched = m_session.fetchAgain(m_report.files, files);
        if (!fetched.isDone())
            return {
                fetched.code == ExitCode::Cancelled ? fetched.code : ExitCode::Different,
                ControlText::tr("everything has arrived, but it was not confirmed: %1").arg(fetched.problem)};
        const Outcome compared = compare(m_report, files);
        m_report.isConfirmed = compared.isDone();
        return compared;
    }

    void print()
    {
        m_report.recorder = recorderOfAddress(m_session.store().address());
        m_report.isDryRun = m_line.dryRun;
        if (m_line.json)
            printJson(m_report, m_line.secrets);
        else
            printText(m_report, m_line.secrets);
    }

    RecorderSession &m_session;
    const ControlCommandLine &m_line;
    const QList<WantedValue> &m_wanted;
    SetReport m_report;
};

} // namespace

Outcome runSet(RecorderSession &session, const ControlCommandLine &line)
{
    QList<WantedValue> wanted;
    if (const Outcome read = readWantedValues(line, wanted); !read.isDone())
        return read;
    return SetRun(session, line, wanted).run();
}

} // namespace paravue
