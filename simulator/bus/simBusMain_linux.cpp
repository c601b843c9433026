#include "simulator/bus/BusController.h"
#include "simulator/bus/UmockdevBus_linux.h"
#include "simulator/lifetime/EndOnRequest.h"

#include <QCoreApplication>

int main(int argc, char *argv[])
{
    const QCoreApplication application(argc, argv);
    const EndOnRequest end;
    const std::optional<BusDescription> description = BusController::readDescription();
    if (!description)
        return 2;
    UmockdevBus presenter(description->rootHub);
    if (!presenter.startError().isEmpty())
        return BusController::fail(presenter.startError());
    // The variables set by the wrapper. Programs on the bus need them, too.
    QJsonObject environment;
    for (const char *name : {"LD_PRELOAD", "UMOCKDEV_DIR"})
        environment.insert(QLatin1String(name), qEnvironmentVariable(name));
    return BusController::serve(*description, presenter, environment);
}
