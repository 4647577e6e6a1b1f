#pragma once

#include "recorder/clients/Client.h"

namespace recorder
{

enum class Protocol { Configuration, Video, Http };

/// What a client speaks, told by its first bytes; nothing while they are too few.
std::optional<Protocol> protocolOf(const QByteArray &firstBytes);

/// A client that has not shown yet what it speaks. It takes none of its bytes.
class Greeting : public Client
{
    Q_OBJECT

public:
    Greeting(QTcpSocket *socket, QObject *parent);

    void start() override { look(); }
    /// The socket, for the one who goes on with it; this client is over then.
    QTcpSocket *takeSocket();

Q_SIGNALS:
    void recognised(recorder::Protocol protocol);

private:
    void look();
};

} // namespace recorder
