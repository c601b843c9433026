#include "demo/AutomaticReplay.h"

#include "demo/DemoScenario.h"
#include "demo/Pictures.h"
#include "harness/process/Polling.h"

#include <QDir>
#include <QTextStream>

namespace {

constexpr int replayLimitMs = 60000;

const QString replayedStart = QStringLiteral("startButton");
const QString replayedTitle = QStringLiteral("stateTitleLabel");

int listings(const DemoScenario &s)
{
    return s.program.standardError().count(QLatin1String("Device List Count:"));
}

/// Waits until the window shows the result of a monitor tick that began after `before` listings. A tick lists
/// the devices once or twice.
bool waitForTick(DemoScenario &s, int before)
{
    return pollUntil([&] { return listings(s) >= before + 3 || !s.bus.programState().running; },
                     replayLimitMs, 50);
}

/// Describes which interface the window has picked for a device that needs a certain one.
QString pickedInterface(const QString &log)
{
    const int found = log.lastIndexOf(QLatin1String("find DuoDevices"));
    const int missing = log.lastIndexOf(QLatin1String("not find DuoDevices!"));
    if (found < 0)
        return QStringLiteral("no certain one is required");
    // The text of the failure contains that of the success.
    return missing >= 0 && found == missing + 4
               ? QStringLiteral("a certain one is required and was not found")
               : QStringLiteral("the required one was found");
}

void printWhatIsShown(DemoScenario &s)
{
    QTextStream out(stdout);
    out << "\n== What the window shows\n"
        << "Connection: " << s.probe.text(QStringLiteral("statusLabel")) << '\n'
        << "Model: " << s.probe.text(QStringLiteral("deviceModelLabel")) << '\n'
        << "HID interface: " << pickedInterface(s.program.updateLog()) << '\n';
    const QStringList seen = s.program.interfaceLog().split(QLatin1Char('\n'));
    QStringList printed;
    for (const QString &line : seen) {
        if (!line.isEmpty() && !printed.contains(line))
            printed.append(line);
    }
    for (const QString &line : qAsConst(printed))
        out << "  " << line << '\n';
}

/// Returns whether there is nothing more to wait for: the update has ended, the window asks for the model, or
/// the program has ended.
bool isReplayOver(DemoScenario &s)
{
    const QString title = s.probe.text(replayedTitle);
    const bool hasResult = title.contains(QLatin1String("uccessful")) ||
                           title.contains(QLatin1String("ailed")) || title.contains(QStringLiteral("失败")) ||
                           title.contains(QStringLiteral("升级成功"));
    return (hasResult && s.probe.isEnabled(replayedStart)) ||
           s.probe.isVisible(QStringLiteral("firmwareChooser")) || !s.bus.programState().running;
}

} // namespace

bool runAutomaticReplay(DemoScenario &scenario)
{
    if (!waitForTick(scenario, 0) || !scenario.bus.programState().running) {
        QTextStream(stdout) << scenario.failure() << scenario.program.standardError() << '\n';
        return false;
    }
    printWhatIsShown(scenario);
    scenario.probe.check(QStringLiteral("logBox"));
    scenario.probe.waitForVisible(QStringLiteral("logTextView"), true);
    takePicture(scenario, "before.png");
    if (!scenario.probe.click(replayedStart))
        return false;
    pollUntil([&] { return isReplayOver(scenario); }, replayLimitMs, 50);
    // Let the log show once more what the window sees, unless the update waits for an answer.
    if (scenario.probe.isEnabled(replayedStart))
        waitForTick(scenario, listings(scenario));
    takePicture(scenario, "after.png");
    QTextStream out(stdout);
    out << "\n== Log\n"
        << scenario.program.updateLog() << "\n== Result of the start button\n"
        << "Title: " << scenario.probe.text(replayedTitle) << '\n'
        << "Screenshots: " << QDir(scenario.options().pictures).absolutePath() << '\n';
    return scenario.bus.programState().running;
}
