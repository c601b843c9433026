#include "harness/session/BusControllerCommand.h"

#include "harness/BuildPaths.h"

QStringList busControllerCommand(const QString &descriptionFile)
{
    // Without a wrapper: there is no preloading here that it could arrange.
    return {BuildPaths::listedBusController(), QStringLiteral("--description"), descriptionFile};
}
