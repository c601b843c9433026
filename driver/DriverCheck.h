#pragma once

#include "driver/DriverLog.h"

#include <QString>

namespace DriverCheck {

/// Makes sure that the system can reach a device in its bootloader. On Windows this needs a kernel driver,
/// which is installed from the package in `applicationDir` if it is not running. The installation may take a
/// minute, with a local event loop. Other systems need no driver. GUI thread.
void run(const QString &applicationDir, DriverLog &log);

} // namespace DriverCheck
