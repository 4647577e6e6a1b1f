#pragma once

#include <QByteArray>
#include <QTcpSocket>

/// A client that sends and receives bytes and leaves login and frames to the test.
class RawClient
{
public:
    explicit RawClient(quint16 port);

    void send(const QByteArray &bytes);
    /// Sends single bytes, each in a packet of its own.
    void sendByteByByte(const QByteArray &bytes);

    /// Waits for that many bytes and returns all that have arrived, so that surplus bytes are noticed.
    QByteArray receive(qsizetype count);
    /// Sends the request and receives the "LENGTH=n" frame of the answer, with surplus bytes after it.
    QByteArray ask(const QByteArray &request);
    /// All bytes until the server disconnects; "still open" when it does not.
    QByteArray receiveUntilClosed();

    bool logIn(const QByteArray &name = "admin", const QByteArray &password = "admin");
    /// Reads nothing more from the network.
    void stopReading() { m_socket.setReadBufferSize(1); }
    bool isConnected() const { return m_socket.state() == QAbstractSocket::ConnectedState; }
    void abort() { m_socket.abort(); }

private:
    QTcpSocket m_socket;
};
