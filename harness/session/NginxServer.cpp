#include "harness/session/NginxServer.h"

#include "harness/process/Polling.h"
#include "simulator/files/WholeFile.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QProcess>
#include <QStandardPaths>

namespace {

QString script(const char *name)
{
    return QStringLiteral(QUILLMARSH_SESSION_SCRIPTS "/") + QLatin1String(name);
}

} // namespace

bool NginxServer::start(const QString &root, quint16 port, const QString &address, const QStringList &through)
{
    return serve(root, {QStringLiteral("%1:%2").arg(address).arg(port)}, through);
}

bool NginxServer::startWithTls(const QString &root, quint16 plainPort)
{
    return runTool(script("make-certificates.sh"), {m_folder.path()}) && makeAuthorityFolder() &&
           serve(root, {QStringLiteral("127.0.0.1:%1").arg(plainPort), QString::number(trustedPort)}, {});
}

bool NginxServer::serve(const QString &root, const QStringList &addresses, const QStringList &through)
{
    QString program = QStandardPaths::findExecutable(QStringLiteral("nginx"));
    if (program.isEmpty())
        program = QStandardPaths::findExecutable(QStringLiteral("nginx"), {QStringLiteral("/usr/sbin")});
    if (program.isEmpty()) {
        m_error = QStringLiteral("nginx is not installed. ");
        return false;
    }
    QByteArray text;
    const QString configuration = file("nginx.conf");
    if (!runTool(script("nginx-configuration.sh"), addresses, &text) ||
        !WholeFile::write(configuration, text) || !QFile::link(root, file("served"))) {
        m_error += QStringLiteral("nginx has no configuration. ");
        return false;
    }
    if (!m_server.start(through + QStringList{program, QStringLiteral("-p"), m_folder.path(),
                                              QStringLiteral("-c"), configuration, QStringLiteral("-e"),
                                              file("error.log")}))
        return false;
    const auto isReady = [this] {
        return QFileInfo(file("nginx.pid")).size() > 0;
    };
    if (pollUntil([&] { return isReady() || !m_server.isRunning(); }, eventLimitMs, 20) && isReady())
        return true;
    m_error = QStringLiteral("nginx does not answer. ");
    return false;
}

bool NginxServer::makeAuthorityFolder()
{
    return QDir().mkpath(authorityFolder()) &&
           QFile::copy(file("authority.crt"), authorityFolder() + QStringLiteral("/authority.pem")) &&
           runTool(QStringLiteral("openssl"), {QStringLiteral("rehash"), authorityFolder()});
}

bool NginxServer::runTool(const QString &tool, const QStringList &arguments, QByteArray *output)
{
    QProcess process;
    process.setWorkingDirectory(m_folder.path());
    process.start(tool, arguments);
    const bool succeeded =
        waitForEnd(process) && process.exitStatus() == QProcess::NormalExit && process.exitCode() == 0;
    if (output)
        *output = process.readAllStandardOutput();
    if (!succeeded)
        m_error = tool + QStringLiteral(": ") + process.errorString() + QLatin1Char(' ') +
                  QString::fromLocal8Bit(process.readAllStandardError());
    return succeeded;
}

QStringList NginxServer::requests() const
{
    return QString::fromUtf8(WholeFile::read(file("access.log")))
        .split(QLatin1Char('\n'), Qt::SkipEmptyParts);
}
