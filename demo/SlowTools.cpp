#include "demo/SlowTools.h"

#include "simulator/standin/StandinScript.h"

#include <QJsonArray>

using StandinScript::step;

QJsonDocument SlowTools::flasher()
{
    QJsonArray burn;
    for (const char *partition : {"spl", "env", "os", "rodata", "data"}) {
        burn.append(
            step("print", QStringLiteral("Upgrade fwc: image.target.%1\n").arg(QLatin1String(partition))));
        burn.append(step("sleepMs", 400));
    }
    burn.append(step("burn"));
    burn.append(step("success"));
    return StandinScript::script({burn, {step("reset")}});
}

QJsonDocument SlowTools::programmer()
{
    QJsonArray run;
    for (const int percent : {0, 16, 32, 48, 64, 80}) {
        run.append(step("print", QStringLiteral("SetProgress: %1\n").arg(percent)));
        run.append(step("sleepMs", 400));
    }
    run.append(step("program"));
    run.append(step("print", QStringLiteral("SetProgress: 100\n")));
    // The script is for "Start" only: to "GetData" the stand-in answers with the devices on the bus.
    return StandinScript::scriptFor(QStringLiteral("Start"), {run});
}
