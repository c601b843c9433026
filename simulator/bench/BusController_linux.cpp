#include "simulator/bench/BusController.h"

#include "simulator/bench/BenchPaths.h"

QStringList busControllerCommand(const QString &descriptionFile)
{
    return {QStringLiteral("umockdev-wrapper"), BenchPaths::busController(), QStringLiteral("--description"),
            descriptionFile};
}
