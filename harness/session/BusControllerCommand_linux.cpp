#include "harness/session/BusControllerCommand.h"

#include "harness/BuildPaths.h"

QStringList busControllerCommand(const QString &file, BusFile kind)
{
    return QStringList{QStringLiteral("umockdev-wrapper"), BuildPaths::busController()} +
           busControllerArguments(file, kind);
}
