#pragma once

#include <QByteArray>
#include <QHash>
#include <QLocalSocket>
#include <QObject>
#include <QString>
#include <QTimer>

#include <chrono>

/// Knows the names of the recorders that a companion process on this computer has found, and asks it over a
/// local socket (see docs/protocol.md).
///
/// Without a companion every name is empty and no error is reported; the connection is tried again every two
/// seconds, or at the interval that was set.
class cODAdaptor : public QObject
{
    Q_OBJECT

public:
    /// The shared instance, made on first use. It is deleted with the application, which must exist.
    static cODAdaptor *instance();

    /// \a server is the name or path of the companion's socket.
    explicit cODAdaptor(const QString &server = companionServer(), QObject *parent = nullptr);
    ~cODAdaptor() override;

    /// The name of the recorder at \a address (host[:port]); empty when it is not known. One line, without
    /// control characters, of reasonable length.
    QString name(const QString &address) const;

    /// Waits for the companion's first list, for those that look up a name right after the start. Returns at
    /// once when there is no companion or the list is there.
    void waitForList(int milliseconds);

    void setRetryInterval(std::chrono::milliseconds interval) { m_retry.setInterval(interval); }

    /// "paravue-companion", in a folder of the user's own where sockets are files.
    static QString companionServer();

Q_SIGNALS:
    /// The list of known recorders has changed.
    void update();

private:
    void connectToCompanion();
    void receive();
    bool takeLine(const QByteArray &line);
    void drop();
    void setNames(const QHash<QString, QString> &names);

    QString m_server;
    QLocalSocket m_socket;
    QTimer m_retry;
    QByteArray m_buffer;                ///< the beginning of a line
    QHash<QString, QString> m_incoming; ///< of the list that is being received
    QHash<QString, QString> m_names;    ///< by comparable address
    bool m_hasList = false;
};
