#include "recorder/clients/ConnectionReset.h"

#include <QTcpSocket>

#ifdef Q_OS_WIN
#include <winsock2.h>
#else
#include <sys/socket.h>
#endif

namespace recorder
{

void resetConnection(QTcpSocket &socket)
{
    // A socket that may not linger at all drops its connection when it is closed.
    linger none{};
    none.l_onoff = 1;
    none.l_linger = 0;
#ifdef Q_OS_WIN
    ::setsockopt(SOCKET(socket.socketDescriptor()), SOL_SOCKET, SO_LINGER,
                 reinterpret_cast<const char *>(&none), sizeof none);
#else
    ::setsockopt(int(socket.socketDescriptor()), SOL_SOCKET, SO_LINGER, &none, sizeof none);
#endif
    socket.abort();
}

} // namespace recorder
