#include "RecorderSession.h"

#include "ControlCommandLine.h"
#include "ControlText.h"
#include "LoginSource.h"
#include "ProgressLine.h"
#include "setup/LinkExitCode.h"
#include "snapshots/SnapshotFolder.h"

#include <QFile>
#include <QTimer>

#include <algorithm>
#include <utility>

namespace paravue
{

namespace
{

/// Files of the store that no recorder has.
const QString OwnFile = QStringLiteral("general");

/// Those that are alive.
QList<RecorderSession *> &allSessions()
{
    static QList<RecorderSession *> sessions;
    return sessions;
}

bool isProgramStopped = false;

Outcome stopped()
{
    return {ExitCode::Cancelled, ControlText::tr("stopped")};
}

Outcome contentsOf(OrbSetup &store, const QString &suffix, FileContents &files)
{
    for (const QString &name : store.fetchedFiles()) {
        if (name == OwnFile)
            continue;
        QFile file(store.filePath(name + suffix));
        if (!file.open(QIODevice::ReadOnly))
            return {ExitCode::LocalFile,
                    ControlText::tr("the copy of \"%1\" cannot be read: %2").arg(name, file.errorString())};
        files.insert(name, file.readAll());
    }
    return {};
}

} // namespace

/// One exchange of a store, which deletes itself at its end.
class Exchange : public QObject
{
public:
    /// \a finish brings the exchange to an early end; without it, a stop cuts the exchange off, as it is
    /// at \a limit.
    Exchange(OrbSetup &store, OutcomeHandler then, std::function<void()> finish,
             std::chrono::milliseconds limit, QObject *parent)
        : QObject(parent), m_store(store), m_then(std::move(then)), m_finish(std::move(finish)),
          m_limit(new QTimer(this))
    {
        m_limit->setSingleShot(true);
        m_limit->setInterval(limit);
        connect(m_limit, &QTimer::timeout, this, &Exchange::cutOff);
        restartLimit();
        connect(&store, &OrbSetup::loadDone, this, &Exchange::end);
        connect(&store, &OrbSetup::storeDone, this, &Exchange::end);
        connect(&store, &OrbSetup::pseudothrow, this, &Exchange::note);
    }

    void stop()
    {
        if (m_hasEnded || std::exchange(m_isStopped, true))
            return;
        if (m_finish)
            m_finish();
        else
            end();
    }

    /// Time in which a user has typed does not count.
    void restartLimit() { m_limit->start(); }

private:
    /// Each byte begins the time-out of the store anew, so a recorder could hold the exchange for ever.
    void cutOff()
    {
        const auto seconds = std::chrono::duration_cast<std::chrono::seconds>(m_limit->intervalAsDuration());
        if (m_outcome.isDone() && !m_hasEnded && !m_isStopped)
            m_outcome = {ExitCode::Network,
                         ControlText::tr("the exchange has lasted longer than %1 s; --time-limit allows more")
                             .arg(seconds.count())};
        end();
    }

    void note(const QString &message)
    {
        const QString explanation = m_store.explanation(message);
        // What follows from the first problem would hide it.
        if (m_outcome.isDone())
            m_outcome = wasAskedInVain() ? stopped()
                                         : Outcome{exitCodeOf(m_store.linkStatus().cause, ExitCode::BadData),
                                                   explanation.isEmpty() ? message : explanation};
        // Some reports do not end the exchange.
        QMetaObject::invokeMethod(
            this,
            [this] {
                if (m_store.linkStatus().state != LinkStatus::State::Running)
                    end();
            },
            Qt::QueuedConnection);
    }

    /// A stop while the user was asked for the login, which the store reports as a refused one.
    bool wasAskedInVain() const
    {
        return m_isStopped && m_store.linkStatus().cause == LinkStatus::Cause::Login;
    }

    void end()
    {
        if (std::exchange(m_hasEnded, true))
            return;
        // The store is busy until its signal has returned.
        QMetaObject::invokeMethod(this, &Exchange::conclude, Qt::QueuedConnection);
    }

    void conclude()
    {
        if (m_store.linkStatus().state == LinkStatus::State::Running)
            m_store.resetLink();
        const bool isCutOff = m_isStopped && (!m_finish || !m_store.saveStatus().missing.isEmpty());
        const Outcome outcome = m_outcome.isDone() && isCutOff ? stopped() : m_outcome;
        const OutcomeHandler then = std::move(m_then);
        deleteLater();
        then(outcome);
    }

