#pragma once

#include "driver/DriverSystem.h"

#include <QString>
#include <QStringList>

#include <optional>

/// What can be seen of the libusbK driver without changing the system. Whether this user may install it
/// shows only in trying.
struct DriverState
{
    /// Nothing if the system does not list its drivers.
    std::optional<bool> running;
    /// Files of the driver package that are not beside the program.
    QStringList missingFiles;

    /// Looks at `system`. May be called from any thread.
    static DriverState of(DriverSystem &system);
    /// Looks at this system; nothing where no driver is needed. May be called from any
    /// thread.
    static std::optional<DriverState> ofThisSystem();
};
