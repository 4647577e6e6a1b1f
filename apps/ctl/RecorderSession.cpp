#include "RecorderSession.h"

#include "ControlCommandLine.h"
#include "ControlText.h"
#include "LoginSource.h"
#include "recorder/StopSignal.h"

#include <QEventLoop>
#include <QFile>

namespace paravue
{

namespace
{

/// Files of the store that no recorder has.
const QString OwnFile = QStringLiteral("general");

ExitCode exitCodeOf(LinkStatus::Cause cause)
{
    switch (cause) {
    case LinkStatus::Cause::Network:
    case LinkStatus::Cause::NoAnswer:
        return ExitCode::Network;
    case LinkStatus::Cause::Login:
        return ExitCode::Login;
    case LinkStatus::Cause::Refused:
        return ExitCode::Rejected;
    case LinkStatus::Cause::LocalFile:
        return ExitCode::LocalFile;
    case LinkStatus::Cause::None:
    case LinkStatus::Cause::BadAnswer:
        break;
    }
    return ExitCode::BadData;
}

/// Runs one exchange of a store to its end.
class Exchange : public QObject
{
public:
    explicit Exchange(OrbSetup &store) : m_store(store)
    {
        connect(&store, &OrbSetup::loadDone, this, [this] { end(); });
        connect(&store, &OrbSetup::storeDone, this, [this] { end(); });
        connect(&store, &OrbSetup::pseudothrow, this, [this](const QString &message) { note(message); });
    }

    /// \a start begins the exchange. A signal cuts it off; with \a finish, that brings it to an end.
    Outcome run(const std::function<void()> &start, const std::function<void()> &finish = {})
    {
        start();
        if (!m_hasEnded && !recorder::hasStopSignal())
            m_loop.exec();
        const bool isStopped = !m_hasEnded;
        if (isStopped && finish) {
            finish();
            // No event loop starts any more once one was ended by a signal.
            while (!m_hasEnded)
                QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
        }
        if (!m_hasEnded)
            m_store.resetLink();
        return isStopped && m_outcome.isDone() ? stopped() : m_outcome;
    }

private:
    Outcome stopped() const
    {
        const bool isWhole = m_hasEnded && m_store.saveStatus().missing.isEmpty();
        return isWhole ? Outcome() : Outcome{ExitCode::Cancelled, ControlText::tr("stopped")};
    }

    void note(const QString &message)
    {
        const QString explanation = m_store.explanation(message);
        const QString problem = explanation.isEmpty() ? message : explanation;
        const LinkStatus &status = m_store.linkStatus();
        // What follows from the first problem would hide it.
        if (m_outcome.isDone())
            m_outcome = {exitCodeOf(status.cause), problem};
        // Some reports do not end the exchange.
        QMetaObject::invokeMethod(
            this,
            [this] {
                if (m_store.linkStatus().state != LinkStatus::State::Running)
                    end();
            },
            Qt::QueuedConnection);
    }

    void end()
    {
        m_hasEnded = true;
        // The store is busy until its signal has returned.
        QMetaObject::invokeMethod(&m_loop, &QEventLoop::quit, Qt::QueuedConnection);
    }

    OrbSetup &m_store;
    QEventLoop m_loop;
    Outcome m_outcome;
    bool m_hasEnded = false;
};

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

RecorderSession::RecorderSession(const QString &address, const ControlCommandLine &line)
    : m_store(address), m_retries(line.retries)
{
    m_store.setTimeouts({line.timeout, line.timeout});
    m_store.setCredentialsSource(terminalLogin(address.section(u':', 0, 0)));
}

Outcome RecorderSession::fetchOnce()
{
    return Exchange(m_store).run([this] { m_store.load(); });
}

Outcome RecorderSession::fetch()
{
    Outcome outcome = fetchOnce();
    for (int i = 0; i < m_retries && outcome.code == ExitCode::Network; ++i) {
        m_store.resetLink();
        outcome = fetchOnce();
    }
    return outcome;
}

Outcome RecorderSession::send(const QStringList &names)
{
    return Exchange(m_store).run([&] { m_store.sendFiles(names); }, [this] { m_store.stopSending(); });
}

Outcome RecorderSession::fetchAgain(const QStringList &names, FileContents &files)
{
    const std::unique_ptr<OrbSetup> reader = m_store.reader(names);
    const Outcome outcome = Exchange(*reader).run([&] { reader->load(); });
    return outcome.isDone() ? contentsOf(*reader, {}, files) : outcome;
}

Outcome RecorderSession::contents(FileContents &files)
{
    return contentsOf(m_store, QStringLiteral(".original"), files);
}

} // namespace paravue
