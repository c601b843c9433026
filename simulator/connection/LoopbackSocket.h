#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>

/// A connection to a port of the loopback interface, using the system's socket functions. Calls block.
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

    /// Sends all bytes. Returns false if the connection is lost.
    bool send(const char *bytes, std::size_t count);
    /// Returns the number of bytes received in the buffer; 0 at the end of the connection.
    std::size_t receive(char *buffer, std::size_t size);

private:
    struct Private;
    std::unique_ptr<Private> d;
};
