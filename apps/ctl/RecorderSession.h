#pragma once

#include "Outcome.h"
#include "device/OrbNetSetup.h"
#include "snapshots/Snapshot.h"

#include <QStringList>

#include <functional>

namespace paravue
{

struct ControlCommandLine;

/// The exchanges of one command with one recorder. Each call returns when its exchange has ended, has failed
/// or was stopped by a signal, with the first problem that the store has reported.
class RecorderSession
{
public:
    RecorderSession(const QString &address, const ControlCommandLine &line);

    OrbNetSetup &store() { return m_store; }

    /// Fetches all files, again after a failed connection as often as the command line says.
    Outcome fetch();
    /// Sends the files \a names. A signal stops it behind the file that is being sent.
    Outcome send(const QStringList &names);
    /// Fetches the files \a names as the recorder has them now.
    Outcome fetchAgain(const QStringList &names, FileContents &files);

    /// The files as they were fetched.
    Outcome contents(FileContents &files);

private:
    Outcome fetchOnce();

    OrbNetSetup m_store;
    const int m_retries;
};

} // namespace paravue
