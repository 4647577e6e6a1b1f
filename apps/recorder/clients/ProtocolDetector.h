#pragma once

#include "recorder/clients/Client.h"

namespace recorder
{

enum class Protocol { Configuration, Video, Http };

/// What a client speaks, told by its first bytes; nothing while they are too few.
std::optional<Protocol> detectProtocol(const QByteArray &firstBytes);

/// A client that has not shown yet what it speaks. It takes none of its bytes.
class ProtocolDetector : public Client
{
    Q_OBJECT

public:
    ProtocolDetector(QTcpSocket *socket, QObject *parent);

    void start() override { detect(); }
    /// The socket, for the one who goes on with it; this client is over then.
    QTcpSocket *takeSocket();

Q_SIGNALS:
    void detected(recorder::Protocol protocol);

private:
    void detect();
};

} // namespace recorder
