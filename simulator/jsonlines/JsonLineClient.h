#pragma once

#include <QJsonObject>
#include <QTcpSocket>

/// A connection to a loopback server that answers each JSON line with another one. Calls block for at most
/// their time limit in running time and need no event loop. Not thread-safe.
class JsonLineClient
{
public:
    bool connectTo(quint16 port, int limitMs);
    bool isConnected() const;
    /// Sends a request, followed by the raw bytes of `payload`, and returns its answer. If there is no
    /// connection or no answer in time, returns {"ok":false,"error":..} and closes the connection, because a
    /// late answer would be taken for that of the next request.
    QJsonObject request(const QJsonObject &request, int limitMs, const QByteArray &payload = {});
    /// Returns whether the other side closes the connection within `limitMs`.
    bool waitForClosed(int limitMs);

private:
    QTcpSocket m_socket;
};
