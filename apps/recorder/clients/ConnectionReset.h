#pragma once

class QTcpSocket;

namespace recorder
{

/// Ends the connection with a reset (TCP RST), which the other side sees as an error. What was written before
/// may be lost.
void resetConnection(QTcpSocket &socket);

} // namespace recorder
