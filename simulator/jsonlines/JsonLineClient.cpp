#include "simulator/jsonlines/JsonLineClient.h"

#include "simulator/jsonlines/Answer.h"
#include "simulator/jsonlines/JsonLine.h"

#include "simulator/time/RunningTime.h"

#include <QHostAddress>

bool JsonLineClient::connectTo(quint16 port, int limitMs)
{
    m_socket.abort();
    m_socket.connectToHost(QHostAddress::LocalHost, port);
    return m_socket.waitForConnected(limitMs);
}

bool JsonLineClient::isConnected() const
{
    return m_socket.state() == QAbstractSocket::ConnectedState;
}

QJsonObject JsonLineClient::request(const QJsonObject &request, int limitMs, const QByteArray &payload)
{
    if (!isConnected())
        return Answer::failure(QStringLiteral("not connected"));
    m_socket.write(JsonLine::write(request));
    m_socket.write(payload);
    const auto hasAnswerOrEnded = [this](int ms) {
        return m_socket.canReadLine() || (m_socket.waitForReadyRead(ms) && m_socket.canReadLine()) ||
               !isConnected();
    };
    waitInShortSteps(hasAnswerOrEnded, limitMs);
    if (!m_socket.canReadLine()) {
        const QString error =
            isConnected() ? QStringLiteral("no answer in %1 ms").arg(limitMs) : m_socket.errorString();
        m_socket.abort();
        return Answer::failure(error);
    }
    return JsonLine::read(m_socket.readLine()).object();
}

bool JsonLineClient::waitForClosed(int limitMs)
{
    const auto isClosed = [this](int ms) {
        return !isConnected() || m_socket.waitForDisconnected(ms);
    };
    return waitInShortSteps(isClosed, limitMs);
}
