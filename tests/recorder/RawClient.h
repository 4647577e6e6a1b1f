#pragma once

#include <QByteArray>
#include <QTcpSocket>

/// A client made of nothing but bytes: it knows neither the login nor the frames.
class RawClient
{
public:
    explicit RawClient(quint16 port);

    void send(const QByteArray &bytes);
    /// Sends single bytes, each in a packet of its own.
    void sendByteByByte(const QByteArray &bytes);

    /// Waits for that many bytes and returns everything that is there, so that a surplus shows too.
    QByteArray receive(qsizetype count);
    /// Sends and receives the "LENGTH=n" frame that answers, with whatever follows it too early.
    QByteArray ask(const QByteArray &request);
    /// Everything that arrives until the server closes; "still open" when it does not.
    QByteArray receiveUntilClosed();

    bool logIn(const QByteArray &name = "admin", const QByteArray &password = "admin");
    /// From now on nothing more is read from the network.
    void stopReading() { m_socket.setReadBufferSize(1); }
    bool isConnected() const { return m_socket.state() == QAbstractSocket::ConnectedState; }
    void abort() { m_socket.abort(); }

private:
    QTcpSocket m_socket;
};
