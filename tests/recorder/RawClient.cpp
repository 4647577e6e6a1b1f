#include "RawClient.h"

#include "support/Waiting.h"

#include <QCoreApplication>

using paravue::test::waitUntil;

RawClient::RawClient(quint16 port)
{
    m_socket.connectToHost(QStringLiteral("127.0.0.1"), port);
    m_socket.setSocketOption(QAbstractSocket::LowDelayOption, 1);
    m_socket.waitForConnected();
}

void RawClient::send(const QByteArray &bytes)
{
    m_socket.write(bytes);
    m_socket.flush();
}

void RawClient::sendByteByByte(const QByteArray &bytes)
{
    for (const char byte : bytes) {
        send(QByteArray(1, byte));
        QCoreApplication::processEvents();
    }
}

QByteArray RawClient::receive(qsizetype count)
{
    waitUntil([&] { return m_socket.bytesAvailable() >= count; });
    QCoreApplication::processEvents();
    return m_socket.readAll();
}

QByteArray RawClient::ask(const QByteArray &request)
{
    send(request);
    waitUntil([&] { return m_socket.canReadLine(); });
    const QByteArray header = m_socket.readLine();
    return header + receive(header.mid(7).trimmed().toInt());
}

QByteArray RawClient::receiveUntilClosed()
{
    return waitUntil([&] { return !isConnected(); }) ? m_socket.readAll() : "still open";
}

bool RawClient::logIn(const QByteArray &name, const QByteArray &password)
{
    const QByteArray accepted = "LENGTH=16\r\nVORN_ANSWER=OK\r\n";
    return ask("\x04LOGIN=" + name + "\r\nPASS=" + password + "\r\n") == accepted;
}
