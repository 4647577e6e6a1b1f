#pragma once

#include "recorder/files/Accounts.h"

#include <QObject>
#include <QTcpSocket>
#include <QTimer>

namespace recorder
{

/// A connected client of any protocol.
class Client : public QObject
{
    Q_OBJECT

public:
    /// The size of the read buffer: more than this is left to the network.
    static constexpr qsizetype ReadPiece = 64 * 1024;

    /// The socket becomes a child of the client.
    Client(QTcpSocket *socket, QObject *parent);

    /// Processes what has arrived so far. To be called once, when the signals are connected.
    virtual void start() = 0;
    /// Closes the connection without an answer.
    void close();

    /// The account that is logged in.
    const std::optional<Account> &account() const { return m_account; }

Q_SIGNALS:
    void logged(const QString &line);
    /// The connection has ended.
    void closed();

protected:
    /// m_timeout has expired; closes the connection.
    virtual void expired();

    QTcpSocket *m_socket; // child
    QTimer m_timeout;     // single shot
    std::optional<Account> m_account;
};

} // namespace recorder
