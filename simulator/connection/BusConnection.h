#pragma once

#include "simulator/connection/LoopbackSocket.h"

#include <nlohmann/json.hpp>

#include <mutex>
#include <string>

/// A connection to the bus controller that the environment variable QUILLMARSH_SIM_BUS names, for what
/// must not depend on Qt: the stand-in tools, which are copied to folders without Qt's libraries, and the
/// libraries that replace libusb and hidapi in programs with a Qt of their own. Whatever may use Qt
/// has BusClient.
///
/// Calls block until the answer is there, and may come from any thread.
class BusConnection
{
public:
    BusConnection();

    bool isOpen() const { return m_socket.isOpen(); }
    /// Sends one request, with the raw bytes of `payload` after it. The answer's object; {"ok":false} and an
    /// "error" when the connection is lost.
    nlohmann::json request(const nlohmann::json &request, const std::string &payload = {});

private:
    /// Empty when the connection is lost.
    std::string exchange(const std::string &message);

    LoopbackSocket m_socket;
    std::mutex m_mutex;
};
