#pragma once

#include "devices/ChosenDevice.h"
#include "devices/hid/HidPort.h"
#include "support/log/Reporter.h"
#include "update/UpdateModeReport.h"

/// Restarts `device` into its bootloader by writing one update-mode report. Returns whether more than zero
/// bytes were written; the caller must check whether the bootloader really appears. Stops the device check
/// first, so that nothing else opens the device meanwhile; the caller starts it again. Runs on the update's
/// thread.
bool sendUpdateModeReport(const ChosenDevice &device, HidPort &port, ReportLayout layout, Reporter &reporter);
