#include "driver/DriverCheck.h"

#include "driver/DriverSequence.h"
#include "driver/WindowsDriverSystem.h"

void DriverCheck::run(const QString &applicationDir, DriverLog &log)
{
    WindowsDriverSystem system;
    runDriverSequence(applicationDir, system, log);
}