    OrbSetup &m_store;
    OutcomeHandler m_then;
    const std::function<void()> m_finish;
    QTimer *const m_limit;
    Outcome m_outcome;
    bool m_hasEnded = false;
    bool m_isStopped = false;
};

std::shared_ptr<RecorderSession> RecorderSession::open(const ControlCommandLine &line, Outcome &problem)
{
    QString address;
    problem = completeAddress(line, address);
    return problem.isDone() ? std::shared_ptr<RecorderSession>(new RecorderSession(address, line)) : nullptr;
}

RecorderSession::RecorderSession(const QString &address, const ControlCommandLine &line)
    : m_store(address), m_retries(line.retries), m_timeLimit(line.timeLimit)
{
    m_store.setTimeouts({line.timeout, line.timeout});
    if (line.asks)
        m_store.setCredentialsSource(terminalLogin(address.section(u':', 0, 0), [this] {
            if (m_exchange)
                m_exchange->restartLimit();
        }));
    if (line.inventory.isEmpty())
        connect(&m_store, &OrbSetup::progress, this, &RecorderSession::showProgress);
    allSessions().append(this);
}

RecorderSession::~RecorderSession()
{
    allSessions().removeOne(this);
}

void RecorderSession::showProgress(int percent)
{
    progressline::show(
        QStringLiteral("%1: %2 % %3").arg(recorder(), QString::number(percent), m_store.activity()));
}

QString RecorderSession::recorder() const
{
    return recorderOfAddress(m_store.address());
}

void RecorderSession::run(OrbSetup &store, const std::function<void()> &start, const OutcomeHandler &then,
                          const std::function<void()> &finish)
{
    if (isProgramStopped) {
        QMetaObject::invokeMethod(
            this, [then] { then(stopped()); }, Qt::QueuedConnection);
        return;
    }
    m_exchange = new Exchange(store, then, finish, m_timeLimit, this);
    start();
}

void RecorderSession::fetch(const OutcomeHandler &then)
{
    fetch(then, m_retries);
}

void RecorderSession::fetch(const OutcomeHandler &then, int retries)
{
    run(
        m_store, [this] { m_store.load(); },
        [=, this](const Outcome &outcome) {
            if (retries == 0 || outcome.code != ExitCode::Network)
                return then(outcome);
            m_store.resetLink();
            fetch(then, retries - 1);
        });
}

void RecorderSession::runFetched(
    const ControlCommandLine &line, const CommandEnd &end,
    const std::function<Outcome(RecorderSession &, const ControlCommandLine &, CommandReport &)> &work)
{
    Outcome problem;
    const auto session = open(line, problem);
    if (!session)
        return end(problem, {});
    session->fetch([=](const Outcome &fetched) {
        CommandReport report;
        const Outcome outcome = fetched.isDone() ? work(*session, line, report) : fetched;
        end(outcome, report);
    });
}

void RecorderSession::send(const QStringList &names, const OutcomeHandler &then)
{
    run(
        m_store, [&] { m_store.sendFiles(names); }, then, [this] { m_store.stopSending(); });
}

void RecorderSession::fetchAgain(const QStringList &names,
                                 const std::function<void(const Outcome &, const FileContents &)> &then)
{
    m_reader = m_store.reader(names);
    run(
        *m_reader, [this] { m_reader->load(); },
        [this, then](const Outcome &outcome) {
            FileContents files;
            then(outcome.isDone() ? contentsOf(*m_reader, {}, files) : outcome, files);
        });
}

void RecorderSession::runFunction(const QString &name, const QString &argument, const OutcomeHandler &then)
{
    run(
        m_store, [&] { m_store.function(name, argument); }, then);
}

QString RecorderSession::lock()
{
    m_lock = std::make_unique<RecorderLock>(SnapshotFolder(SnapshotFolder::usualRoot(), recorder()));
    return m_lock->problem();
}

Outcome RecorderSession::contents(FileContents &files)
{
    return contentsOf(m_store, QStringLiteral(".original"), files);
}

void RecorderSession::stopAll()
{
    isProgramStopped = true;
    for (RecorderSession *session : std::as_const(allSessions())) {
        if (session->m_exchange)
            session->m_exchange->stop();
    }
}

} // namespace paravue
