#pragma once

#include <QByteArray>
#include <QTcpServer>
#include <QTcpSocket>

#include <memory>

namespace paravue::fuzz
{

/// The recorder's end of connections on this computer, one at a time, in the same event loop.
class LoopbackPeer
{
public:
    LoopbackPeer();

    quint16 port() const { return m_server.serverPort(); }
    /// Accepts the next connection; returns what its other end has written.
    QByteArray accept();
    /// Writes \a bytes and lets the other end read them.
    void send(const QByteArray &bytes);
    /// What the other end has written since.
    QByteArray received() { return m_connection->readAll(); }
    /// Closes the connection.
    void close();

private:
    QTcpServer m_server;
    std::unique_ptr<QTcpSocket> m_connection;
};

} // namespace paravue::fuzz
