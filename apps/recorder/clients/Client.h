#pragma once

#include "recorder/files/Accounts.h"

#include <QObject>
#include <QTcpSocket>
#include <QTimer>

namespace recorder
{

/// A connected client, in whatever protocol it speaks.
class Client : public QObject
{
    Q_OBJECT

public:
    /// Bytes that are read at a time; more are not kept unread.
    static constexpr qsizetype ReadPiece = 64 * 1024;

    /// The socket becomes a child of the client.
    Client(QTcpSocket *socket, QObject *parent);

    /// Uses what has arrived so far; to be called once, when the signals are connected.
    virtual void start() = 0;
    /// Drops the client without another word.
    void close();

    /// The account that is logged in.
    const std::optional<Account> &account() const { return m_account; }

Q_SIGNALS:
    void logged(const QString &line);
    /// The client is gone.
    void closed();

protected:
    /// The time of m_patience is over: the client is dropped.
    virtual void expired();

    QTcpSocket *m_socket; // child
    QTimer m_patience;    // single shot
    std::optional<Account> m_account;
};

} // namespace recorder
