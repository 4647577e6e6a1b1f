#include "RawClient.h"

#include <QTest>

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
    [[maybe_unused]] const bool enough =
        QTest::qWaitFor([&] { return m_socket.bytesAvailable() >= count; }, 5000);
    QCoreApplication::processEvents();
    return m_socket.readAll();
}

QByteArray RawClient::ask(const QByteArray &request, const QByteArray &expected)
{
    send(request);
    return receive(expected.size());
}

QByteArray RawClient::receiveFrame()
{
    QByteArray header;
    const auto headerIsWhole = [&] {
        while (!header.endsWith('\n') && m_socket.bytesAvailable() > 0)
            header += m_socket.read(1);
        return header.endsWith('\n');
    };
    if (!QTest::qWaitFor(headerIsWhole, 5000))
        return header;
    return header + receive(header.mid(7).trimmed().toInt());
}

QByteArray RawClient::receiveUntilClosed()
{
    const bool closed =
        QTest::qWaitFor([&] { return m_socket.state() == QAbstractSocket::UnconnectedState; }, 10000);
    return closed ? m_socket.readAll() : QByteArray();
}

bool RawClient::logIn(const QByteArray &name, const QByteArray &password)
{
    const QByteArray accepted = "LENGTH=16\r\nVORN_ANSWER=OK\r\n";
    return ask("\x04LOGIN=" + name + "\r\nPASS=" + password + "\r\n", accepted) == accepted;
}
