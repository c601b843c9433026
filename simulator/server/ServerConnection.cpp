#include "simulator/server/ServerConnection.h"

#include "simulator/server/ConnectionReset.h"

#include <QTcpSocket>
#include <QTimer>

#include <algorithm>
#include <utility>

namespace {

constexpr qint64 pieceSize = 64 * 1024;
constexpr qint64 queueLimit = 4 * pieceSize;
/// The delay before a reset, so that the peer can read the last bytes: a reset discards unread data.
constexpr int beforeResetMs = 30;

} // namespace

ServerConnection::ServerConnection(QTcpSocket *socket, Answer answer, QObject *parent)
    : QObject(parent),
      m_socket(socket),
      m_answer(std::move(answer))
{
    m_socket->setParent(this);
    m_socket->setSocketOption(QAbstractSocket::LowDelayOption, 1);
    connect(m_socket, &QTcpSocket::readyRead, this, [this] { readRequests(); });
    connect(m_socket, &QTcpSocket::bytesWritten, this, [this] { send(); });
    connect(m_socket, &QTcpSocket::disconnected, this, [this] { deleteLater(); });
    readRequests();
}

void ServerConnection::readRequests()
{
    m_received += m_socket->readAll();
    const int end = m_received.indexOf("\r\n\r\n");
    if (m_isBusy || end < 0)
        return;
    const auto request = ServerRequest::parse(m_received.left(end));
    m_received.remove(0, end + 4);
    if (!request) {
        m_socket->disconnectFromHost();
        return;
    }
    m_isBusy = true;
    m_reply = m_answer(*request);
    m_sent = 0;
    if (!m_reply.answers)
        return;
    if (m_reply.cutAfter < 0)
        m_reply.cutAfter = m_reply.body.size();
    m_socket->write(m_reply.head());
    send();
}

void ServerConnection::send()
{
    if (!m_isBusy || !m_reply.answers || m_isPaced)
        return;
    while (m_sent < m_reply.cutAfter && m_socket->bytesToWrite() < queueLimit) {
        sendPiece(std::min(m_reply.dripBytes > 0 ? m_reply.dripBytes : pieceSize, m_reply.cutAfter - m_sent));
        if (m_reply.dripBytes > 0) {
            m_isPaced = true;
            QTimer::singleShot(m_reply.dripMs, this, [this] {
                m_isPaced = false;
                send();
            });
            return;
        }
    }
    if (m_sent == m_reply.cutAfter && m_socket->bytesToWrite() == 0)
        finish();
}

void ServerConnection::sendPiece(qint64 size)
{
    const QByteArray piece = m_reply.body.mid(int(m_sent), int(size));
    m_sent += size;
    if (!m_reply.chunked) {
        m_socket->write(piece);
        return;
    }
    m_socket->write(QByteArray::number(size, 16) + "\r\n" + piece + "\r\n");
    if (m_sent == m_reply.body.size())
        m_socket->write("0\r\n\r\n");
}

void ServerConnection::finish()
{
    m_reply.answers = false;
    switch (m_reply.ending) {
    case ServerReply::Ending::KeepAlive:
        m_isBusy = false;
        readRequests();
        return;
    case ServerReply::Ending::Close:
        m_socket->disconnectFromHost();
        return;
    case ServerReply::Ending::Reset:
        QTimer::singleShot(beforeResetMs, this, [this] { resetConnection(*m_socket); });
        return;
    case ServerReply::Ending::Stall:
        return;
    }
}
