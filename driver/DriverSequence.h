#pragma once

#include "driver/DriverLog.h"
#include "driver/DriverSystem.h"

#include <QString>

/// Installs and starts the libusbK driver, which the program needs to reach a bootloader. Runs on the calling
/// thread, with a local event loop while a tool runs. A failed step is logged and the next one is still
/// tried. Steps that change the system fail without administrator rights. Once the program is leaving, no
/// further step begins.
void runDriverSequence(const QString &applicationDir, DriverSystem &system, DriverLog &log);
