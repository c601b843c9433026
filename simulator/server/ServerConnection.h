#pragma once

#include "simulator/server/ServerReply.h"

#include <QObject>

#include <functional>

class QTcpSocket;

/// One connection of the server: reads requests, has each answered, and sends the answer as the
/// reply says. Lives on the server's thread and deletes itself when the peer is gone.
class ServerConnection : public QObject
{
public:
    using Answer = std::function<ServerReply(const ServerRequest &)>;

    /// Takes `socket` over.
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
