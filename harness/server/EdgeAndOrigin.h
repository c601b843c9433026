#pragma once

#include "harness/server/NginxProcess.h"
#include "harness/server/ServedRequest.h"

#include <QTemporaryDir>

/// A firmware server (the origin) and a caching server in front of it (the edge): two nginx processes on
/// loopback, each with its site from docs/firmware-server, over HTTPS, with certificates by a separate
/// authority. The ports are fixed, so use it in a network namespace of its own.
class EdgeAndOrigin
{
public:
    static constexpr quint16 edgePort = 18460;
    static constexpr quint16 originPort = 18461;

    struct Options
    {
        /// The number of worker processes of the edge.
        int workers = 1;
        /// The maximum bytes per second for each connection of a client; 0 for no limit.
        int bytesPerConnection = 0;
        /// How long the manifest may be cached, in seconds; 0 for the value of the example.
        int manifestSeconds = 0;
        /// The limits of the cache in the form of nginx; empty for those of the example.
        QString cacheSize = QStringLiteral("20g");
        QString cacheFree = QStringLiteral("16m");
    };

    EdgeAndOrigin();

    /// Starts both servers. Returns false on failure; see errorText().
    bool start(const Options &options);
    bool startEdge() { return m_edge.start(folder("edge")); }
    bool startOrigin() { return m_origin.start(folder("origin")); }
    void killEdge() { m_edge.kill(); }
    void killOrigin() { m_origin.kill(); }
    QString errorText() const { return m_error + m_edge.errorText() + m_origin.errorText(); }
    /// Returns the process id of the edge's master process.
    qint64 edgeProcessId() const { return m_edge.processId(); }

    /// Publishes an image on the origin with add-model.sh, as a maker does. Returns false on failure.
    bool addModel(const QString &model, const QByteArray &image);

    static QString manifestUrl();
    /// Returns the path of the manifest on the origin.
    QString manifestFile() const;
    QString authorityFile() const { return folder("certificates") + QStringLiteral("/authority.crt"); }
    QString cacheFolder() const { return folder("cache"); }
    /// Return the requests that each server has completed so far.
    QVector<ServedRequest> edgeRequests() const;
    QVector<ServedRequest> originRequests() const;
    /// Returns the error logs of both servers.
    QString errorLogs() const;
    void forgetRequests() const;

private:
    QString folder(const char *name) const { return m_folder.filePath(QLatin1String(name)); }
    bool configure(const char *site, const QStringList &values);

    QTemporaryDir m_folder;
    NginxProcess m_origin;
    NginxProcess m_edge;
    QString m_error;
};
