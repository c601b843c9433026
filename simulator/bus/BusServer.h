#pragma once

#include "simulator/bus/SimulatedBus.h"

#include <QHash>
#include <QJsonObject>
#include <QTcpServer>

class QTcpSocket;

/// Serves a simulated bus to any number of connections on the loopback interface: one JSON object
/// per line each way, see README.md.
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
    quint16 listen();

private:
    /// Raw bytes that a connection announced, and the request they belong to.
    struct Pending
    {
        QJsonObject request;
        qint64 size = 0;
    };

    void read(QTcpSocket *socket);
    void answer(QTcpSocket *socket, const QJsonObject &request, const QByteArray &payload);
    QJsonObject perform(const QJsonObject &request, const QByteArray &payload);
    QJsonObject performOnDevice(const QString &operation, const QJsonObject &request,
                                const QByteArray &payload);
    QJsonObject state() const;

    SimulatedBus &m_bus;
    std::function<void()> m_quit;
    FurtherOperations m_further;
    QHash<QTcpSocket *, Pending> m_pending;
    QTcpServer m_server;
};
