#pragma once

#include "program/ExitCode.h"

#include <QProcess>
#include <QString>

namespace paravue
{

/// The recorder simulator as a process of its own, which ends with this object.
class DemoRecorder
{
public:
    ~DemoRecorder();

    /// Starts the simulator on a free port of this computer, with its files in \a dataFolder or, when that is
    /// empty, in a temporary folder of its own. An empty \a model is the usual one. Returns
    /// what went wrong, or an empty text.
    QString start(const QString &dataFolder, const QString &model);

    /// What the program ends with when start() has failed.
    ExitCode exitCode() const { return m_exitCode; }

    /// The address of the running simulator, with the login of its first administrator.
    QString address() const;

private:
    QString readPort();

    QString earlyEnd();

    QString m_dataFolder; ///< empty: the simulator's own
    QProcess m_process;
    quint16 m_port = 0;
    ExitCode m_exitCode = ExitCode::LocalFile;
};

} // namespace paravue
