#include "harness/session/BusControllerCommand.h"

#include "harness/BuildPaths.h"

QStringList busControllerCommand(const QString &file, BusFile kind)
{
    // Without a wrapper: there is no preloading here that it could arrange.
    return QStringList{BuildPaths::listedBusController()} + busControllerArguments(file, kind);
}
