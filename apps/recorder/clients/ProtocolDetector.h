#pragma once

#include "recorder/clients/Client.h"

namespace recorder
{

enum class Protocol { Configuration, Video, Http };

/// The protocol that begins with these bytes; nothing while they are too few.
std::optional<Protocol> detectProtocol(const QByteArray &firstBytes);

/// A client whose protocol is not known yet. It leaves the bytes in the socket.
class ProtocolDetector : public Client
{
    Q_OBJECT

public:
    ProtocolDetector(QTcpSocket *socket, QObject *parent);

    void start() override { detect(); }
    /// Hands the socket over to the client of the detected protocol. This one must not be used any more.
    QTcpSocket *takeSocket();

Q_SIGNALS:
    void detected(recorder::Protocol protocol);

private:
    void detect();
};

} // namespace recorder
