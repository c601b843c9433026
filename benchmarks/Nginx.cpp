#include "benchmarks/Nginx.h"

#include "simulator/bench/Polling.h"

#include <QFile>
#include <QTcpSocket>

namespace {

// As root its workers would otherwise be somebody who cannot read our folders; for others it only
// warns that the line has no effect.
constexpr auto configuration = R"(daemon off;
user root;
worker_processes 1;
pid %1/nginx.pid;
error_log %1/error.log;
events { worker_connections 64; }
http {
    access_log off;
    sendfile on;
    client_body_temp_path %1/body;
    proxy_temp_path %1/proxy;
    fastcgi_temp_path %1/fastcgi;
    uwsgi_temp_path %1/uwsgi;
    scgi_temp_path %1/scgi;
    server {
        listen %2:%3;
        root %4;
    }
}
)";

bool answers(const QString &address, quint16 port)
{
    QTcpSocket socket;
    socket.connectToHost(address, port);
    return socket.waitForConnected(1000);
}

} // namespace

bool Nginx::start(const QString &root, quint16 port, const QString &address, const QStringList &through)
{
    const QString path = m_folder.filePath(QStringLiteral("nginx.conf"));
    QFile file(path);
    if (!file.open(QIODevice::WriteOnly))
        return false;
    file.write(QString::fromLatin1(configuration)
                   .arg(m_folder.path(), address, QString::number(port), root)
                   .toUtf8());
    file.close();
    const QString log = m_folder.filePath(QStringLiteral("error.log"));
    if (!m_server.start(through + QStringList{QStringLiteral("nginx"), QStringLiteral("-p"), m_folder.path(),
                                              QStringLiteral("-e"), log, QStringLiteral("-c"), path}))
        return false;
    return pollUntil([&] { return answers(address, port); }, 10000);
}
