#include "simulator/server/FirmwareServer.h"

#include "simulator/server/ServerConnection.h"

#include <QDir>
#include <QFileInfo>
#include <QTcpServer>
#include <QTcpSocket>

FirmwareServer::FirmwareServer(const QString &root)
    : m_root(QFileInfo(root).canonicalFilePath()),
      m_context(new QObject)
{
    m_thread.setObjectName(QStringLiteral("firmware server"));
    m_context->moveToThread(&m_thread);
    QObject::connect(&m_thread, &QThread::finished, m_context, &QObject::deleteLater);
    m_thread.start();
}

FirmwareServer::~FirmwareServer()
{
    m_thread.quit();
    m_thread.wait();
}

bool FirmwareServer::listen(quint16 port)
{
    bool isListening = false;
    QMetaObject::invokeMethod(
        m_context,
        [this, port, &isListening] {
            m_listener = new QTcpServer(m_context);
            QObject::connect(m_listener, &QTcpServer::newConnection, m_context, [this] { accept(); });
            isListening = m_listener->listen(QHostAddress::LocalHost, port);
            m_port = m_listener->serverPort();
        },
        Qt::BlockingQueuedConnection);
    return isListening;
}

QUrl FirmwareServer::url(const QString &path) const
{
    return QUrl(QStringLiteral("http://127.0.0.1:%1%2").arg(m_port).arg(path));
}

bool FirmwareServer::addFault(const QString &text, QString *error)
{
    QString reason;
    const auto fault = ServerFault::parse(text, error ? error : &reason);
    if (!fault)
        return false;
    const std::lock_guard<std::mutex> lock(m_mutex);
    m_faults.append(*fault);
    return true;
}

void FirmwareServer::clearFaults()
{
    const std::lock_guard<std::mutex> lock(m_mutex);
    m_faults.clear();
}

QList<ServerRequest> FirmwareServer::requests() const
{
    const std::lock_guard<std::mutex> lock(m_mutex);
    // A deep copy: an implicitly shared one would be read while the next request is added.
    QList<ServerRequest> copy = m_requests;
    copy.detach();
    return copy;
}

qint64 FirmwareServer::sentBytes() const
{
    const std::lock_guard<std::mutex> lock(m_mutex);
    return m_sentBytes;
}

int FirmwareServer::openConnections() const
{
    const std::lock_guard<std::mutex> lock(m_mutex);
    return m_openConnections;
}

void FirmwareServer::accept()
{
    while (QTcpSocket *socket = m_listener->nextPendingConnection()) {
        bool isRefused = false;
        {
            const std::lock_guard<std::mutex> lock(m_mutex);
            for (ServerFault &fault : m_faults)
                isRefused = (fault.isAtAccept() && fault.registerRequest({}, 0)) || isRefused;
            if (!isRefused)
                ++m_openConnections;
        }
        if (isRefused) {
            socket->abort();
            socket->deleteLater();
            continue;
        }
        // Otherwise the system enlarges the buffer, and it is unknown how much the client has received.
        socket->setSocketOption(QAbstractSocket::SendBufferSizeSocketOption, 64 * 1024);
        QObject::connect(socket, &QTcpSocket::bytesWritten, m_context, [this](qint64 bytes) {
            const std::lock_guard<std::mutex> lock(m_mutex);
            m_sentBytes += bytes;
        });
        auto *connection = new ServerConnection(
            socket, [this](const ServerRequest &request) { return answer(request); }, m_context);
        QObject::connect(connection, &QObject::destroyed, m_context, [this] {
            const std::lock_guard<std::mutex> lock(m_mutex);
            --m_openConnections;
        });
    }
}

ServerReply FirmwareServer::answer(const ServerRequest &request)
{
    ServerReply reply = ServerReply::forFile(request, fileFor(request.path));
    const std::lock_guard<std::mutex> lock(m_mutex);
    m_requests.append(request);
    for (ServerFault &fault : m_faults) {
        if (!fault.isAtAccept() && fault.registerRequest(request, reply.fileSize))
            fault.apply(reply);
    }
    return reply;
}

QString FirmwareServer::fileFor(const QByteArray &path) const
{
    const QFileInfo file(m_root + QUrl::fromPercentEncoding(path));
    const QString name = file.canonicalFilePath();
    return file.isFile() && name.startsWith(m_root + QLatin1Char('/')) ? name : QString();
}
