#include "update/Flasher.h"

#include "support/process/ToolRun.h"
#include "update/FlasherOutput.h"

#include <QCoreApplication>
#include <QDebug>
#include <QProcess>

namespace {

constexpr int toolLimitMs = 30000;

/// Passes the size explicitly: QString::fromUtf8(QByteArray) stops at the first zero byte.
QString decoded(const QByteArray &bytes)
{
    return QString::fromUtf8(bytes.constData(), bytes.size());
}

/// The output handlers of one run.
class FlasherConsole
{
public:
    FlasherConsole(QProcess &process, Reporter &reporter, ProgressPicture &picture)
        : m_process(process),
          m_reporter(reporter),
          m_picture(picture)
    {
        QObject::connect(&process, &QProcess::readyReadStandardOutput, &m_lifetime, [this] { readOutput(); });
        QObject::connect(&process, &QProcess::readyReadStandardError, &m_lifetime, [this] { readErrors(); });
    }

    /// Returns the result of the run. Call it after the process has ended.
    int result()
    {
        readOutput();
        readErrors();
        if (m_result == BurnWithoutSuccessLine) {
            m_result = m_lines.verdict().value_or(BurnWithoutSuccessLine);
            if (m_result == BurnSucceeded)
                m_reporter.setProgress(100);
        }
        return m_result;
    }

private:
    void readOutput()
    {
        const QByteArray bytes = m_process.readAllStandardOutput();
        if (bytes.isEmpty())
            return;
        const QString text = decoded(bytes);
        qDebug().noquote() << "Standard Output:" << text;
        m_reporter.log(text);
        m_lines.feed(bytes);

        const FlasherChunk chunk = readFlasherChunk(text);
        for (const int percent : chunk.progress) {
            m_reporter.setProgress(percent);
            m_picture.setPictureLevel(percent);
        }
        m_result = chunk.result.value_or(m_result);
    }

    void readErrors()
    {
        const QByteArray bytes = m_process.readAllStandardError();
        if (bytes.isEmpty())
            return;
        const QString text = decoded(bytes);
        qDebug().noquote() << "Standard Error:" << text;
        m_reporter.log(QLatin1String("!!!ERRORMESSAGE!!!: ") + text);
    }

    QProcess &m_process;
    Reporter &m_reporter;
    ProgressPicture &m_picture;
    FlasherLines m_lines;
    BurnResult m_result = BurnWithoutSuccessLine;
    /// The context of the connections: they end with this object, before the process, which may emit signals
    /// in its destructor.
    QObject m_lifetime;
};

} // namespace

Flasher::Flasher(Reporter &reporter, ProgressPicture &picture, UpdateSession &session, Clock &clock,
                 const UpdatePaths &paths, const Job &job)
    : m_reporter(reporter),
      m_picture(picture),
      m_session(session),
      m_clock(clock),
      m_paths(paths),
      m_job(job)
{
}

int Flasher::runFlasher(const QString &program, const QString &imagePath)
{
    m_picture.setPictureLevel(0.0);
    m_picture.repaintPicture();

    m_session.enter(UpdateStage::Flashing);
    QProcess process;
    FlasherConsole console(process, m_reporter, m_picture);
    process.start(program, {QStringLiteral("image"), imagePath}, QIODevice::ReadWrite);
    if (!process.waitForStarted(toolLimitMs)) {
        qDebug() << "Failed to start process!";
        m_reporter.log(
            QStringLiteral("The flasher could not be started: %1 (%2)").arg(program, process.errorString()));
        return BurnNotStarted;
    }
    while (process.state() != QProcess::NotRunning) {
        if (!m_clock.sleepMs(10)) {
            process.kill();
            process.waitForFinished(1000);
            return BurnWithoutSuccessLine;
        }
        m_picture.repaintPicture();
        // A full pipe makes a flasher with unbounded output wait.
        if (!m_reporter.isCatchingUp())
            QCoreApplication::processEvents();
    }

    const int result = console.result();
    if (result == BurnSucceeded) {
        m_picture.setPictureLevel(100.0);
        m_picture.repaintPicture();
    }
    return result;
}

void Flasher::burnWithRetry(bool *ok, bool bootloaderOk)
{
    if (!bootloaderOk && m_job.deviceName != QLatin1String("USB")) {
        qDebug() << "try to bootloader err";
        m_reporter.log(QStringLiteral("try to bootloader err."));
        return;
    }
    if (burnUpToTenTimes(m_paths.usbFlasher))
        *ok = true;
}

bool Flasher::burnOverHid()
{
    return burnUpToTenTimes(m_paths.hidFlasher);
}

bool Flasher::burnUpToTenTimes(const QString &program)
{
    // The device needs a moment before each attempt to appear as the bootloader.
    for (int tries = 0; tries < 10 && m_clock.sleepMs(1000); ++tries) {
        m_lastResult = static_cast<BurnResult>(runFlasher(program, m_job.imagePath));
        if (m_lastResult != BurnDeviceNotReachable)
            return m_lastResult == BurnSucceeded;
        m_session.enter(UpdateStage::EnteringBootloader);
    }
    return false;
}

bool Flasher::RunCmdReset(const QString &program)
{
    m_reporter.log(QStringLiteral("try to RunCmdReset..."));
    const ToolRun run = runToolToEnd(program, {QStringLiteral("shcmd"), QStringLiteral("reset")}, toolLimitMs,
                                     OnShutdown::Kill, {}, m_clock);
    switch (run.end) {
    case ToolRun::NotStarted:
        qDebug() << "Failed to start process!";
        m_reporter.log(QStringLiteral("Failed to start process!"));
        return false;
    case ToolRun::Finished:
        m_reporter.log(QStringLiteral("RunCmdReset Done."));
        return true;
    case ToolRun::Killed:
        m_reporter.log(QStringLiteral("Process did not finish!"));
        return false;
    }
    return false;
}
