#include "benchmarks/Measuring.h"
#include "benchmarks/Subjects.h"

#include "harness/UpdateScenario.h"
#include "harness/server/NginxServer.h"
#include "simulator/server/FirmwareAddress.h"
#include "simulator/standin/StandinScript.h"

#include <QThread>

namespace {

constexpr int updateLimitMs = 60000;

/// Returns a script for a flasher that succeeds without delay and can restart the device.
QJsonDocument flasherThatEndsAtOnce()
{
    using namespace StandinScript;
    const QJsonObject success = step("print", QStringLiteral("Burn image successfully!\n"));
    return QJsonDocument(QJsonObject{{QStringLiteral("image"), runs({{success}})},
                                     {QStringLiteral("shcmd"), runs({{step("reset")}})}});
}

/// Waits until the status title contains `text`.
bool waitForTitle(ProbeClient &probe, const QString &text)
{
    const double end = Measuring::steadyMs() + updateLimitMs;
    while (!probe.text(QStringLiteral("stateTitleLabel")).contains(text)) {
        if (Measuring::steadyMs() > end)
            return false;
        QThread::msleep(1);
    }
    return true;
}

bool startWith(UpdateScenario &scenario, NginxServer &server, QString *error)
{
    scenario.withServer = false;
    scenario.program.setScript(QStringLiteral("upgcmd.exe"), flasherThatEndsAtOnce());
    if (!server.start(scenario.firmware.folder(), FirmwareAddress::port())) {
        *error = server.errorText();
        return false;
    }
    if (!scenario.start()) {
        *error = scenario.errorText();
        return false;
    }
    if (!scenario.probe.waitForText(QStringLiteral("deviceModelLabel"), scenario.model(), updateLimitMs)) {
        *error = scenario.probe.errorText();
        return false;
    }
    return true;
}

const QString success = QStringLiteral("Upgrade Successful");

} // namespace

QString Subjects::clickToSuccess(BenchContext &context)
{
    // The program polls for the manifest, the size and the segments every 100 ms, and gives the device one
    // second to enter its bootloader. The reset follows after the title.
    constexpr double waitsMs = 100 + 100 + 100 + 1000;
    QVector<double> figures;
    for (int round = 0; round < context.rounds; ++round) {
        UpdateScenario scenario(QStringLiteral("DevMaa"));
        NginxServer server;
        QString error;
        if (!startWith(scenario, server, &error))
            return error;
        const double start = Measuring::steadyMs();
        if (!scenario.probe.click(QStringLiteral("startButton")) || !waitForTitle(scenario.probe, success))
            return QStringLiteral("no success: ") + scenario.program.updateLog();
        figures.append(Measuring::steadyMs() - start);
    }
    context.results.addFigures(QStringLiteral("click/ours ms"), figures);
    const double ours = Measuring::median(figures);
    context.results.add(
        {QStringLiteral("Click to success title, 1 MiB over loopback"), Measuring::milliseconds(ours),
         QStringLiteral("the program's own waits %1").arg(Measuring::milliseconds(waitsMs)),
         Measuring::times(ours / waitsMs), QStringLiteral("<= 1.05 x"), ours <= 1.05 * waitsMs});
    return QString();
}

QString Subjects::downloadMemory(BenchContext &context)
{
    constexpr int imageBytes = 256 << 20;
    constexpr double limitKib = 64 * 1024;
    UpdateScenario scenario(QStringLiteral("DevMaa"));
    scenario.firmware.addModel(scenario.model(), imageBytes, 2);
    NginxServer server;
    QString error;
    if (!startWith(scenario, server, &error))
        return error;
    const QVector<qint64> processes = scenario.program.runningProcesses();
    if (processes.size() != 1 || !Measuring::resetPeak(processes.first()))
        return QStringLiteral("the program's memory cannot be followed");
    const qint64 before = Measuring::memoryOf(processes.first()).rss;
    if (!scenario.probe.click(QStringLiteral("startButton")) || !waitForTitle(scenario.probe, success))
        return QStringLiteral("no success: ") + scenario.program.updateLog();
    if (!scenario.program.updateLog().contains(QLatin1String("AllDownloadFileSize: 268435456")))
        return QStringLiteral("another file was fetched");
    const Measuring::Memory after = Measuring::memoryOf(processes.first());
    const double growth = static_cast<double>(after.peak - before);
    context.results.addFigures(
        QStringLiteral("memory/before, peak, after KiB"),
        {static_cast<double>(before), static_cast<double>(after.peak), static_cast<double>(after.rss)});
    context.results.add({QStringLiteral("Peak growth of memory during an update of 256 MiB"),
                         Measuring::mebibytes(growth),
                         QStringLiteral("from %1").arg(Measuring::mebibytes(static_cast<double>(before))),
                         QStringLiteral("-"), QStringLiteral("<= 64 MiB"), growth <= limitKib});
    return QString();
}

QString Subjects::idle(BenchContext &context)
{
    constexpr unsigned long settleMs = 3000;
    constexpr unsigned long watchedMs = 30000;
    UpdateScenario scenario(QStringLiteral("DevMaa"));
    NginxServer server;
    QString error;
    if (!startWith(scenario, server, &error))
        return error;
    const QVector<qint64> processes = scenario.program.runningProcesses();
    if (processes.size() != 1)
        return QStringLiteral("more than one process of the program runs");
    QThread::msleep(settleMs);
    const double before = Measuring::processorMs(processes.first());
    const double start = Measuring::steadyMs();
    QThread::msleep(watchedMs);
    const double used = Measuring::processorMs(processes.first()) - before;
    const double percent = 100 * used / (Measuring::steadyMs() - start);
    if (before < 0 || used < 0 ||
        !scenario.probe.text(QStringLiteral("deviceModelLabel")).contains(scenario.model()))
        return QStringLiteral("the program or the device has gone");
    context.results.addFigures(QStringLiteral("idle/ms used in 30 s"), {used});
    context.results.add({QStringLiteral("Idle, a device connected, 30 s"),
                         QString::number(percent, 'f', 2) + QLatin1String(" % of a core"),
                         QStringLiteral("-"), QStringLiteral("-"), QStringLiteral("< 1 %"), percent < 1});
    return QString();
}
