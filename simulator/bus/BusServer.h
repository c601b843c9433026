#pragma once

#include "simulator/bus/SimulatedBus.h"
#include "simulator/jsonlines/JsonLineServer.h"

/// Serves a simulated bus to any number of connections on the loopback interface. The requests are described
/// in the simulator's README.md.
class BusServer
{
public:
    /// `bus` must outlive the server. `quit` is called after the answer to a "quit" request has been sent.
    BusServer(SimulatedBus &bus, std::function<void()> quit);

    /// Handles requests that only some presenters support. It is called first and returns nothing for
    /// requests that it does not know.
    using FurtherOperations = std::function<std::optional<QJsonObject>(const QJsonObject &request)>;
    void setFurtherOperations(FurtherOperations further) { m_further = std::move(further); }

    /// Listens on a port that the system chooses and returns it; 0 on failure.
    quint16 listen() { return m_server.listen(); }

private:
    /// Returns the size of the image that follows a request to burn or program it.
    static std::optional<qint64> imageSize(const QJsonObject &request);
    QJsonObject perform(const QJsonObject &request, const QByteArray &payload);
    QJsonObject performOnDevice(const QString &operation, const QJsonObject &request,
                                const QByteArray &payload);
    QJsonObject state() const;

    SimulatedBus &m_bus;
    std::function<void()> m_quit;
    FurtherOperations m_further;
    JsonLineServer m_server;
};
