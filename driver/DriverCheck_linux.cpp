#include "driver/DriverCheck.h"

void DriverCheck::run(const QString & /*applicationDir*/, DriverLog &log)
{
    log.showLine(QStringLiteral("No driver is needed on this system."));
}
