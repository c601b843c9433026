#pragma once

#include <QFile>
#include <QSslCertificate>
#include <QSslKey>
#include <QSslSocket>
#include <QString>
#include <QTcpServer>

/// A TLS server on loopback that answers all requests with the same bytes. Its certificate is self-signed, so
/// a client does not trust it by default.
class SecureServer : public QTcpServer
{
public:
    explicit SecureServer(const QByteArray &content) : m_content(content)
    {
        QFile key(QStringLiteral(TLS_KEY));
        QFile certificate(QStringLiteral(TLS_CERTIFICATE));
        if (key.open(QIODevice::ReadOnly) && certificate.open(QIODevice::ReadOnly)) {
            m_key = QSslKey(&key, QSsl::Rsa);
            m_certificate = QSslCertificate(&certificate);
        }
    }

    QString url() const { return QStringLiteral("https://127.0.0.1:%1/manifest.json").arg(serverPort()); }
    QSslCertificate certificate() const { return m_certificate; }
    bool hasCertificate() const { return !m_key.isNull() && !m_certificate.isNull(); }
    /// Returns the number of requests. They arrive only after the client has accepted the certificate.
    int requests() const { return m_requests; }
    /// Returns the last error of the server.
    QString problem() const { return m_problem; }

protected:
    void incomingConnection(qintptr descriptor) override
    {
        auto *socket = new QSslSocket(this);
        socket->setSocketDescriptor(descriptor);
        socket->setPrivateKey(m_key);
        socket->setLocalCertificate(m_certificate);
        connect(socket, &QSslSocket::readyRead, this, [this, socket] {
            if (!socket->peek(64 * 1024).contains("\r\n\r\n"))
                return;
            socket->readAll();
            ++m_requests;
            socket->write("HTTP/1.1 200 OK\r\nContent-Length: " + QByteArray::number(m_content.size()) +
                          "\r\n\r\n" + m_content);
        });
        connect(socket, &QSslSocket::errorOccurred, this,
                [this, socket] { m_problem = socket->errorString(); });
        socket->startServerEncryption();
    }

private:
    QByteArray m_content;
    QSslKey m_key;
    QSslCertificate m_certificate;
    int m_requests = 0;
    QString m_problem;
};
