#pragma once

#include <QByteArray>
#include <QLocalServer>
#include <QMap>
#include <QObject>
#include <QString>

namespace recorder
{

/// The companion process of setup programs. Over a local socket it sends the names of the recorders to the
/// programs of the same user on this computer.
class Companion : public QObject
{
    Q_OBJECT

public:
    explicit Companion(QObject *parent = nullptr);

    /// Listens at \a server, a name or a path. False, with errorString() set, when another companion does so
    /// already. The socket of a companion that has crashed is replaced.
    bool listen(const QString &server = standardServer());
    QString errorString() const;

    /// The server that setup programs connect to.
    static QString standardServer();

    /// The names of the recorders by address (host:port). They are also sent to all who have asked for the
    /// list.
    void setRecorders(const QMap<QString, QString> &names);

private:
    void acceptClients();
    void answer(QLocalSocket *client);

    QString m_error;
    QByteArray m_list;
    QList<QLocalSocket *> m_listeners; // children of the server
    QLocalServer m_server;             // destroyed first: its sockets signal their end to m_listeners
};

} // namespace recorder
