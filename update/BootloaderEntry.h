#pragma once

#include "devices/ChosenDevice.h"
#include "devices/HidPort.h"
#include "support/Reporter.h"
#include "update/UpdateModeReport.h"

/// Tells `device` to restart into its bootloader: one update-mode report, written once. Returns
/// whether the write reported more than zero bytes; whether the device really came back as the
/// bootloader is for the caller to see. Stops the device check first, so that nothing else opens
/// the device meanwhile; the caller starts it again. Runs on the update's thread.
bool sendUpdateModeReport(const ChosenDevice &device, HidPort &port, ReportLayout layout, Reporter &reporter);
