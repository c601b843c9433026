#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>

/// A connection to a port of the loopback interface through the system's own sockets. Calls block.
class LoopbackSocket
{
public:
    LoopbackSocket();
    ~LoopbackSocket();
    LoopbackSocket(const LoopbackSocket &) = delete;
    LoopbackSocket &operator=(const LoopbackSocket &) = delete;

    bool connectTo(std::uint16_t port);
    bool isOpen() const;
    void close();

    /// Sends all of it; false when the connection is lost.
    bool send(const char *bytes, std::size_t count);
    /// How many bytes have come into the buffer; 0 at the end of the connection.
    std::size_t receive(char *buffer, std::size_t size);

private:
    struct Private;
    std::unique_ptr<Private> d;
};
