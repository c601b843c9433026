#pragma once

#include "simulator/server/ServerFault.h"
#include "simulator/server/ServerReply.h"

#include <QList>
#include <QString>
#include <QThread>
#include <QUrl>

#include <mutex>

/// A firmware server on 127.0.0.1 that can be told to misbehave. It serves the files below a folder,
/// with ranges and kept-alive connections, on a thread of its own; it is written on plain sockets
/// because no server library sends wrong answers on request. What can go wrong and how it is
/// switched on: ServerFault.
///
/// All operations may be called from any thread while it runs.
class FirmwareServer
{
public:
    /// Serves the files below `root`.
    explicit FirmwareServer(const QString &root);
    ~FirmwareServer();
    Q_DISABLE_COPY_MOVE(FirmwareServer)

    /// Listens on `port`, or on one that the system chooses; false when the port is taken.
    bool listen(quint16 port = 0);
    quint16 port() const { return m_port; }
    /// The address of a file of this server; `path` begins with a slash.
    QUrl url(const QString &path) const;

    /// Switches a fault on; false, with the reason in `error`, when its text is not understood.
    bool addFault(const QString &text, QString *error = nullptr);
    void clearFaults();

    /// Every request so far, in the order of arrival.
    QList<ServerRequest> requests() const;
    /// Bytes of all answers, heads included, that were handed to the system so far. It takes 64 KiB of each
    /// connection, or what it makes of that, ahead of the client's own system.
    qint64 sentBytes() const;
    /// Connections that are open now.
    int openConnections() const;

private:
    void accept();
    ServerReply answer(const ServerRequest &request);
    QString fileFor(const QByteArray &path) const;

    QString m_root;
    quint16 m_port = 0;
    QThread m_thread;
    /// Lives on m_thread and owns listener and connections.
    QObject *m_context;
    class QTcpServer *m_listener = nullptr;

    mutable std::mutex m_mutex;
    QList<ServerFault> m_faults;
    QList<ServerRequest> m_requests;
    int m_openConnections = 0;
    qint64 m_sentBytes = 0;
};
