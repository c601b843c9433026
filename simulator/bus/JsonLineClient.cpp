#include "simulator/bus/JsonLineClient.h"

#include <QElapsedTimer>
#include <QHostAddress>
#include <QJsonDocument>

namespace {

QJsonObject failure(const QString &error)
{
    return {{QLatin1String("ok"), false}, {QLatin1String("error"), error}};
}

} // namespace

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
        return failure(QStringLiteral("not connected"));
    QElapsedTimer waited;
    waited.start();
    m_socket.write(QJsonDocument(request).toJson(QJsonDocument::Compact) + '\n');
    m_socket.write(payload);
    while (!m_socket.canReadLine()) {
        const qint64 left = limitMs - waited.elapsed();
        if (left <= 0 || !m_socket.waitForReadyRead(static_cast<int>(left))) {
            const QString error = left <= 0 || isConnected()
                                      ? QStringLiteral("no answer in %1 ms").arg(limitMs)
                                      : m_socket.errorString();
            m_socket.abort();
            return failure(error);
        }
    }
    return QJsonDocument::fromJson(m_socket.readLine()).object();
}

bool JsonLineClient::waitForClosed(int limitMs)
{
    return !isConnected() || m_socket.waitForDisconnected(limitMs);
}
