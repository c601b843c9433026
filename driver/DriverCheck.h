#pragma once

#include "driver/DriverLog.h"

#include <QString>

namespace DriverCheck {

/// Makes sure that the system has what it takes to reach a device in its bootloader. On Windows that
/// is a kernel driver, which is installed from the package in `applicationDir` when it is not
/// running: this may take a minute, in which an event loop runs. Elsewhere no driver is needed.
/// GUI thread.
void run(const QString &applicationDir, DriverLog &log);

} // namespace DriverCheck
