#include "EditRun.h"

#include "ControlCommandLine.h"
#include "ControlText.h"
#include "EditCheck.h"
#include "ProgressLine.h"
#include "RecorderSession.h"
#include "SecretValues.h"
#include "TerminalText.h"
#include "changes/ChangeList.h"
#include "changes/FileValues.h"
#include "changes/PositionLists.h"
#include "device/EditedFiles.h"
#include "snapshots/SnapshotFolder.h"

#include <QHash>
#include <QJsonArray>
#include <QTextStream>

namespace paravue
{

namespace
{

/// What a run was to send, and what became of it.
struct EditReport {
    QString recorder;
    QList<Change> changes;
    QStringList files; ///< to be sent
    QStringList arrived;
    bool isDryRun = false;
    bool isConfirmed = false;
};

QString changesIn(const EditReport &report, bool showsSecrets)
{
    QString text;
    for (const Change &change : report.changes)
        text += changeText(change.path, change.oldValue, change.newValue, change.isSecret && !showsSecrets);
    return text;
}

/// What has become of the changes.
QString resultOf(const EditReport &report, bool isDone)
{
    const QString files = report.files.join(QStringLiteral(", "));
    if (report.changes.isEmpty())
        return isDone ? ControlText::tr("The recorder has these values already.") + u'\n' : QString();
    if (report.isDryRun)
        return ControlText::tr("Not sent: %1").arg(files) + u'\n';
    return report.isConfirmed ? ControlText::tr("Sent and confirmed: %1").arg(files) + u'\n' : QString();
}

QJsonObject documentOf(const EditReport &report, bool showsSecrets)
{
    QJsonArray changes;
    for (const Change &change : report.changes) {
        const bool isHidden = change.isSecret && !showsSecrets;
        changes.append(QJsonObject{{"path", change.path},
                                   {"old", shownInJson(change.oldValue, isHidden)},
                                   {"new", shownInJson(change.newValue, isHidden)},
                                   {"secret", change.isSecret}});
    }
    return {{"format", "paravue-changes"},
            {"version", 1},
            {"recorder", report.recorder},
            {"dryRun", report.isDryRun},
            {"changes", changes},
            {"files", QJsonArray::fromStringList(report.files)},
            {"arrived", QJsonArray::fromStringList(report.arrived)},
            {"confirmed", report.isConfirmed}};
}

/// Which values differ from those that were sent.
Outcome compare(const EditReport &report, const FileContents &files)
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
    const QString missing = status.missing.join(QStringLiteral(", "));
    if (!status.arrived.isEmpty())
        return {failed.code, ControlText::tr("%1; arrived: %2; not confirmed: %3")
                                 .arg(failed.problem, status.arrived.join(QStringLiteral(", ")), missing)};
    // A file that was sent may have arrived, whatever the recorder has answered.
    const bool isAnswered = failed.code == ExitCode::Rejected || failed.code == ExitCode::BadData;
    if (isAnswered || !status.unanswered.isEmpty())
        return {failed.code, ControlText::tr("%1; not confirmed: %2").arg(failed.problem, missing)};
    return {failed.code, ControlText::tr("%1; nothing has arrived").arg(failed.problem)};
}

/// The address with the password that the recorder expects after \a changes: one of them may be that of the
/// login in use.
QString addressAfter(const QList<Change> &changes, OrbSetup &store)
{
    static const QString PasswordPath = QStringLiteral("users/untitled/PASSWD");
    static const QString NamePath = QStringLiteral("users/untitled/NAME");
    const QString address = store.address();
    const qsizetype hostSign = address.lastIndexOf(u'@');
    const QString login = address.left(address.lastIndexOf(u':', hostSign));
    for (const Change &change : changes) {
        if (change.path.startsWith(PasswordPath) &&
            store.storedValue(NamePath + change.path.mid(PasswordPath.size())) == login)
            return login + u':' + change.newValue + address.mid(hostSign);
    }
    return address;
}

/// One run. The handlers of its exchanges hold it.
class EditRun : public std::enable_shared_from_this<EditRun>
{
public:
    EditRun(const std::shared_ptr<RecorderSession> &session, const ControlCommandLine &line,
            const WantedSource &source, const CommandEnd &end, const std::function<Outcome()> &rest)
        : m_session(session), m_line(line), m_source(source), m_end(end), m_rest(rest)
    {
    }

    void start()
    {
        const QString held = m_line.dryRun ? QString() : m_session->lock();
        if (!held.isEmpty())
            return m_end({ExitCode::LocalFile, held}, {});
        m_session->fetch([run = shared_from_this()](const Outcome &fetched) {
            if (fetched.isDone())
                run->editAndSend();
            else
                run->m_end(fetched, {});
        });
    }

private:
    void editAndSend()
    {
        if (const Outcome edited = edit(); !edited.isDone())
            return m_end(edited, {});
        m_report.isConfirmed = m_report.changes.isEmpty();
        if (m_report.isConfirmed || m_line.dryRun)
            end({});
        else
            send(true);
    }

