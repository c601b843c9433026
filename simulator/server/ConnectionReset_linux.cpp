#include "simulator/server/ConnectionReset.h"

#include <QTcpSocket>

#include <sys/socket.h>

void resetConnection(QTcpSocket &socket)
{
    // With a linger time of 0, closing discards unsent data and resets the connection.
    const linger atOnce{1, 0};
    setsockopt(static_cast<int>(socket.socketDescriptor()), SOL_SOCKET, SO_LINGER, &atOnce, sizeof atOnce);
    socket.abort();
}
