#include "LoopbackPeer.h"

#include "Events.h"
#include "Require.h"

#include <sys/socket.h>

namespace paravue::fuzz
{

LoopbackPeer::LoopbackPeer()
{
    require(m_server.listen(QHostAddress::LocalHost), "there is a port on this computer");
}

QByteArray LoopbackPeer::accept()
{
    handleEvents();
    require(m_server.hasPendingConnections() || m_server.waitForNewConnection(1000), "a receiver connects");
    m_connection.reset(m_server.nextPendingConnection());
    // Without TIME_WAIT, in which thousands of closed connections would use up the ports.
    const linger atOnce = {.l_onoff = 1, .l_linger = 0};
    ::setsockopt(static_cast<int>(m_connection->socketDescriptor()), SOL_SOCKET, SO_LINGER, &atOnce,
                 sizeof(atOnce));
    handleEvents();
    return m_connection->readAll();
}

void LoopbackPeer::send(const QByteArray &bytes)
{
    m_connection->write(bytes);
    m_connection->flush();
    handleEvents();
}

void LoopbackPeer::close()
{
    m_connection.reset();
    handleEvents();
}

} // namespace paravue::fuzz
