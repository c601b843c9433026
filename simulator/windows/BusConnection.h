#pragma once

#include <nlohmann/json.hpp>

#include <memory>
#include <mutex>
#include <string>

/// A library's connection to the bus controller that the environment variable QUILLMARSH_SIM_BUS
/// names. Calls block until the answer is there, and may come from any thread.
class BusConnection
{
public:
    BusConnection();
    ~BusConnection();
    BusConnection(const BusConnection &) = delete;
    BusConnection &operator=(const BusConnection &) = delete;

    bool isOpen() const;
    /// The answer's object; {"ok":false} when the connection is lost.
    nlohmann::json request(const nlohmann::json &request);

private:
    std::string exchange(const std::string &line);

    struct Private;
    std::unique_ptr<Private> d;
    std::mutex m_mutex;
};
