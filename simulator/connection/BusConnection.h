#pragma once

#include "simulator/connection/LoopbackSocket.h"

#include <nlohmann/json.hpp>

#include <mutex>
#include <string>

/// A connection to the bus controller that the environment variable QUILLMARSH_SIM_BUS names, for code that
/// must not depend on Qt: the stand-in tools, which are copied to folders without Qt's libraries, and the
/// replacements for libusb and hidapi, whose programs have their own Qt. Other code uses BusClient.
///
/// Calls block until the answer has arrived. They may be made from any thread.
class BusConnection
{
public:
    BusConnection();

    bool isOpen() const { return m_socket.isOpen(); }
    /// Sends a request, followed by the raw bytes of `payload`, and returns the answer. If the connection is
    /// lost, it is {"ok":false} with an "error".
    nlohmann::json request(const nlohmann::json &request, const std::string &payload = {});

private:
    /// Returns the answer's line; empty if the connection is lost.
    std::string exchange(const std::string &message);

    LoopbackSocket m_socket;
    std::mutex m_mutex;
};
