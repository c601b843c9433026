#include "simulator/windows/BusConnection.h"

// Before the general header, which else takes in the old one.
#include <winsock2.h>

#include <cstdint>
#include <cstdlib>
#include <utility>

namespace {

/// "127.0.0.1:PORT"; 0 when there is none.
std::uint16_t portOfBus()
{
    const char *address = std::getenv("QUILLMARSH_SIM_BUS");
    const std::string text = address ? address : "";
    const auto colon = text.rfind(':');
    if (colon == std::string::npos)
        return 0;
    return static_cast<std::uint16_t>(std::strtoul(text.c_str() + colon + 1, nullptr, 10));
}

SOCKET connectToPort(std::uint16_t port)
{
    const SOCKET made = socket(AF_INET, SOCK_STREAM, IPPROTO_TCP);
    if (made == INVALID_SOCKET)
        return made;
    sockaddr_in address{};
    address.sin_family = AF_INET;
    address.sin_port = htons(port);
    address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    // Requests are small, and each waits for its answer.
    const BOOL atOnce = TRUE;
    setsockopt(made, IPPROTO_TCP, TCP_NODELAY, reinterpret_cast<const char *>(&atOnce), sizeof atOnce);
    if (connect(made, reinterpret_cast<const sockaddr *>(&address), sizeof address) == 0)
        return made;
    closesocket(made);
    return INVALID_SOCKET;
}

} // namespace

struct BusConnection::Private
{
    SOCKET connected = INVALID_SOCKET;
    bool started = false;

    void drop()
    {
        if (connected != INVALID_SOCKET)
            closesocket(std::exchange(connected, INVALID_SOCKET));
    }
};

BusConnection::BusConnection() : d(std::make_unique<Private>())
{
    WSADATA ignored;
    d->started = WSAStartup(MAKEWORD(2, 2), &ignored) == 0;
    const std::uint16_t port = portOfBus();
    if (d->started && port != 0)
        d->connected = connectToPort(port);
}

BusConnection::~BusConnection()
{
    d->drop();
    if (d->started)
        WSACleanup();
}

bool BusConnection::isOpen() const
{
    return d->connected != INVALID_SOCKET;
}

nlohmann::json BusConnection::request(const nlohmann::json &request)
{
    const std::lock_guard<std::mutex> lock(m_mutex);
    nlohmann::json answer =
        isOpen() ? nlohmann::json::parse(
                       exchange(request.dump(-1, ' ', true, nlohmann::json::error_handler_t::replace) + '\n'),
                       nullptr, false)
                 : nlohmann::json();
    if (answer.is_object())
        return answer;
    d->drop();
    return {{"ok", false}, {"error", "no bus"}};
}

std::string BusConnection::exchange(const std::string &line)
{
    for (std::size_t sent = 0; sent < line.size();) {
        const int now = send(d->connected, line.data() + sent, static_cast<int>(line.size() - sent), 0);
        if (now <= 0)
            return std::string();
        sent += static_cast<std::size_t>(now);
    }
    std::string answer;
    char chunk[16384];
    while (answer.empty() || answer.back() != '\n') {
        const int got = recv(d->connected, chunk, sizeof chunk, 0);
        if (got <= 0)
            return std::string();
        answer.append(chunk, static_cast<std::size_t>(got));
    }
    return answer;
}
