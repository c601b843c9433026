#include "simulator/server/ConnectionReset.h"

#include <QTcpSocket>

#include <winsock2.h>

void resetConnection(QTcpSocket &socket)
{
    // A close that may not linger drops what is unsent and answers with a reset.
    const linger atOnce{1, 0};
    setsockopt(static_cast<SOCKET>(socket.socketDescriptor()), SOL_SOCKET, SO_LINGER,
               reinterpret_cast<const char *>(&atOnce), sizeof atOnce);
    socket.abort();
}
