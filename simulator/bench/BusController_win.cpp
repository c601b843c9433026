#include "simulator/bench/BusController.h"

#include "simulator/bench/BenchPaths.h"

QStringList busControllerCommand(const QString &descriptionFile)
{
    // Without a wrapper: there is no preloading here that it could arrange.
    return {BenchPaths::listedBusController(), QStringLiteral("--description"), descriptionFile};
}
