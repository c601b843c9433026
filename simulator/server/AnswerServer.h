#pragma once

#include <QByteArray>
#include <QList>
#include <QSet>
#include <QTcpServer>
#include <QUrl>

class QTcpSocket;

/// A server on 127.0.0.1 that sends prepared answers byte for byte, regardless of the requests. It only
/// detects the end of a request, so that an answer may violate HTTP in any way.
///
/// Lives on the thread that created it and works only while that thread processes events.
class AnswerServer : public QTcpServer
{
public:
    struct Answer
    {
        /// The headers and the body.
        QByteArray bytes;
        /// Whether the connection is closed after the last byte. Otherwise it stays open.
        bool closes = true;
        /// The number of bytes that are sent at once; 0 for all.
        int pieceSize = 0;
    };

    /// Starts listening. The n-th request gets the n-th answer, and later requests get the last one. If there
    /// are no answers, requests are never answered.
    explicit AnswerServer(const QList<Answer> &answers = {});

    void setAnswers(const QList<Answer> &answers);
    /// Returns the number of requests on all connections since the answers were set.
    int requests() const { return m_requests; }
    /// Returns whether a part of an answer has not been sent yet.
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
    /// The connections on which an answer is being sent.
    QSet<QTcpSocket *> m_sending;
};
