#pragma once

#include <QByteArray>
#include <QTcpServer>
#include <QTcpSocket>

#include <memory>

namespace paravue::fuzz
{

/// The recorder's end of one connection after another, on this computer and in the same event loop.
class LoopbackPeer
{
public:
    LoopbackPeer();

    quint16 port() const { return m_server.serverPort(); }
    /// Takes the connection that has been begun, and what its other end has written.
    QByteArray accept();
    /// Writes \a bytes and lets the other end read them.
    void send(const QByteArray &bytes);
    /// Closes the connection.
    void close();

private:
    QTcpServer m_server;
    std::unique_ptr<QTcpSocket> m_connection;
};

} // namespace paravue::fuzz
