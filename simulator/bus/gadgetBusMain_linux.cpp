#include "simulator/bus/BusController.h"
#include "simulator/bus/GadgetBus_linux.h"
#include "simulator/lifetime/EndOnRequest.h"

#include <QCoreApplication>

int main(int argc, char *argv[])
{
    const QCoreApplication application(argc, argv);
    const EndOnRequest end;
    const std::optional<BusDescription> description = BusController::readDescription();
    if (!description)
        return 2;
    GadgetBus presenter;
    if (!presenter.startError().isEmpty())
        return BusController::fail(presenter.startError());
    return BusController::serve(*description, presenter, {});
}
