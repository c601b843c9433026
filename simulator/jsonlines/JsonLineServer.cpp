#include "simulator/jsonlines/JsonLineServer.h"

#include "simulator/jsonlines/Answer.h"
#include "simulator/jsonlines/JsonLine.h"

#include <QHostAddress>
#include <QTcpSocket>

namespace {
constexpr qint64 longestLine = 1 << 20;
}

JsonLineServer::JsonLineServer(Respond respond, PayloadSize payloadSize)
    : m_respond(std::move(respond)),
      m_payloadSize(std::move(payloadSize))
{
    QObject::connect(&m_server, &QTcpServer::newConnection, &m_server, [this] { accept(); });
}

quint16 JsonLineServer::listen()
{
    return m_server.listen(QHostAddress::LocalHost) ? m_server.serverPort() : 0;
}

void JsonLineServer::stop()
{
    m_server.close();
    const auto connections = m_server.findChildren<QTcpSocket *>();
    for (QTcpSocket *connection : connections)
        connection->abort();
}

void JsonLineServer::accept()
{
    while (QTcpSocket *socket = m_server.nextPendingConnection()) {
        QObject::connect(socket, &QTcpSocket::readyRead, &m_server, [this, socket] { read(socket); });
        QObject::connect(socket, &QTcpSocket::disconnected, &m_server, [this, socket] {
            m_pending.remove(socket);
            socket->deleteLater();
        });
    }
}

void JsonLineServer::read(QTcpSocket *socket)
{
    while (socket->state() == QAbstractSocket::ConnectedState) {
        if (m_pending.contains(socket)) {
            if (socket->bytesAvailable() < m_pending.value(socket).size)
                return;
            const Pending pending = m_pending.take(socket);
            answer(socket, m_respond(pending.request, socket->read(pending.size)));
        } else if (socket->canReadLine()) {
            startRequest(socket, socket->readLine());
        } else {
            if (socket->bytesAvailable() > longestLine)
                socket->abort();
            return;
        }
    }
}

void JsonLineServer::startRequest(QTcpSocket *socket, const QByteArray &line)
{
    const QJsonDocument document = JsonLine::read(line);
    if (document.isNull()) {
        answer(socket, Answer::failure(QStringLiteral("not a JSON object")));
        return;
    }
    const QJsonObject request = document.object();
    const std::optional<qint64> size = m_payloadSize ? m_payloadSize(request) : 0;
    if (size > 0) {
        m_pending.insert(socket, {request, *size});
        return;
    }
    answer(socket, m_respond(request, QByteArray()));
    if (!size)
        socket->disconnectFromHost();
}

void JsonLineServer::answer(QTcpSocket *socket, const QJsonObject &answer)
{
    socket->write(JsonLine::write(answer));
    // Flushed, because the process may end because of this request.
    socket->flush();
}
