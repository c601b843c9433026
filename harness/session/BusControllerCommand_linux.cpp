#include "harness/session/BusControllerCommand.h"

#include "harness/BuildPaths.h"

QStringList busControllerCommand(const QString &descriptionFile)
{
    return {QStringLiteral("umockdev-wrapper"), BuildPaths::busController(), QStringLiteral("--description"),
            descriptionFile};
}
