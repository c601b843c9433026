#include "harness/session/BusControllerCommand.h"

#include "harness/BuildPaths.h"

QStringList busControllerCommand(const QString &descriptionFile)
{
    // Without a wrapper script, because nothing has to be preloaded on Windows.
    return {BuildPaths::listedBusController(), QStringLiteral("--description"), descriptionFile};
}
