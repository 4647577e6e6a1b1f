#include "recorder/clients/Client.h"

namespace recorder
{

Client::Client(QTcpSocket *socket, QObject *parent) : QObject(parent), m_socket(socket)
{
    m_socket->setParent(this);
    m_socket->setReadBufferSize(ReadPiece);
    m_socket->setSocketOption(QAbstractSocket::LowDelayOption, 1);
    m_timeout.setSingleShot(true);
    connect(m_socket, &QTcpSocket::disconnected, this, &Client::closed);
    connect(&m_timeout, &QTimer::timeout, this, &Client::expired);
}

void Client::close()
{
    m_socket->abort();
}

void Client::expired()
{
    Q_EMIT logged(QStringLiteral("closed: nothing more came"));
    close();
}

} // namespace recorder
