#include "simulator/probe/ProbeServer.h"

#include "simulator/probe/Answer.h"

#include <QJsonDocument>
#include <QSaveFile>
#include <QTcpSocket>

#include <cstdio>

ProbeServer::ProbeServer(const QString &portFile)
{
    connect(&m_server, &QTcpServer::newConnection, this, &ProbeServer::accept);
    QSaveFile file(portFile);
    const bool ready = m_server.listen(QHostAddress::LocalHost) && file.open(QIODevice::WriteOnly) &&
                       file.write(QByteArray::number(m_server.serverPort())) > 0 && file.commit();
    if (!ready) // Not through the toolkit: the program may have a message handler of its own.
        std::fputs("quillprobe: no port, or its file cannot be written\n", stderr);
}

void ProbeServer::stop()
{
    m_server.close();
    const auto connections = m_server.findChildren<QTcpSocket *>();
    for (QTcpSocket *connection : connections)
        connection->abort();
}

void ProbeServer::accept()
{
    while (QTcpSocket *connection = m_server.nextPendingConnection()) {
        connect(connection, &QTcpSocket::readyRead, this, [this, connection] { readRequests(*connection); });
        connect(connection, &QTcpSocket::disconnected, connection, &QObject::deleteLater);
    }
}

void ProbeServer::readRequests(QTcpSocket &connection)
{
    while (connection.canReadLine()) {
        const QJsonDocument request = QJsonDocument::fromJson(connection.readLine());
        const QJsonObject answer = request.isObject() ? m_dialogue.answer(request.object())
                                                      : Answer::failure(QStringLiteral("not a JSON object"));
        connection.write(QJsonDocument(answer).toJson(QJsonDocument::Compact) + '\n');
        connection.flush();
    }
}
