#include "harness/session/BusControllerCommand.h"

#include "harness/BuildPaths.h"

QStringList busControllerCommand(const QString &file, BusFile kind)
{
    // Without a wrapper script, because nothing has to be preloaded on Windows.
    return QStringList{BuildPaths::listedBusController()} + busControllerArguments(file, kind);
}
