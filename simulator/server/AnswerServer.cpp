#include "simulator/server/AnswerServer.h"

#include <QTcpSocket>
#include <QTimer>

#include <algorithm>

AnswerServer::AnswerServer(const QList<Answer> &answers) : m_answers(answers)
{
    listen(QHostAddress::LocalHost);
}

void AnswerServer::setAnswers(const QList<Answer> &answers)
{
    m_answers = answers;
    m_requests = 0;
}

QUrl AnswerServer::url() const
{
    return QUrl(QStringLiteral("http://127.0.0.1:%1/file").arg(serverPort()));
}

void AnswerServer::closeConnections()
{
    const QList<QTcpSocket *> sockets = findChildren<QTcpSocket *>();
    for (QTcpSocket *socket : sockets) {
        socket->disconnect(this);
        socket->abort();
        socket->deleteLater();
    }
    m_sending.clear();
}

void AnswerServer::incomingConnection(qintptr descriptor)
{
    auto *socket = new QTcpSocket(this);
    socket->setSocketDescriptor(descriptor);
    socket->setSocketOption(QAbstractSocket::LowDelayOption, 1);
    connect(socket, &QTcpSocket::readyRead, this, [this, socket] { readRequests(socket); });
    connect(socket, &QTcpSocket::disconnected, this, [this, socket] {
        m_sending.remove(socket);
        socket->deleteLater();
    });
}

void AnswerServer::readRequests(QTcpSocket *socket)
{
    while (true) {
        const int end = socket->peek(qint64(64) * 1024).indexOf("\r\n\r\n");
        if (end < 0)
            return;
        socket->read(end + 4);
        const int number = m_requests++;
        if (m_answers.isEmpty())
            continue;
        m_sending.insert(socket);
        send(socket, m_answers.at(std::min(number, m_answers.size() - 1)), 0);
    }
}

void AnswerServer::send(QTcpSocket *socket, const Answer &answer, int sent)
{
    const int piece = answer.pieceSize > 0 ? answer.pieceSize : answer.bytes.size();
    socket->write(answer.bytes.mid(sent, piece));
    socket->flush();
    sent += piece;
    if (sent < answer.bytes.size()) {
        QTimer::singleShot(0, socket, [this, socket, answer, sent] { send(socket, answer, sent); });
        return;
    }
    m_sending.remove(socket);
    if (answer.closes)
        socket->disconnectFromHost();
}
