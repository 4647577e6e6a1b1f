#pragma once

#include <QProcess>
#include <QString>
#include <QTemporaryDir>

#include <optional>

namespace paravue
{

/// The recorder simulator as a process of its own, which ends with this object.
class DemoRecorder
{
public:
    ~DemoRecorder();

    /// Starts the simulator on a free port of this computer, with its files in \a dataFolder or, when that is
    /// empty, in a temporary folder that is removed at the end. An empty \a model is the usual one. Returns
    /// what went wrong, or an empty text.
    QString start(const QString &dataFolder, const QString &model);

    /// The address of the running simulator, with the login of its first administrator.
    QString address() const;

private:
    QString readPort();

    std::optional<QTemporaryDir> m_temporaryFolder;
    QString m_dataFolder;
    QProcess m_process;
    quint16 m_port = 0;
};

} // namespace paravue
