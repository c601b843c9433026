#include "simulator/connection/LoopbackSocket.h"

#include <cerrno>
#include <utility>

#include <netinet/in.h>
#include <netinet/tcp.h>
#include <sys/socket.h>
#include <unistd.h>

struct LoopbackSocket::Private
{
    int descriptor = -1;
};

LoopbackSocket::LoopbackSocket() : d(std::make_unique<Private>()) {}

LoopbackSocket::~LoopbackSocket()
{
    close();
}

bool LoopbackSocket::connectTo(std::uint16_t port)
{
    close();
    d->descriptor = socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0);
    sockaddr_in address{};
    address.sin_family = AF_INET;
    address.sin_port = htons(port);
    address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    // Small requests must be sent at once, because each is followed by a wait for its answer.
    const int atOnce = 1;
    setsockopt(d->descriptor, IPPROTO_TCP, TCP_NODELAY, &atOnce, sizeof atOnce);
    if (connect(d->descriptor, reinterpret_cast<const sockaddr *>(&address), sizeof address) != 0)
        close();
    return isOpen();
}

bool LoopbackSocket::isOpen() const
{
    return d->descriptor >= 0;
}

void LoopbackSocket::close()
{
    if (isOpen())
        ::close(std::exchange(d->descriptor, -1));
}

bool LoopbackSocket::send(const char *bytes, std::size_t count)
{
    while (count > 0) {
        const ssize_t sent = ::send(d->descriptor, bytes, count, MSG_NOSIGNAL);
        if (sent < 0 && errno == EINTR)
            continue;
        if (sent <= 0)
            return false;
        bytes += sent;
        count -= static_cast<std::size_t>(sent);
    }
    return true;
}

std::size_t LoopbackSocket::receive(char *buffer, std::size_t size)
{
    ssize_t received = -1;
    do {
        received = recv(d->descriptor, buffer, size, 0);
    } while (received < 0 && errno == EINTR);
    return received < 0 ? 0 : static_cast<std::size_t>(received);
}
