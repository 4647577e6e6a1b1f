#include "recorder/clients/ProtocolDetector.h"

#include <algorithm>

namespace recorder
{

namespace
{

constexpr int DetectionTimeout = 30 * 1000;
constexpr char VideoLogin = 0x01;
/// Enough for the longest method of HTTP, a blank and a slash.
constexpr qsizetype MaxBytes = 10;

} // namespace

/// After a method of HTTP comes a path with a slash. No command of the configuration protocol has one there.
std::optional<Protocol> detectProtocol(const QByteArray &firstBytes)
{
    if (firstBytes.startsWith(VideoLogin))
        return Protocol::Video;
    const QByteArray bytes = firstBytes.left(MaxBytes);
    const auto methodEnd =
        std::find_if(bytes.begin(), bytes.end(), [](char c) { return c < 'A' || c > 'Z'; });
    const QByteArray rest = bytes.sliced(methodEnd - bytes.begin());
    const bool canBeHttp = rest.isEmpty() || (methodEnd != bytes.begin() && rest == " ");
    if (canBeHttp && bytes.size() < MaxBytes)
        return std::nullopt;
    return methodEnd != bytes.begin() && rest.startsWith(" /") ? Protocol::Http : Protocol::Configuration;
}

ProtocolDetector::ProtocolDetector(QTcpSocket *socket, QObject *parent) : Client(socket, parent)
{
    connect(m_socket, &QTcpSocket::readyRead, this, &ProtocolDetector::detect);
    m_timeout.start(DetectionTimeout);
}

QTcpSocket *ProtocolDetector::takeSocket()
{
    m_timeout.stop();
    m_socket->disconnect(this);
    m_socket->setParent(nullptr);
    return m_socket;
}

void ProtocolDetector::detect()
{
    if (const std::optional<Protocol> protocol = detectProtocol(m_socket->peek(MaxBytes)))
        Q_EMIT detected(*protocol);
}

} // namespace recorder
