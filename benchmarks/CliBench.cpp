#include "benchmarks/Measuring.h"
#include "benchmarks/Subjects.h"

#include "harness/BuildPaths.h"
#include "harness/CliScenario.h"
#include "harness/process/Polling.h"
#include "harness/server/NginxServer.h"
#include "harness/session/XvfbSession.h"
#include "simulator/server/FirmwareAddress.h"
#include "simulator/standin/StandinScript.h"

#include <QProcess>

namespace {

constexpr int updateLimitMs = 60000;
constexpr int startsPerRound = 10;

/// Starts the program and returns the milliseconds until its first line had arrived; negative if there was
/// none, or if the program did not end with 0.
double firstLineMs(const QStringList &command)
{
    QProcess process;
    process.setStandardErrorFile(QProcess::nullDevice());
    const double start = Measuring::steadyMs();
    process.start(command.value(0), command.mid(1));
    while (!process.canReadLine() && process.waitForReadyRead(updateLimitMs)) {
    }
    const double taken = Measuring::steadyMs() - start;
    const bool hasLine = process.canReadLine();
    const bool hasEnded = process.state() == QProcess::NotRunning || process.waitForFinished(updateLimitMs);
    return hasLine && hasEnded && process.exitCode() == 0 ? taken : -1;
}

/// A device on a bus, a server with its firmware, and both programs, with a flasher that burns without delay.
class UpdateBench
{
public:
    UpdateBench() : window(BuildPaths::program())
    {
        using namespace StandinScript;
        const QJsonObject success = step("print", QStringLiteral("Burn image successfully!\n"));
        const QJsonDocument flasher(QJsonObject{{QStringLiteral("image"), runs({{step("burn"), success}})},
                                                {QStringLiteral("shcmd"), runs({{step("reset")}})}});
        window.addAllTools(window.system().standIn());
        window.setControlList({cli.model()}, {QStringLiteral("USB")});
        for (StagedProgram *program : {&cli.program, &window})
            program->setScript(QStringLiteral("upgcmd.exe"), flasher);
        window.setVariable(QStringLiteral("QT_QPA_GENERIC_PLUGINS"), QString());
        cli.withServer = false;
    }
    QString start()
    {
        if (!server.start(cli.firmware.folder(), FirmwareAddress::port()))
            return server.errorText();
        if (!display.start())
            return display.errorText();
        window.setDisplay(display.display());
        // This also starts the bus.
        return cli.run({QStringLiteral("list")}) == 0 ? QString() : cli.errorText();
    }
    /// Updates the device with one of the programs. Returns the milliseconds from the program's start until
    /// the device is restarted; negative if that failed.
    double update(const Launch &launch)
    {
        const int before = resets();
        const double start = Measuring::steadyMs();
        if (!cli.bus.run(launch) || !pollUntil([&] { return resets() > before; }, updateLimitMs, 1))
            return -1;
        const double taken = Measuring::steadyMs() - start;
        const bool isWhole = cli.burned() == cli.image();
        if (!cli.bus.waitForDevice(cli.model(), QStringLiteral("application")))
            return -1;
        cli.bus.killProgram();
        return isWhole ? taken : -1;
    }
    Launch cliLaunch() const
    {
        return cli.program.launch({QStringLiteral("update"), QStringLiteral("--json")});
    }
    Launch windowLaunch() const { return window.launch({QStringLiteral("TessilonixUpDate"), cli.model()}); }

private:
    int resets() { return cli.bus.device(cli.model()).value(QLatin1String("resets")).toInt(); }

    CliScenario cli{QStringLiteral("DevMaa")};
    StagedProgram window;
    NginxServer server;
    XvfbSession display;
};

} // namespace

QString Subjects::cliStart(BenchContext &context)
{
    const QString peer = Measuring::program("quillmarsh-bench-console");
    const QList<QStringList> commands{{BuildPaths::commandLineProgram(), QStringLiteral("list")},
                                      {peer},
                                      {Measuring::program("quillmarsh-bench-console-network")}};
    QVector<double> figures[3];
    // The first start of each program fills the disk's cache and does not count.
    for (int round = -1; round < context.rounds * startsPerRound; ++round) {
        for (int which = 0; which < 3; ++which) {
            const double taken = firstLineMs(commands.at(which));
            if (taken < 0)
                return commands.at(which).join(QLatin1Char(' ')) + QStringLiteral(" has failed");
            if (round >= 0)
                figures[which].append(taken);
        }
    }
    const char *const names[] = {"ours", "empty console program", "the same with network access"};
    double medians[3] = {};
    for (int which = 0; which < 3; ++which) {
        context.results.addFigures(QStringLiteral("cli-start/%1 ms").arg(QLatin1String(names[which])),
                                   figures[which]);
        medians[which] = Measuring::median(figures[which]);
    }
    const double ratio = medians[0] / medians[1];
    context.results.add({QStringLiteral("quillmarsh-cli list: start to first line"),
                         Measuring::milliseconds(medians[0]),
                         QStringLiteral("empty console program %1 (with network access %2)")
                             .arg(Measuring::milliseconds(medians[1]), Measuring::milliseconds(medians[2])),
                         Measuring::times(ratio), QStringLiteral("<= 1.5 x"), ratio <= 1.5});
    return QString();
}

QString Subjects::cliUpdate(BenchContext &context)
{
    UpdateBench bench;
    const QString problem = bench.start();
    if (!problem.isEmpty())
        return problem;
    QVector<double> ours;
    QVector<double> windows;
    for (int round = 0; round < context.rounds; ++round) {
        ours.append(bench.update(bench.cliLaunch()));
        windows.append(bench.update(bench.windowLaunch()));
        if (ours.last() < 0 || windows.last() < 0)
            return QStringLiteral("the device was not updated");
    }
    context.results.addFigures(QStringLiteral("cli-update/ours ms"), ours);
    context.results.addFigures(QStringLiteral("cli-update/window ms"), windows);
    const double ratio = Measuring::median(ours) / Measuring::median(windows);
    context.results.add(
        {QStringLiteral("quillmarsh-cli update: start to restarted device, 1 MiB over loopback"),
         Measuring::milliseconds(Measuring::median(ours)),
         QStringLiteral("window, started for the model %1")
             .arg(Measuring::milliseconds(Measuring::median(windows))),
         Measuring::times(ratio), QStringLiteral("<= 1.0 x"), ratio <= 1.0});
    return QString();
}
