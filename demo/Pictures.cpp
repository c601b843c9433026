#include "demo/Pictures.h"

#include "demo/DemoScenario.h"

#include <QDir>

void takePicture(DemoScenario &scenario, const char *name)
{
    const DemoOptions &options = scenario.options();
    const QString path =
        scenario.program.toProgramPath(QDir(options.pictures).absoluteFilePath(QLatin1String(name)));
    // Grab the window alone under Wine, which draws frames around windows and shows wrong characters in them.
    if (options.windowsBuild.isEmpty())
        scenario.probe.grabScreen(path);
    else
        scenario.probe.grab(QStringLiteral("backgroundWidget"), path);
}
