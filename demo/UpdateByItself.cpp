#include "demo/UpdateByItself.h"

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

/// The panel, set up for the device: before that is done, a press of Start would do nothing.
bool showTheIapPanel(DemoScenario &s)
{
    const QString panel = QStringLiteral("iapPanel");
    return s.probe.check(QStringLiteral("iapBox")) && s.probe.waitForVisible(panel, true, windowLimitMs) &&
           s.probe.waitForText(QStringLiteral("iapPortName"), s.model(), windowLimitMs);
}

/// The window as a person finds it; in a launch mode before it has seen the device.
bool showTheBeginning(DemoScenario &s)
{
    const bool shown =
        s.options().isLaunchMode() ? s.probe.waitForVisible(connection, true, windowLimitMs)
        : s.options().inBootloader
            ? s.probe.waitForText(connection, QStringLiteral("ootloader"), windowLimitMs)
            : s.probe.waitForText(QStringLiteral("deviceModelLabel"), s.model(), windowLimitMs);
    const bool complete = shown && (!s.options().throughIapPanel || showTheIapPanel(s));
    takePicture(s, "before.png");
    return complete;
}

bool pickTheModel(DemoScenario &s)
{
    if (!s.probe.waitForVisible(chooser, true, windowLimitMs))
        return false;
    takePicture(s, "chooser.png");
    return s.probe.click(QLatin1String("choose ") + s.model());
}

/// Does what a person does; a launch mode needs nobody.
bool setItGoing(DemoScenario &s)
{
    if (s.options().isLaunchMode())
        return true;
    if (!s.probe.click(startButton))
        return false;
    return !s.options().inBootloader || !s.options().localFile.isEmpty() || pickTheModel(s);
}

bool isOver(DemoScenario &s)
{
    const QString title = s.probe.text(stateTitle);
    const bool told = title == s.successTitle() || title.contains(QLatin1String("ailed")) ||
                      title.contains(QStringLiteral("失败"));
    const bool ended = s.options().isLaunchMode()
                           ? s.program.updateLog().contains(QLatin1String("Burn Program Done"))
                           : s.probe.isEnabled(startButton);
    return (told && ended) || !s.bus.programState().running;
}

/// Tells how it ended, and whether that is as it should be.
bool report(DemoScenario &s)
{
    const QString title = s.probe.text(stateTitle);
    const QByteArray burned = s.burned();
    const bool sameBytes = burned == s.rightImage();
    QTextStream out(stdout);
    out << "\n== Log\n" << s.program.updateLog() << "\n== Result\n";
    out << "The device received " << burned.size() << " bytes, " << (sameBytes ? "the same as" : "other than")
        << (s.options().localFile.isEmpty() ? " the server's " : " the file's ") << s.rightImage().size()
        << ".\n";
    out << "Pictures: " << QDir(s.options().pictures).absolutePath() << '\n';
    out << "Title: " << title << '\n';
    return sameBytes && title == s.successTitle();
}

} // namespace

bool updateByItself(DemoScenario &scenario)
{
    if (!showTheBeginning(scenario) || !setItGoing(scenario)) {
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
