#include "iap/IapProgrammer.h"

#include "iap/IapOutput.h"
#include "iap/IapTitles.h"
#include "support/process/ShutdownFlag.h"
#include "support/process/SystemTool.h"

#include <QDebug>

namespace {

constexpr int toolLimitMs = 30000;
constexpr int noLimit = -1;
constexpr int shutdownLimitMs = 1000;
// A programmer that has reported 100 may still be verifying. One that has not found a device does nothing
// more.
constexpr int patienceAfterSuccessMs = 10000;
constexpr int patienceAfterFailureMs = 1000;
constexpr int tailLength = 4096;

QString trimmedText(const QByteArray &output)
{
    return QString::fromUtf8(output.constData(), output.size()).trimmed();
}

} // namespace

IapProgrammer::IapProgrammer(const Dependencies &dependencies, QObject *parent)
    : QObject(parent),
      m_dependencies(dependencies)
{
    connect(&ShutdownFlag::instance(), &ShutdownFlag::raised, this, &IapProgrammer::abandon);
    m_killTimer.setSingleShot(true);
    connect(&m_killTimer, &QTimer::timeout, this, [this] {
        if (m_process)
            m_process->kill();
    });
    killStale(toolLimitMs, OnShutdown::Kill);
}

IapProgrammer::~IapProgrammer()
{
    abandon();
    killStale(shutdownLimitMs, OnShutdown::KeepWaiting);
}

void IapProgrammer::killStale(int limitMs, OnShutdown onShutdown)
{
    if (m_dependencies.lock.isTakenElsewhere())
        return;
    // The tool exists on Windows only; failing to start it on other systems is harmless.
    runToolToEnd(SystemTool::path(QStringLiteral("taskkill")),
                 {QStringLiteral("/F"), QStringLiteral("/IM"), QStringLiteral("IAP_Programmer.exe")}, limitMs,
                 onShutdown);
}

void IapProgrammer::setDeviceIds(quint32 productId, quint32 vendorId)
{
    m_productId = productId;
    m_vendorId = vendorId;
}

IapProgrammer::Ports IapProgrammer::askForPorts()
{
    // "GetData" could disturb a programmer that is writing to a device.
    if (m_dependencies.lock.isTakenElsewhere()) {
        log(QStringLiteral("The IAP programmer is not asked for its ports while another copy of this program "
                           "is updating a device."));
        return {};
    }
    Ports ports;
    ports.wereAskedFor = true;
    const ToolRun asked = runToolToEnd(m_dependencies.program, IapArguments::getData(m_vendorId, m_productId),
                                       noLimit, OnShutdown::Kill, {}, m_dependencies.clock);
    if (asked.end != ToolRun::Finished || asked.crashed)
        return ports;
    ports.rawAnswer = trimmedText(asked.standardOutput);
    qDebug().noquote().nospace() << "Ret: " << ports.rawAnswer;
    log(QStringLiteral("IAP RunProcessGetData: ") + ports.rawAnswer);
    ports.found = readIapAnswer(ports.rawAnswer);
    for (const QString &entry : ports.found.comPorts + ports.found.usbDevices)
        qDebug().noquote().nospace() << "COMlist: " << entry;
    return ports;
}

std::optional<IapRun> IapProgrammer::prepare(const IapDevice &device)
{
    qDebug() << "onStartClicked";
    log(QStringLiteral("IAP comm ModeInit..."));
    log(QStringLiteral("check IAP Process exists..."));
    adoptIdsOf(device);
    const Ports ports = askForPorts();
    if (ShutdownFlag::instance().isRaised())
        return std::nullopt;
    qDebug().noquote().nospace() << "IAPData: " << ports.rawAnswer;
    log(QStringLiteral("IAPData: ") + ports.rawAnswer);
    log(QStringLiteral("try to Start IAP Process..."));
    IapRun run;
    run.vendorId = m_vendorId;
    run.productId = m_productId;
    run.comPorts = ports.found.comPorts;
    run.usbDevices = ports.found.usbDevices;
    return run;
}

