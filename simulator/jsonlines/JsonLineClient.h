#pragma once

#include <QJsonObject>
#include <QTcpSocket>

/// A connection to a loopback server that answers each JSON line with one. Calls block, within
/// their time limits in running time, and need no event loop. One thread at a time.
class JsonLineClient
{
public:
    bool connectTo(quint16 port, int limitMs);
    bool isConnected() const;
    /// Sends one request, with the raw bytes of `payload` after it, and returns its answer. Without
    /// one in time, or without a connection, the answer is {"ok":false,"error":..}, and the
    /// connection is given up: a late answer would be taken for the next request's.
    QJsonObject request(const QJsonObject &request, int limitMs, const QByteArray &payload = {});
    /// Whether the other side closes the connection within `limitMs`.
    bool waitForClosed(int limitMs);

private:
    QTcpSocket m_socket;
};
