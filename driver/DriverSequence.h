#pragma once

#include "driver/DriverLog.h"
#include "driver/DriverSystem.h"

#include <QString>

/// Installs and starts the libusbK driver, which the program needs to communicate with a bootloader. Runs on
/// the calling thread, with a local event loop while a tool runs. If a step fails, it is logged and the next
/// step follows. Steps that change the system fail without administrator rights. No further step begins once
/// the program is shutting down.
void runDriverSequence(const QString &applicationDir, DriverSystem &system, DriverLog &log);
