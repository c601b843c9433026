#pragma once

#include "driver/DriverSystem.h"

#include <QString>
#include <QStringList>

#include <optional>

/// The state of the libusbK driver, as far as it can be found out without changing the system. Whether this
/// user may install it is not known before an attempt.
struct DriverState
{
    /// Not set if the system does not list its drivers.
    std::optional<bool> running;
    /// Files of the driver package that are not beside the program.
    QStringList missingFiles;

    /// Returns the state of the driver on `system`. May be called from any thread.
    static DriverState of(DriverSystem &system);
    /// Returns the state of the driver on this system, or nothing if it does not need one. May be called from
    /// any thread.
    static std::optional<DriverState> ofThisSystem();
};