void IapProgrammer::adoptIdsOf(const IapDevice &device)
{
    if (!device.isIap) {
        log(QStringLiteral("Current PVID is Not IAP Dev.!"));
        return;
    }
    log(QStringLiteral("IAPPVID: %1,%2").arg(device.productId).arg(device.vendorId));
    setDeviceIds(device.productId, device.vendorId);
}

IapProgrammer::StartResult IapProgrammer::start(const IapRun &run, const IapArguments::Fields &fields)
{
    if (m_process) {
        qWarning() << "IAP already running";
        return StartResult::AlreadyRunning;
    }
    if (!run.updateFile.endsWith(QLatin1String(".bin"), Qt::CaseInsensitive)) {
        log(QStringLiteral("UpDateFile is not .bin.!"));
        return StartResult::NotABinFile;
    }
    if (!launch(IapArguments::start(run, fields)))
        return StartResult::NotStarted;
    emit started();
    m_dependencies.reporter.setStateTitle(IapTitles::attempting);
    return StartResult::Started;
}

bool IapProgrammer::launch(const QStringList &arguments)
{
    auto *process = new QProcess(this);
    process->setProgram(m_dependencies.program);
    process->setArguments(arguments);
    process->setProcessChannelMode(QProcess::MergedChannels);
    connect(process, &QProcess::readyReadStandardOutput, this, &IapProgrammer::outputReady);
    connect(process, qOverload<int, QProcess::ExitStatus>(&QProcess::finished), this, &IapProgrammer::exited);
    m_process = process;
    m_verdict = UpdateReason::WritingFailed;
    m_outputTail.clear();
    process->start(QIODevice::ReadWrite);
    if (process->waitForStarted(toolLimitMs))
        return true;
    m_process = nullptr;
    delete process;
    return false;
}

void IapProgrammer::readOutput()
{
    if (!m_process)
        return;
    const QByteArray output = m_process->readAllStandardOutput();
    const QString text = trimmedText(output);
    log(text);
    m_outputTail = (m_outputTail + QString::fromUtf8(output.constData(), output.size())).right(tailLength);
    Reporter &reporter = m_dependencies.reporter;
    const IapChunk chunk = readIapChunk(text);
    if (chunk.progress) {
        reporter.setStateTitle(IapTitles::inProgress);
        reporter.setProgress(*chunk.progress);
        emit progressed(*chunk.progress);
        qDebug().noquote().nospace() << "v: " << *chunk.progress;
    }
    if (chunk.finished) {
        m_verdict = UpdateReason::None;
        reporter.setStateTitle(IapTitles::success);
        endWithin(patienceAfterSuccessMs);
    } else if (chunk.failed) {
        m_verdict = UpdateReason::DeviceNotReachable;
        reporter.setStateTitle(IapTitles::failure);
        endWithin(patienceAfterFailureMs);
    }
}

void IapProgrammer::endWithin(int milliseconds)
{
    m_process->terminate();
    if (!m_killTimer.isActive() || m_killTimer.remainingTime() > milliseconds)
        m_killTimer.start(milliseconds);
}

void IapProgrammer::conclude(int exitCode)
{
    m_killTimer.stop();
    if (m_verdict == UpdateReason::WritingFailed && reportsSuccess(m_outputTail))
        m_verdict = UpdateReason::None;
    log(QStringLiteral("IAP finished, exitCode=%1").arg(exitCode));
    if (m_process)
        m_process->deleteLater();
    m_process = nullptr;
}

void IapProgrammer::abandon()
{
    if (!m_process)
        return;
    m_killTimer.stop();
    m_process->disconnect(this);
    m_process->kill();
    m_process->waitForFinished(shutdownLimitMs);
    m_process->deleteLater();
    m_process = nullptr;
    log(QStringLiteral("The program was closed before the IAP programmer had ended."));
}
