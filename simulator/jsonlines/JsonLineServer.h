#pragma once

#include <QHash>
#include <QJsonObject>
#include <QTcpServer>

#include <functional>
#include <optional>

class QTcpSocket;

/// Answers each JSON line with another one, for any number of connections to a port of the loopback
/// interface. Lives on the thread that created it and needs its event loop.
class JsonLineServer
{
public:
    /// Returns the answer to a request. `payload` contains the raw bytes that followed the request's line.
    using Respond = std::function<QJsonObject(const QJsonObject &request, const QByteArray &payload)>;
    /// Returns the number of raw bytes that follow the request's line, or nothing if the request lacks a
    /// required size. Such a request is answered without a payload and the connection is closed, because the
    /// following bytes could not be distinguished from requests.
    using PayloadSize = std::function<std::optional<qint64>(const QJsonObject &request)>;

    /// If `payloadSize` is null, no request has a payload.
    explicit JsonLineServer(Respond respond, PayloadSize payloadSize = {});

    /// Listens on a port that the system chooses and returns it; 0 on failure.
    quint16 listen();
    /// Closes the port and ends all connections.
    void stop();

private:
    /// A request whose payload has not arrived yet.
    struct Pending
    {
        QJsonObject request;
        qint64 size = 0;
    };

    void accept();
    void read(QTcpSocket *socket);
    void startRequest(QTcpSocket *socket, const QByteArray &line);
    static void answer(QTcpSocket *socket, const QJsonObject &answer);

    Respond m_respond;
    PayloadSize m_payloadSize;
    QHash<QTcpSocket *, Pending> m_pending;
    QTcpServer m_server;
};
