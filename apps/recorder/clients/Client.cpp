#include "recorder/clients/Client.h"

namespace recorder
{

Client::Client(QTcpSocket *socket, QObject *parent) : QObject(parent), m_socket(socket)
{
    m_socket->setParent(this);
    m_socket->setReadBufferSize(ReadPiece);
    m_socket->setSocketOption(QAbstractSocket::LowDelayOption, 1);
    connect(m_socket, &QTcpSocket::disconnected, this, &Client::closed);
}

void Client::close()
{
    m_socket->abort();
}

} // namespace recorder
