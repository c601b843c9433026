#include "demo/CliDemo.h"
#include "demo/DemoScenario.h"
#include "demo/ReplayByItself.h"
#include "demo/UpdateByItself.h"

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

const char *whatToDo(const DemoOptions &options)
{
    if (options.isLaunchMode())
        return "The window is open: it updates the device by itself. Close it when you have seen enough.\n";
    if (!options.report.isEmpty())
        return "The window is open on the devices of the report. Look at it, press its start button to try "
               "an "
               "update,\nand close it when you have seen enough.\n";
    if (options.throughIapPanel)
        return "The window is open: tick \"IAPSet\" to see the IAP panel, press the start button, and close "
               "the\n"
               "window when you have seen enough.\n";
    if (options.inBootloader && options.localFile.isEmpty())
        return "The window is open: press its start button, say which model it is, and close the window\n"
               "when you have seen enough.\n";
    return "The window is open: press its start button, and close it when you have seen enough.\n";
}

/// Leaves the window to the person and waits until they close it.
bool watchAPerson(DemoScenario &scenario)
{
    out() << whatToDo(scenario.options());
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
    bool well = false;
    if (!options.automatic)
        well = watchAPerson(scenario);
    else
        well = options.report.isEmpty() ? updateByItself(scenario) : replayByItself(scenario);
    if (options.automatic)
        scenario.closeWindow();
    return well ? 0 : 1;
}
