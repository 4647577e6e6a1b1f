#pragma once

#include <QByteArray>
#include <QLocalServer>
#include <QMap>
#include <QObject>
#include <QString>

namespace recorder
{

/// The companion process of a setup program: tells programs of the same user on this computer which recorders
/// there are, over a local socket.
class Companion : public QObject
{
    Q_OBJECT

public:
    explicit Companion(QObject *parent = nullptr);

    /// Listens at \a server, a name or a path. False, with errorString() set, when another companion does so
    /// already. A socket that a dead one has left behind is replaced.
    bool listen(const QString &server = standardServer());
    QString errorString() const;

    /// Where setup programs look for their companion.
    static QString standardServer();

    /// The names of the recorders by address (host:port); also sent to all that have asked before.
    void setRecorders(const QMap<QString, QString> &names);

private:
    void acceptClients();
    void answer(QLocalSocket *client);

    QString m_error;
    QByteArray m_list;
    QList<QLocalSocket *> m_listeners; // children of the server
    QLocalServer m_server;             // goes first: its sockets report their end
};

} // namespace recorder
