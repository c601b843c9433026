#pragma once

#include "driver/DriverLog.h"
#include "driver/DriverSystem.h"

#include <QString>

/// Makes sure that the libusbK driver, through which a bootloader is reached, is there and started.
/// Runs through on the calling thread, with an event loop while a tool runs. Whatever fails is told
/// and the rest is tried all the same. What changes the system fails without administrator's rights.
void runDriverSequence(const QString &applicationDir, DriverSystem &system, DriverLog &log);
