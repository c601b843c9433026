#pragma once

#include "harness/server/NginxProcess.h"

#include <QTemporaryDir>

/// Runs the distribution's nginx with a separate configuration. The destructor ends it.
class NginxServer
{
public:
    /// Ports on loopback with certificates for "localhost" by the authority in authorityFolder().
    static constexpr quint16 trustedPort = 18443;
    static constexpr quint16 expiredPort = 18444;
    /// Ports with a certificate by that authority for another host, and with a self-signed one.
    static constexpr quint16 wrongHostPort = 18445;
    static constexpr quint16 selfSignedPort = 18446;

    /// Serves the files in `root` over http. `through` is a command that runs nginx elsewhere, for example in
    /// another network namespace; the command line of nginx is appended to it. On failure errorText() returns
    /// the reason.
    bool start(const QString &root, quint16 port, const QString &address = QStringLiteral("127.0.0.1"),
               const QStringList &through = {});
    /// Like start(), but also serves the files over https at the ports above, with new certificates. Over
    /// https, a path that begins with "/to-self-signed/" or "/to-plain/" is redirected to that server.
    bool startWithTls(const QString &root, quint16 plainPort);
    QString errorText() const { return m_error + m_server.errorText(); }

    /// Returns a folder with the authority's certificate, in the form in which programs find the system's
    /// certificates.
    QString authorityFolder() const { return m_folder.filePath(QStringLiteral("authority")); }
    /// Returns the lines of the access log, one for each request.
    QStringList requests() const;

private:
    bool serve(const QString &root, const QStringList &addresses, const QStringList &through);
    bool makeAuthorityFolder();
    /// Runs a tool in the server's folder and stores its output in `output`.
    bool runTool(const QString &tool, const QStringList &arguments, QByteArray *output = nullptr);
    QString file(const char *name) const { return m_folder.filePath(QLatin1String(name)); }

    QTemporaryDir m_folder;
    NginxProcess m_server;
    QString m_error;
};
