#pragma once

#include "Commands.h"
#include "Outcome.h"
#include "device/OrbNetSetup.h"
#include "snapshots/RecorderLock.h"
#include "snapshots/Snapshot.h"

#include <QObject>
#include <QPointer>
#include <QStringList>

#include <chrono>
#include <functional>
#include <memory>

namespace paravue
{

class Exchange;
struct ControlCommandLine;

/// The exchanges of one command with one recorder, one at a time. Each call returns at once; its handler is
/// called through the event loop when the exchange has ended, has failed or was stopped, with the first
/// problem that the store has reported. The handler holds what it needs, the session too.
class RecorderSession : public QObject
{
public:
    /// With the login of \a line. Null with a \a problem when that cannot be had.
    static std::shared_ptr<RecorderSession> open(const ControlCommandLine &line, Outcome &problem);
    ~RecorderSession() override;

    OrbNetSetup &store() { return m_store; }
    /// Host and port, as recorderOfAddress() gives them.
    QString recorder() const;

    /// Runs a command that needs what the recorder has and nothing else: opens a session, fetches all files,
    /// lets \a work fill in the report, and ends the command.
    static void runFetched(
        const ControlCommandLine &line, const CommandEnd &end,
        const std::function<Outcome(RecorderSession &, const ControlCommandLine &, CommandReport &)> &work);
    /// Fetches all files, again after a failed connection as often as the command line says.
    void fetch(const OutcomeHandler &then);
    /// Sends the files \a names.
    void send(const QStringList &names, const OutcomeHandler &then);
    /// Fetches the files \a names as the recorder has them now.
    void fetchAgain(const QStringList &names,
                    const std::function<void(const Outcome &, const FileContents &)> &then);

    /// Runs the function \a name of the recorder. A stop cuts it off.
    void runFunction(const QString &name, const QString &argument, const OutcomeHandler &then);

    /// Keeps other programs from changing the recorder until the session ends. What stands against it; empty
    /// when nothing does.
    QString lock();

    /// The files as they were fetched.
    Outcome contents(FileContents &files);

    /// Lets the running exchanges of all sessions end, a save behind the file that is being sent. Later ones
    /// are not begun.
    static void stopAll();

private:
    RecorderSession(const QString &address, const ControlCommandLine &line);
    void showProgress(int percent);
    void fetch(const OutcomeHandler &then, int retries);
    void run(OrbSetup &store, const std::function<void()> &start, const OutcomeHandler &then,
             const std::function<void()> &finish = {});

    OrbNetSetup m_store;
    const int m_retries;
    const std::chrono::milliseconds m_timeLimit;
    std::unique_ptr<RecorderLock> m_lock;
    std::unique_ptr<OrbSetup> m_reader;
    QPointer<Exchange> m_exchange;
};

} // namespace paravue
