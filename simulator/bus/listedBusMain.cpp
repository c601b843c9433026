#include "simulator/bus/BusController.h"
#include "simulator/bus/ListedBus.h"
#include "simulator/lifetime/EndOnRequest.h"

#include <QCoreApplication>

int main(int argc, char *argv[])
{
    const QCoreApplication application(argc, argv);
    const EndOnRequest end;
    const std::optional<BusDescription> description = BusController::readDescription();
    if (!description)
        return 2;
    ListedBus presenter(description->rootHub);
    return BusController::serve(*description, presenter, {}, [&presenter](const QJsonObject &request) {
        return presenter.perform(request);
    });
}