    /// Makes the edits in the fetched files.
    Outcome edit()
    {
        FileContents files;
        if (const Outcome read = m_session->contents(files); !read.isDone())
            return read;
        QList<WantedValue> wanted;
        if (const Outcome chosen = m_source(*m_session, files, wanted); !chosen.isDone())
            return chosen;
        OrbNetSetup &store = m_session->store();
        const SecretValues secrets(files);
        ChangeList changes(store);
        QSet<QString> present;
        for (const WantedValue &value : std::as_const(wanted)) {
            if (isPresent(value, store))
                present.insert(value.path);
            else
                store.putBack(value.path, value.value);
        }
        m_report.changes = changes.all();
        const QStringList edited = pathsOf(m_report.changes);
        addStaleStates(m_report.changes, store, present);
        for (Change &change : m_report.changes)
            change.isSecret =
                change.isSecret || changes.isSecret(change.path) || secrets.contains(change.path);
        const QStringList paths = pathsOf(m_report.changes);
        m_report.files = editedFiles(store, {paths.begin(), paths.end()});
        return checkWriting(edited, m_report.files, store, files);
    }

    /// So that a run that comes to no end has told what it was about to change. The lines of many recorders
    /// stand together, each with its name, and JSON is one object.
    void showChanges()
    {
        const QString changes = changesIn(m_report, m_line.secrets);
        if (!m_line.inventory.isEmpty() || m_line.json || changes == m_shown)
            return;
        progressline::clear();
        QTextStream(stdout) << changes << Qt::flush;
        m_shown = changes;
    }

    void send(bool isFirst)
    {
        showChanges();
        m_session->send(m_report.files, [run = shared_from_this(), isFirst](const Outcome &sent) {
            // After a refused login everything was fetched anew, in place of the edits.
            if (isFirst && sent.isDone() && !run->m_session->store().saveStatus().replaced.isEmpty())
                run->repeat();
            else
                run->noteSent(sent);
        });
    }

    void repeat()
    {
        if (const Outcome edited = edit(); !edited.isDone())
            return end(edited);
        send(false);
    }

    void noteSent(const Outcome &sent)
    {
        const SaveStatus status = m_session->store().saveStatus();
        m_report.arrived = status.arrived;
        if (!sent.isDone())
            return end(withArrivals(sent, status));
        if (status.arrived.size() != m_report.files.size())
            return end(withArrivals({ExitCode::Login, ControlText::tr("the files were not sent")}, status));
        SnapshotFolder(SnapshotFolder::usualRoot(), m_session->recorder()).noteSave();
        m_session->store().setAddress(addressAfter(m_report.changes, m_session->store()));
        m_session->fetchAgain(m_report.files,
                              [run = shared_from_this()](const Outcome &fetched, const FileContents &files) {
                                  run->confirm(fetched, files);
                              });
    }

    void confirm(const Outcome &fetched, const FileContents &files)
    {
        if (!fetched.isDone())
            return end({fetched.code == ExitCode::Cancelled ? fetched.code : ExitCode::Different,
                        ControlText::tr("everything has arrived, but it was not confirmed: %1")
                            .arg(fetched.problem)});
        const Outcome compared = compare(m_report, files);
        m_report.isConfirmed = compared.isDone();
        end(compared);
    }

    void end(const Outcome &outcome)
    {
        m_report.recorder = m_session->recorder();
        m_report.isDryRun = m_line.dryRun;
        const Outcome whole = outcome.isDone() && m_rest ? m_rest() : outcome;
        const QString changes = changesIn(m_report, m_line.secrets);
        m_end(whole, {(changes == m_shown ? QString() : changes) + resultOf(m_report, whole.isDone()),
                      documentOf(m_report, m_line.secrets)});
    }

    const std::shared_ptr<RecorderSession> m_session;
    const ControlCommandLine m_line;
    const WantedSource m_source;
    const CommandEnd m_end;
    const std::function<Outcome()> m_rest;
    EditReport m_report;
    QString m_shown; ///< of the changes, what was printed
};

} // namespace

void runEdits(const ControlCommandLine &line, const WantedSource &source, const CommandEnd &end,
              const std::function<Outcome()> &rest)
{
    Outcome problem;
    if (const auto session = RecorderSession::open(line, problem))
        std::make_shared<EditRun>(session, line, source, end, rest)->start();
    else
        end(problem, {});
}

} // namespace paravue
