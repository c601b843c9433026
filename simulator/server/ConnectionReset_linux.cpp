#include "simulator/server/ConnectionReset.h"

#include <QTcpSocket>

#include <sys/socket.h>

void resetConnection(QTcpSocket &socket)
{
    // A close that may not linger drops what is unsent and answers with a reset.
    const linger atOnce{1, 0};
    setsockopt(static_cast<int>(socket.socketDescriptor()), SOL_SOCKET, SO_LINGER, &atOnce, sizeof atOnce);
    socket.abort();
}
