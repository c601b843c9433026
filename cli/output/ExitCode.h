#pragma once

#include "checks/Finding.h"
#include "session/UpdateResult.h"

/// The exit codes of the program. Companions rely on these numbers.
enum class ExitCode : int {
    Done = 0,
    UpdateFailed = 1, ///< The device may need another update.
    Usage = 2,
    NoDevice = 3,         ///< No matching device appeared in time.
    FirmwareUnusable = 4, ///< The firmware did not arrive or is not the promised one. Device untouched.
    NotPrepared = 5,      ///< A tool, a right or a folder is missing. Device untouched.
    AnotherCopy = 6,      ///< Another copy of the program is updating a device.
    Interrupted = 130,    ///< Device untouched.
};

/// Returns the exit code for the end of an update.
ExitCode exitCodeOf(const UpdateResult &result);

/// Returns `problemCode` if one of the findings is a problem, else ExitCode::Done.
ExitCode exitCodeOf(const QVector<Finding> &findings, ExitCode problemCode);
