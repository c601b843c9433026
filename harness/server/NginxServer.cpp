#include "harness/server/NginxServer.h"

#include "simulator/files/WholeFile.h"

#include <QDir>
#include <QFile>

bool NginxServer::start(const QString &root, quint16 port, const QString &address, const QStringList &through)
{
    return serve(root, {QStringLiteral("%1:%2").arg(address).arg(port)}, through);
}

bool NginxServer::startWithTls(const QString &root, quint16 plainPort)
{
    return runTool(NginxProcess::script("make-certificates.sh"), {m_folder.path()}) &&
           makeAuthorityFolder() &&
           serve(root, {QStringLiteral("127.0.0.1:%1").arg(plainPort), QString::number(trustedPort)}, {});
}

bool NginxServer::serve(const QString &root, const QStringList &addresses, const QStringList &through)
{
    QByteArray text;
    const QString configuration = file("nginx.conf");
    if (!runTool(NginxProcess::script("nginx-configuration.sh"), addresses, &text) ||
        !WholeFile::write(configuration, text) || !QFile::link(root, file("served"))) {
        m_error += QStringLiteral("nginx has no configuration. ");
        return false;
    }
    return m_server.start(m_folder.path(), through);
}

bool NginxServer::makeAuthorityFolder()
{
    return QDir().mkpath(authorityFolder()) &&
           QFile::copy(file("authority.crt"), authorityFolder() + QStringLiteral("/authority.pem")) &&
           runTool(QStringLiteral("openssl"), {QStringLiteral("rehash"), authorityFolder()});
}

bool NginxServer::runTool(const QString &tool, const QStringList &arguments, QByteArray *output)
{
    return NginxProcess::runTool(QStringList{tool} + arguments, m_folder.path(), &m_error, output);
}

QStringList NginxServer::requests() const
{
    return QString::fromUtf8(WholeFile::read(file("access.log")))
        .split(QLatin1Char('\n'), Qt::SkipEmptyParts);
}
