#include "demo/AutomaticUpdate.h"

#include "demo/DemoScenario.h"
#include "demo/Pictures.h"
#include "harness/process/Polling.h"

#include <QDir>
#include <QTextStream>

namespace {

constexpr int updateLimitMs = 60000;
constexpr int windowLimitMs = 10000;

const QString startButton = QStringLiteral("startButton");
const QString stateTitle = QStringLiteral("stateTitleLabel");
const QString connection = QStringLiteral("statusLabel");
const QString chooser = QStringLiteral("firmwareChooser");

/// Opens the IAP panel and waits until it is set up for the device. Before that, a press of Start does
/// nothing.
bool showIapPanel(DemoScenario &s)
{
    const QString panel = QStringLiteral("iapPanel");
    return s.probe.check(QStringLiteral("iapBox")) && s.probe.waitForVisible(panel, true, windowLimitMs) &&
           s.probe.waitForText(QStringLiteral("iapPortName"), s.model(), windowLimitMs);
}

/// Waits until the window shows the device and takes a screenshot. In a launch mode it does not wait for the
/// device, because the update begins as soon as the device is seen.
bool waitForWindow(DemoScenario &s)
{
    const bool shown =
        s.options().isLaunchMode() ? s.probe.waitForVisible(connection, true, windowLimitMs)
        : s.options().inBootloader
            ? s.probe.waitForText(connection, QStringLiteral("ootloader"), windowLimitMs)
            : s.probe.waitForText(QStringLiteral("deviceModelLabel"), s.model(), windowLimitMs);
    const bool complete = shown && (!s.options().throughIapPanel || showIapPanel(s));
    takePicture(s, "before.png");
    return complete;
}

bool chooseModel(DemoScenario &s)
{
    if (!s.probe.waitForVisible(chooser, true, windowLimitMs))
        return false;
    takePicture(s, "chooser.png");
    return s.probe.click(QLatin1String("choose ") + s.model());
}

/// Does what a user does to start the update; in a launch mode, nothing.
bool startUpdate(DemoScenario &s)
{
    if (s.options().isLaunchMode())
        return true;
    if (!s.probe.click(startButton))
        return false;
    return !s.options().inBootloader || !s.options().localFile.isEmpty() || chooseModel(s);
}

bool isOver(DemoScenario &s)
{
    const QString title = s.probe.text(stateTitle);
    const bool hasResult = title == s.successTitle() || title.contains(QLatin1String("ailed")) ||
                           title.contains(QStringLiteral("失败"));
    const bool ended = s.options().isLaunchMode()
                           ? s.program.updateLog().contains(QLatin1String("Burn Program Done"))
                           : s.probe.isEnabled(startButton);
    return (hasResult && ended) || !s.bus.programState().running;
}

/// Prints the result and returns whether it is the expected one.
bool report(DemoScenario &s)
{
    const QString title = s.probe.text(stateTitle);
    const QByteArray burned = s.burned();
    const bool sameBytes = burned == s.expectedImage();
    QTextStream out(stdout);
    out << "\n== Log\n" << s.program.updateLog() << "\n== Result\n";
    out << "The device received " << burned.size() << " bytes, " << (sameBytes ? "the same as" : "other than")
        << (s.options().localFile.isEmpty() ? " the server's " : " the file's ") << s.expectedImage().size()
        << ".\n";
    out << "Screenshots: " << QDir(s.options().pictures).absolutePath() << '\n';
    out << "Title: " << title << '\n';
    return sameBytes && title == s.successTitle();
}

} // namespace

bool runAutomaticUpdate(DemoScenario &scenario)
{
    if (!waitForWindow(scenario) || !startUpdate(scenario)) {
        QTextStream(stdout) << scenario.failure() << '\n';
        return false;
    }
    if (scenario.probe.waitForValue(QStringLiteral("progressBar"), QStringLiteral("value"), 48,
                                    updateLimitMs))
        takePicture(scenario, "during.png");
    pollUntil([&] { return isOver(scenario); }, updateLimitMs, 50);
    takePicture(scenario, "after.png");
    return report(scenario);
}
