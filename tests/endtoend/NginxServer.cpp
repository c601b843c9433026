#include "tests/endtoend/NginxServer.h"

#include <QDeadlineTimer>
#include <QDir>
#include <QFile>
#include <QProcess>
#include <QStandardPaths>
#include <QTcpSocket>
#include <QThread>

namespace {

constexpr int toolLimitMs = 30000;
constexpr int readyLimitMs = 15000;

bool write(const QString &path, const QByteArray &content)
{
    QFile file(path);
    return file.open(QIODevice::WriteOnly) && file.write(content) == content.size();
}

QByteArray httpsServer(int port, const char *name)
{
    return "server { listen 127.0.0.1:" + QByteArray::number(port) + " ssl; ssl_certificate " + name +
           ".crt; ssl_certificate_key " + name + ".key; root served;\n" +
           "  location /to-self-signed/ { rewrite ^/to-self-signed(/.*) https://localhost:" +
           QByteArray::number(NginxServer::selfSignedPort) + "$1 redirect; }\n" +
           "  location /to-plain/ { rewrite ^/to-plain(/.*) http://localhost:" +
           QByteArray::number(NginxServer::plainPort) + "$1 redirect; }\n}\n";
}

} // namespace

bool NginxServer::start(const QString &folder)
{
    const QString program =
        QStandardPaths::findExecutable(QStringLiteral("nginx"), {QStringLiteral("/usr/sbin")});
    if (program.isEmpty()) {
        m_error = QStringLiteral("nginx is not installed. ");
        return false;
    }
    return makeCertificates() && writeConfiguration(folder) &&
           m_server.start({program, QStringLiteral("-p"), m_folder.path(), QStringLiteral("-c"),
                           file(QStringLiteral("nginx.conf")), QStringLiteral("-e"),
                           file(QStringLiteral("error.log"))}) &&
           waitUntilReady();
}

bool NginxServer::makeCertificates()
{
    return makeKey(QStringLiteral("authority")) &&
           openssl({QStringLiteral("req"), QStringLiteral("-x509"), QStringLiteral("-new"),
                    QStringLiteral("-key"), QStringLiteral("authority.key"), QStringLiteral("-subj"),
                    QStringLiteral("/CN=Test authority"), QStringLiteral("-days"), QStringLiteral("2"),
                    QStringLiteral("-out"), QStringLiteral("authority.crt")}) &&
           QDir().mkpath(authorityFolder()) &&
           QFile::copy(file(QStringLiteral("authority.crt")),
                       authorityFolder() + QStringLiteral("/authority.pem")) &&
           openssl({QStringLiteral("rehash"), authorityFolder()}) &&
           sign(QStringLiteral("trusted"), QStringLiteral("localhost"), 2) &&
           sign(QStringLiteral("expired"), QStringLiteral("localhost"), -1) &&
           sign(QStringLiteral("wrong-host"), QStringLiteral("other.example"), 2) &&
           makeKey(QStringLiteral("self-signed")) &&
           openssl({QStringLiteral("req"), QStringLiteral("-x509"), QStringLiteral("-new"),
                    QStringLiteral("-key"), QStringLiteral("self-signed.key"), QStringLiteral("-subj"),
                    QStringLiteral("/CN=localhost"), QStringLiteral("-addext"),
                    QStringLiteral("subjectAltName=DNS:localhost"), QStringLiteral("-days"),
                    QStringLiteral("2"), QStringLiteral("-out"), QStringLiteral("self-signed.crt")});
}

bool NginxServer::makeKey(const QString &name)
{
    return openssl({QStringLiteral("genpkey"), QStringLiteral("-algorithm"), QStringLiteral("EC"),
                    QStringLiteral("-pkeyopt"), QStringLiteral("ec_paramgen_curve:prime256v1"),
                    QStringLiteral("-out"), name + QStringLiteral(".key")});
}

bool NginxServer::sign(const QString &name, const QString &host, int days)
{
    const QString request = name + QStringLiteral(".csr");
    const QString extensions = name + QStringLiteral(".ext");
    return makeKey(name) && write(file(extensions), "subjectAltName=DNS:" + host.toLatin1() + '\n') &&
           openssl({QStringLiteral("req"), QStringLiteral("-new"), QStringLiteral("-key"),
                    name + QStringLiteral(".key"), QStringLiteral("-subj"), QStringLiteral("/CN=") + host,
                    QStringLiteral("-out"), request}) &&
           openssl({QStringLiteral("x509"), QStringLiteral("-req"), QStringLiteral("-in"), request,
                    QStringLiteral("-CA"), QStringLiteral("authority.crt"), QStringLiteral("-CAkey"),
                    QStringLiteral("authority.key"), QStringLiteral("-set_serial"), QStringLiteral("7"),
                    QStringLiteral("-days"), QString::number(days), QStringLiteral("-extfile"), extensions,
                    QStringLiteral("-out"), name + QStringLiteral(".crt")});
}

bool NginxServer::openssl(const QStringList &arguments)
{
    QProcess tool;
    tool.setWorkingDirectory(m_folder.path());
    tool.start(QStringLiteral("openssl"), arguments);
    if (tool.waitForFinished(toolLimitMs) && tool.exitStatus() == QProcess::NormalExit &&
        tool.exitCode() == 0)
        return true;
    m_error = QStringLiteral("openssl ") + arguments.join(QLatin1Char(' ')) + QStringLiteral(": ") +
              QString::fromLocal8Bit(tool.readAllStandardError());
    return false;
}

bool NginxServer::writeConfiguration(const QString &root)
{
    QByteArray text = "daemon off;\nmaster_process off;\npid nginx.pid;\nevents {}\nhttp {\n"
                      "access_log access.log;\n";
    for (const char *kind : {"client_body", "proxy", "fastcgi", "uwsgi", "scgi"})
        text += QByteArray(kind) + "_temp_path scratch;\n";
    text += "server { listen 127.0.0.1:" + QByteArray::number(plainPort) + "; root served; }\n";
    text += httpsServer(trustedPort, "trusted") + httpsServer(expiredPort, "expired") +
            httpsServer(wrongHostPort, "wrong-host") + httpsServer(selfSignedPort, "self-signed") + "}\n";
    return QFile::link(root, file(QStringLiteral("served"))) &&
           write(file(QStringLiteral("nginx.conf")), text);
}

bool NginxServer::waitUntilReady()
{
    const QDeadlineTimer limit(readyLimitMs);
    while (!limit.hasExpired() && m_server.isRunning()) {
        QTcpSocket socket;
        socket.connectToHost(QStringLiteral("127.0.0.1"), selfSignedPort);
        if (socket.waitForConnected(1000))
            return true;
        QThread::msleep(20);
    }
    m_error = QStringLiteral("nginx does not answer. ");
    return false;
}

QStringList NginxServer::requests() const
{
    QFile log(file(QStringLiteral("access.log")));
    if (!log.open(QIODevice::ReadOnly))
        return {};
    return QString::fromUtf8(log.readAll()).split(QLatin1Char('\n'), Qt::SkipEmptyParts);
}
