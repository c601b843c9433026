#include "harness/server/NginxProcess.h"

#include "harness/process/Polling.h"

#include <QFile>
#include <QFileInfo>
#include <QProcess>
#include <QStandardPaths>

bool NginxProcess::start(const QString &folder, const QStringList &through)
{
    QString program = QStandardPaths::findExecutable(QStringLiteral("nginx"));
    if (program.isEmpty())
        program = QStandardPaths::findExecutable(QStringLiteral("nginx"), {QStringLiteral("/usr/sbin")});
    if (program.isEmpty()) {
        m_error = QStringLiteral("nginx is not installed. ");
        return false;
    }
    // An nginx that was killed leaves this file behind.
    const QString ready = folder + QStringLiteral("/nginx.pid");
    QFile::remove(ready);
    m_process = std::make_unique<ChildProcess>();
    if (!m_process->start(through + QStringList{program, QStringLiteral("-p"), folder, QStringLiteral("-c"),
                                                folder + QStringLiteral("/nginx.conf"), QStringLiteral("-e"),
                                                folder + QStringLiteral("/error.log")}))
        return false;
    const auto isReady = [&ready] {
        return QFileInfo(ready).size() > 0;
    };
    if (pollUntil([&] { return isReady() || !isRunning(); }, eventLimitMs, 20) && isReady())
        return true;
    m_error = QStringLiteral("nginx does not answer. ");
    return false;
}

void NginxProcess::kill()
{
    if (m_process)
        m_process->kill();
}

QString NginxProcess::errorText() const
{
    return m_error + (m_process ? m_process->errorText() : QString());
}

QString NginxProcess::script(const char *name)
{
    return QStringLiteral(QUILLMARSH_SERVER_SCRIPTS "/") + QLatin1String(name);
}

bool NginxProcess::runTool(const QStringList &command, const QString &folder, QString *error,
                           QByteArray *output, const QStringList &environment)
{
    QProcess process;
    process.setWorkingDirectory(folder);
    process.setEnvironment(QProcess::systemEnvironment() + environment);
    process.start(command.value(0), command.mid(1));
    const bool succeeded =
        waitForEnd(process) && process.exitStatus() == QProcess::NormalExit && process.exitCode() == 0;
    if (output)
        *output = process.readAllStandardOutput();
    if (!succeeded)
        *error = command.value(0) + QStringLiteral(": ") + process.errorString() + QLatin1Char(' ') +
                 QString::fromLocal8Bit(process.readAllStandardError());
    return succeeded;
}
