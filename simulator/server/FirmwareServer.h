#pragma once

#include "simulator/server/ServerFault.h"
#include "simulator/server/ServerReply.h"

#include <QList>
#include <QString>
#include <QThread>
#include <QUrl>

#include <mutex>

/// A firmware server on 127.0.0.1 with switchable faults. It serves the files in a folder, with ranges and
/// keep-alive, on a thread of its own. It uses plain sockets, because no server library sends wrong answers
/// on request. See ServerFault for the faults.
///
/// All functions may be called from any thread while it runs.
class FirmwareServer
{
public:
    /// Serves the files in `root`.
    explicit FirmwareServer(const QString &root);
    ~FirmwareServer();
    Q_DISABLE_COPY_MOVE(FirmwareServer)

    /// Listens on `port`; with 0 the system chooses one. Returns false if the port is in use.
    bool listen(quint16 port = 0);
    quint16 port() const { return m_port; }
    /// Returns the address of a file on this server; `path` begins with a slash.
    QUrl url(const QString &path) const;

    /// Switches a fault on. Returns false and sets `error` if the text is invalid.
    bool addFault(const QString &text, QString *error = nullptr);
    void clearFaults();

    /// Returns all requests so far, in the order of arrival.
    QList<ServerRequest> requests() const;
    /// Returns the number of bytes of all answers, including headers, that were passed to the system so far.
    /// For each connection the system buffers about 64 KiB that the client has not received yet.
    qint64 sentBytes() const;
    /// Returns the number of open connections.
    int openConnections() const;

private:
    void accept();
    ServerReply answer(const ServerRequest &request);
    QString fileFor(const QByteArray &path) const;

    QString m_root;
    quint16 m_port = 0;
    QThread m_thread;
    /// Lives on m_thread; owns the listener and the connections.
    QObject *m_context;
    class QTcpServer *m_listener = nullptr;

    mutable std::mutex m_mutex;
    QList<ServerFault> m_faults;
    QList<ServerRequest> m_requests;
    int m_openConnections = 0;
    qint64 m_sentBytes = 0;
};
