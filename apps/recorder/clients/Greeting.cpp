#include "recorder/clients/Greeting.h"

#include <algorithm>

namespace recorder
{

namespace
{

constexpr int Patience = 30 * 1000;
constexpr char VideoLoginByte = 0x01;
/// Long enough for every method of HTTP, a blank and a slash.
constexpr qsizetype MostBytes = 10;

} // namespace

/// A path follows the method of HTTP, and never a command's name.
std::optional<Protocol> protocolOf(const QByteArray &firstBytes)
{
    if (firstBytes.startsWith(VideoLoginByte))
        return Protocol::Video;
    const QByteArray bytes = firstBytes.left(MostBytes);
    const auto methodEnd =
        std::find_if(bytes.begin(), bytes.end(), [](char c) { return c < 'A' || c > 'Z'; });
    const QByteArray rest = bytes.sliced(methodEnd - bytes.begin());
    const bool canBeHttp = rest.isEmpty() || (methodEnd != bytes.begin() && rest == " ");
    if (canBeHttp && bytes.size() < MostBytes)
        return std::nullopt;
    return methodEnd != bytes.begin() && rest.startsWith(" /") ? Protocol::Http : Protocol::Configuration;
}

Greeting::Greeting(QTcpSocket *socket, QObject *parent) : Client(socket, parent)
{
    connect(m_socket, &QTcpSocket::readyRead, this, &Greeting::look);
    m_patience.start(Patience);
}

QTcpSocket *Greeting::takeSocket()
{
    m_patience.stop();
    m_socket->disconnect(this);
    m_socket->setParent(nullptr);
    return m_socket;
}

void Greeting::look()
{
    if (const std::optional<Protocol> protocol = protocolOf(m_socket->peek(MostBytes)))
        Q_EMIT recognised(*protocol);
}

} // namespace recorder
