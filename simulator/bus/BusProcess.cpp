#include "simulator/bus/BusProcess.h"

#include <QDeadlineTimer>
#include <QFile>
#include <QJsonDocument>
#include <QStandardPaths>

BusProcess::~BusProcess()
{
    stop();
}

bool BusProcess::start(const QString &controller, const QByteArray &description)
{
    QFile file(m_folder.filePath(QStringLiteral("bus.json")));
    if (!file.open(QIODevice::WriteOnly) || file.write(description) != description.size()) {
        m_error = file.errorString();
        return false;
    }
    file.close();
    QStringList command{controller, QStringLiteral("--description"), file.fileName()};
    const QString wrapper = QStandardPaths::findExecutable(QStringLiteral("umockdev-wrapper"));
    if (!wrapper.isEmpty())
        command.prepend(wrapper);
    const QString program = command.takeFirst();
    m_process.start(program, command);
    const QDeadlineTimer deadline(30000);
    while (!m_process.canReadLine()) {
        if (!m_process.waitForReadyRead(static_cast<int>(deadline.remainingTime()))) {
            m_process.waitForFinished(100);
            m_error = QStringLiteral("the bus controller is not ready: %1 %2")
                          .arg(m_process.errorString(), QString::fromUtf8(m_process.readAllStandardError()));
            return false;
        }
    }
    const int port =
        QJsonDocument::fromJson(m_process.readLine()).object().value(QLatin1String("port")).toInt();
    m_address = QStringLiteral("127.0.0.1:%1").arg(port);
    if (m_client.connectTo(m_address))
        return true;
    m_error = m_client.errorText();
    return false;
}

bool BusProcess::stop()
{
    if (m_process.state() == QProcess::NotRunning)
        return m_process.exitStatus() == QProcess::NormalExit && m_process.exitCode() == 0;
    m_process.closeWriteChannel();
    if (!m_process.waitForFinished(15000)) {
        m_process.kill();
        m_process.waitForFinished();
        return false;
    }
    return m_process.exitStatus() == QProcess::NormalExit && m_process.exitCode() == 0;
}
