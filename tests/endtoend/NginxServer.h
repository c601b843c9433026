#pragma once

#include "simulator/bench/ChildProcess.h"

#include <QTemporaryDir>

/// The distribution's web server on loopback, from a configuration of the test's own, with certificates
/// that are made on the spot. The destructor ends it.
///
/// All addresses serve the folder given: plainPort over http, the others over https. A path that begins
/// with "/to-self-signed/" or "/to-plain/" is redirected there.
class NginxServer
{
public:
    static constexpr int plainPort = 18180;
    /// Certificates for "localhost" of the authority in authorityFolder().
    static constexpr int trustedPort = 18443;
    static constexpr int expiredPort = 18444;
    /// One of that authority for another host, and one of nobody's.
    static constexpr int wrongHostPort = 18445;
    static constexpr int selfSignedPort = 18446;

    /// Makes the certificates and starts the server; false tells why in errorText().
    bool start(const QString &folder);
    QString errorText() const { return m_error + m_server.errorText(); }

    /// Where a program finds the authority's certificate the way it finds those of the system.
    QString authorityFolder() const { return m_folder.filePath(QStringLiteral("authority")); }
    /// Its access log: one line for each request.
    QStringList requests() const;

private:
    bool makeCertificates();
    bool makeKey(const QString &name);
    bool sign(const QString &name, const QString &host, int days);
    bool openssl(const QStringList &arguments);
    bool writeConfiguration(const QString &root);
    bool waitUntilReady();
    QString file(const QString &name) const { return m_folder.filePath(name); }

    QTemporaryDir m_folder;
    ChildProcess m_server;
    QString m_error;
};
