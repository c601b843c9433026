#include "simulator/server/ConnectionReset.h"

#include <QTcpSocket>

#include <winsock2.h>

void resetConnection(QTcpSocket &socket)
{
    // With a linger time of 0, closing discards unsent data and resets the connection.
    const linger atOnce{1, 0};
    setsockopt(static_cast<SOCKET>(socket.socketDescriptor()), SOL_SOCKET, SO_LINGER,
               reinterpret_cast<const char *>(&atOnce), sizeof atOnce);
    socket.abort();
}
