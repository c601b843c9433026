#include "simulator/connection/BusConnection.h"

#include <cstdlib>

namespace {

/// Returns the port in "127.0.0.1:PORT", the value of the variable; 0 if it is not set.
std::uint16_t portOfBus()
{
    const char *address = std::getenv("QUILLMARSH_SIM_BUS");
    const std::string text = address ? address : "";
    const auto colon = text.rfind(':');
    if (colon == std::string::npos)
        return 0;
    return static_cast<std::uint16_t>(std::strtoul(text.c_str() + colon + 1, nullptr, 10));
}

} // namespace

BusConnection::BusConnection()
{
    const std::uint16_t port = portOfBus();
    if (port != 0)
        m_socket.connectTo(port);
}

nlohmann::json BusConnection::request(const nlohmann::json &request, const std::string &payload)
{
    const std::lock_guard<std::mutex> lock(m_mutex);
    nlohmann::json answer;
    if (isOpen()) {
        const std::string line = request.dump(-1, ' ', true, nlohmann::json::error_handler_t::replace);
        answer = nlohmann::json::parse(exchange(line + '\n' + payload), nullptr, false);
    }
    if (answer.is_object())
        return answer;
    m_socket.close();
    return {{"ok", false}, {"error", "no bus"}};
}

std::string BusConnection::exchange(const std::string &message)
{
    if (!m_socket.send(message.data(), message.size()))
        return std::string();
    std::string answer;
    char chunk[16384];
    while (answer.empty() || answer.back() != '\n') {
        const std::size_t received = m_socket.receive(chunk, sizeof chunk);
        if (received == 0)
            return std::string();
        answer.append(chunk, received);
    }
    return answer;
}
