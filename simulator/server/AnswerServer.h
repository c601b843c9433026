#pragma once

#include <QByteArray>
#include <QList>
#include <QSet>
#include <QTcpServer>
#include <QUrl>

class QTcpSocket;

/// A server on 127.0.0.1 that sends prepared answers byte for byte, whatever it is asked for. It parses
/// nothing but the end of a request, so that an answer may break every rule of HTTP.
///
/// Lives on the thread that made it and works only while that thread processes events.
class AnswerServer : public QTcpServer
{
public:
    struct Answer
    {
        /// Head and body.
        QByteArray bytes;
        /// Whether the connection is closed after the last byte. Otherwise it stays open.
        bool closes = true;
        /// Bytes that are sent in one go; 0 for all.
        int pieceSize = 0;
    };

    /// Begins to listen. The n-th request gets the n-th answer, and requests after the last answer get the
    /// last one. A request without any answer is never answered.
    explicit AnswerServer(const QList<Answer> &answers = {});

    void setAnswers(const QList<Answer> &answers);
    /// Requests that have arrived, of all connections, since the answers were set.
    int requests() const { return m_requests; }
    /// Whether a part of an answer is still to be sent.
    bool isSending() const { return !m_sending.isEmpty(); }
    /// Resets all connections.
    void closeConnections();
    QUrl url() const;

protected:
    void incomingConnection(qintptr descriptor) override;

private:
    void readRequests(QTcpSocket *socket);
    void send(QTcpSocket *socket, const Answer &answer, int sent);

    QList<Answer> m_answers;
    int m_requests = 0;
    /// Connections on which an answer is under way.
    QSet<QTcpSocket *> m_sending;
};
