#pragma once

#include "simulator/bus/SimulatedBus.h"
#include "simulator/jsonlines/JsonLineServer.h"

/// Serves a simulated bus to any number of connections on the loopback interface. README.md of the simulator
/// describes the requests.
class BusServer
{
public:
    /// `bus` must outlive the server. `quit` is called, once the answer is out, when a client asks
    /// for the end.
    BusServer(SimulatedBus &bus, std::function<void()> quit);

    /// Requests that only some presenters can answer; asked first, and nothing means "not mine".
    using FurtherOperations = std::function<std::optional<QJsonObject>(const QJsonObject &request)>;
    void setFurtherOperations(FurtherOperations further) { m_further = std::move(further); }

    /// Takes a port that the system chooses; 0 when there is none.
    quint16 listen() { return m_server.listen(); }

private:
    /// The size of the image that follows a request to burn or program one.
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
