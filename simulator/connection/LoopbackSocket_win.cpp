#include "simulator/connection/LoopbackSocket.h"

// Before windows.h, which would otherwise include the obsolete winsock.h.
#include <winsock2.h>

#include <utility>

struct LoopbackSocket::Private
{
    SOCKET connected = INVALID_SOCKET;
    bool started = false;
};

LoopbackSocket::LoopbackSocket() : d(std::make_unique<Private>())
{
    WSADATA ignored;
    d->started = WSAStartup(MAKEWORD(2, 2), &ignored) == 0;
}

LoopbackSocket::~LoopbackSocket()
{
    close();
    if (d->started)
        WSACleanup();
}

bool LoopbackSocket::connectTo(std::uint16_t port)
{
    close();
    if (!d->started)
        return false;
    d->connected = socket(AF_INET, SOCK_STREAM, IPPROTO_TCP);
    sockaddr_in address{};
    address.sin_family = AF_INET;
    address.sin_port = htons(port);
    address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    // Small requests must be sent at once, because each is followed by a wait for its answer.
    const BOOL atOnce = TRUE;
    setsockopt(d->connected, IPPROTO_TCP, TCP_NODELAY, reinterpret_cast<const char *>(&atOnce),
               sizeof atOnce);
    if (connect(d->connected, reinterpret_cast<const sockaddr *>(&address), sizeof address) != 0)
        close();
    return isOpen();
}

bool LoopbackSocket::isOpen() const
{
    return d->connected != INVALID_SOCKET;
}

void LoopbackSocket::close()
{
    if (isOpen())
        closesocket(std::exchange(d->connected, INVALID_SOCKET));
}

bool LoopbackSocket::send(const char *bytes, std::size_t count)
{
    while (count > 0) {
        const int sent = ::send(d->connected, bytes, static_cast<int>(count), 0);
        if (sent <= 0)
            return false;
        bytes += sent;
        count -= static_cast<std::size_t>(sent);
    }
    return true;
}

std::size_t LoopbackSocket::receive(char *buffer, std::size_t size)
{
    const int received = recv(d->connected, buffer, static_cast<int>(size), 0);
    return received < 0 ? 0 : static_cast<std::size_t>(received);
}
