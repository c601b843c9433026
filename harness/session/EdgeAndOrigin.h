#pragma once

#include "harness/session/NginxProcess.h"
#include "harness/session/ServedRequest.h"

#include <QTemporaryDir>

/// A firmware server and a caching server in front of it: two nginx processes on loopback, each with its site
/// of docs/firmware-server, over HTTPS, with certificates of an authority of this object's own. The ports are
/// fixed, so run it in a network of its own.
class EdgeAndOrigin
{
public:
    static constexpr quint16 edgePort = 18460;
    static constexpr quint16 originPort = 18461;

    struct Options
    {
        /// Worker processes of the edge.
        int workers = 1;
        /// Bytes a second for each connection of a client; 0 for no limit.
        int bytesPerConnection = 0;
        /// Seconds for which the manifest may be kept, in place of the example's; 0 for the example's.
        int manifestSeconds = 0;
        /// Limits of the cache as nginx writes them, in place of the example's.
        QString cacheSize = QStringLiteral("20g");
        QString cacheFree = QStringLiteral("16m");
    };

    EdgeAndOrigin();

    /// Starts both. Returns false if that fails: see errorText().
    bool start(const Options &options);
    bool startEdge() { return m_edge.start(folder("edge")); }
    bool startOrigin() { return m_origin.start(folder("origin")); }
    void killEdge() { m_edge.kill(); }
    void killOrigin() { m_origin.kill(); }
    QString errorText() const { return m_error + m_edge.errorText() + m_origin.errorText(); }
    /// The process id of the edge's master process.
    qint64 edgeProcessId() const { return m_edge.processId(); }

    /// Puts an image onto the origin as a maker does, with add-model.sh. Returns false if that fails.
    bool addModel(const QString &model, const QByteArray &image);

    static QString manifestUrl();
    /// The manifest's file on the origin.
    QString manifestFile() const;
    QString authorityFile() const { return folder("certificates") + QStringLiteral("/authority.crt"); }
    QString cacheFolder() const { return folder("cache"); }
    /// What each has answered so far. The answers to requests that still run are not among them.
    QVector<ServedRequest> edgeRequests() const;
    QVector<ServedRequest> originRequests() const;
    /// What both have written to their error logs.
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
