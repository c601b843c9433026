#include "harness/process/ChildProcess.h"

#include "harness/process/Polling.h"

#include <QFile>
#include <QJsonDocument>

namespace {
constexpr int terminateLimitMs = 2000;
constexpr int errorTail = 2000;
} // namespace

ChildProcess::ChildProcess() = default;

ChildProcess::~ChildProcess()
{
    end(0);
}

bool ChildProcess::start(const QStringList &command, const QProcessEnvironment &environment)
{
    m_process.setProcessEnvironment(environment);
    m_process.setStandardOutputFile(m_folder.filePath(QStringLiteral("stdout")));
    m_process.setStandardErrorFile(m_folder.filePath(QStringLiteral("stderr")));
    if (m_process.startAndWait(command.value(0), command.mid(1), eventLimitMs))
        return true;
    m_error = command.value(0) + QStringLiteral(": ") + m_process.errorString();
    return false;
}

QByteArray ChildProcess::waitForFirstLine(int limitMs)
{
    QByteArray line;
    pollUntil(
        [&] {
            const bool ended = !isRunning(); // Checked before reading, so that no output is missed.
            const QByteArray output = contents("stdout");
            line = output.left(output.indexOf('\n') + 1);
            return ended || !line.isEmpty();
        },
        limitMs, 2);
    if (line.isEmpty())
        m_error =
            m_process.program() + (isRunning() ? QStringLiteral(" printed nothing in %1 ms").arg(limitMs)
                                               : QStringLiteral(" ended without a line"));
    return line;
}

QJsonObject ChildProcess::waitForReadyLine(int limitMs)
{
    const QByteArray line = waitForFirstLine(limitMs);
    if (line.isEmpty())
        return {};
    const QJsonObject ready = QJsonDocument::fromJson(line).object();
    const int port = ready.value(QLatin1String("port")).toInt();
    if (port > 0 && port <= 0xFFFF)
        return ready;
    m_error = m_process.program() + QStringLiteral(" named no port: ") + QString::fromUtf8(line);
    return {};
}

quint16 ChildProcess::waitForPort(int limitMs)
{
    return static_cast<quint16>(waitForReadyLine(limitMs).value(QLatin1String("port")).toInt());
}

bool ChildProcess::end(int graceMs)
{
    if (m_process.state() == QProcess::NotRunning)
        return true;
    m_process.closeWriteChannel();
    const bool endedByItself = waitForEnd(m_process, graceMs);
    if (!endedByItself) {
        m_process.terminate();
        if (!waitForEnd(m_process, terminateLimitMs)) {
            m_process.kill();
            waitForEnd(m_process, terminateLimitMs);
        }
        m_process.killAll();
    }
    return endedByItself;
}

void ChildProcess::kill()
{
    if (!isRunning())
        return;
    m_process.killAll();
    waitForEnd(m_process, terminateLimitMs);
}

QString ChildProcess::errorText() const
{
    return m_error + QLatin1Char('\n') + QString::fromUtf8(contents("stderr").right(errorTail));
}

QByteArray ChildProcess::contents(const char *fileName) const
{
    QFile file(m_folder.filePath(QLatin1String(fileName)));
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}
