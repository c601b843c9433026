#pragma once

#include "harness/session/NginxProcess.h"

#include <QTemporaryDir>

/// Runs the distribution's nginx with a configuration of its own. The destructor ends it.
class NginxServer
{
public:
    /// On loopback, with certificates for "localhost" of the authority in authorityFolder().
    static constexpr quint16 trustedPort = 18443;
    static constexpr quint16 expiredPort = 18444;
    /// A certificate of that authority for another host, and one that nobody has signed.
    static constexpr quint16 wrongHostPort = 18445;
    static constexpr quint16 selfSignedPort = 18446;

    /// Serves the files below `root` over http. `through` is a command that starts nginx somewhere else, such
    /// as in another network; it goes before nginx's own. On failure errorText() tells why.
    bool start(const QString &root, quint16 port, const QString &address = QStringLiteral("127.0.0.1"),
               const QStringList &through = {});
    /// Like start(), and also serves the files over https at the ports above, with new certificates. There a
    /// path that begins with "/to-self-signed/" or "/to-plain/" is redirected to that server.
    bool startWithTls(const QString &root, quint16 plainPort);
    QString errorText() const { return m_error + m_server.errorText(); }

    /// Where a program finds the authority's certificate the way it finds those of the system.
    QString authorityFolder() const { return m_folder.filePath(QStringLiteral("authority")); }
    /// Its access log: one line for each request.
    QStringList requests() const;

private:
    bool serve(const QString &root, const QStringList &addresses, const QStringList &through);
    bool makeAuthorityFolder();
    /// Runs a tool in the server's folder; its output goes to `output`.
    bool runTool(const QString &tool, const QStringList &arguments, QByteArray *output = nullptr);
    QString file(const char *name) const { return m_folder.filePath(QLatin1String(name)); }

    QTemporaryDir m_folder;
    NginxProcess m_server;
    QString m_error;
};
