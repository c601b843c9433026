#pragma once

#include <QHash>
#include <QJsonObject>
#include <QTcpServer>

#include <functional>
#include <optional>

class QTcpSocket;

/// Answers each JSON line with one, for any number of connections to a port of the loopback interface.
/// Belongs to the thread that made it and needs its event loop.
class JsonLineServer
{
public:
    /// The answer to one request. `payload` holds the raw bytes that came after the request's line.
    using Respond = std::function<QJsonObject(const QJsonObject &request, const QByteArray &payload)>;
    /// Returns how many raw bytes follow the request's line, or nothing for a request that must name a size
    /// and does not. Such a request is answered without a payload, and the connection is closed: what follows
    /// cannot be told from requests.
    using PayloadSize = std::function<std::optional<qint64>(const QJsonObject &request)>;

    /// A null `payloadSize` means that nothing follows any request.
    explicit JsonLineServer(Respond respond, PayloadSize payloadSize = {});

    /// Takes a port that the system chooses; 0 when there is none.
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
