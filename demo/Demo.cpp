#include "demo/AutomaticReplay.h"
#include "demo/AutomaticUpdate.h"
#include "demo/CliDemo.h"
#include "demo/DemoScenario.h"

#include <QCoreApplication>
#include <QDir>
#include <QTextStream>
#include <QThread>

namespace {

QTextStream &out()
{
    static QTextStream stream(stdout);
    return stream;
}

const char *instructionsFor(const DemoOptions &options)
{
    if (options.isLaunchMode())
        return "The window is open and updates the device without you. Close the window when you are done.\n";
    if (!options.report.isEmpty())
        return "The window is open and shows the devices of the report. Press its start button to try an "
               "update,\n"
               "and close the window when you are done.\n";
    if (options.throughIapPanel)
        return "The window is open: tick \"IAPSet\" to see the IAP panel, press the start button, and close "
               "the\n"
               "window when you are done.\n";
    if (options.inBootloader && options.localFile.isEmpty())
        return "The window is open: press its start button, choose the model of the device, and close the "
               "window\n"
               "when you are done.\n";
    return "The window is open: press its start button, and close the window when you are done.\n";
}

/// Leaves the window to the user and waits until it is closed.
bool waitForUser(DemoScenario &scenario)
{
    out() << instructionsFor(scenario.options());
    out().flush();
    while (scenario.bus.programState().running)
        QThread::msleep(200);
    out() << "\n== Log\n" << scenario.program.updateLog();
    return scenario.bus.programState().exitCode == 0;
}

} // namespace

int main(int argc, char *argv[])
{
    const QCoreApplication application(argc, argv);
    const DemoOptions options = DemoOptions::read(QCoreApplication::arguments());
    if (options.withoutWindow)
        return CliDemo(options).run() ? 0 : 1;
    QDir().mkpath(options.pictures);

    DemoScenario scenario(options);
    if (!scenario.open()) {
        out() << scenario.failure() << '\n';
        return 1;
    }
    bool succeeded = false;
    if (!options.automatic)
        succeeded = waitForUser(scenario);
    else
        succeeded = options.report.isEmpty() ? runAutomaticUpdate(scenario) : runAutomaticReplay(scenario);
    if (options.automatic)
        scenario.closeWindow();
    return succeeded ? 0 : 1;
}
