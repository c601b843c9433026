#pragma once

#include "simulator/server/ServerReply.h"

#include <QObject>

#include <functional>

class QTcpSocket;

/// A connection of the server: reads requests and sends the replies that `answer` returns. Lives on the
/// server's thread and deletes itself when the peer disconnects.
class ServerConnection : public QObject
{
public:
    using Answer = std::function<ServerReply(const ServerRequest &)>;

    /// Takes ownership of `socket`.
    ServerConnection(QTcpSocket *socket, Answer answer, QObject *parent);

private:
    void readRequests();
    void send();
    void sendPiece(qint64 size);
    void finish();

    QTcpSocket *m_socket;
    Answer m_answer;
    QByteArray m_received;
    ServerReply m_reply;
    qint64 m_sent = 0;
    bool m_isBusy = false;
    bool m_isPaced = false;
};
