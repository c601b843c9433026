#pragma once

#include "driver/DriverLog.h"

#include <QString>

namespace DriverCheck {

/// Makes sure that the system can communicate with a device in its bootloader. On Windows this needs a kernel
/// driver, which is installed from the package in `applicationDir` if it is not running. The installation may
/// take a minute and runs a local event loop. Other systems do not need a driver. GUI thread only.
void run(const QString &applicationDir, DriverLog &log);

} // namespace DriverCheck
