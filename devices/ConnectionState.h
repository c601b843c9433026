#pragma once

#include "devices/ChosenDevice.h"
#include "support/BilingualText.h"
#include "support/LaunchOptions.h"

/// What a look at the buses found.
enum class ConnectionState {
    OneBootloader,
    SeveralBootloaders,
    /// An automatic launch mode found its device, and the update is to start by itself.
    DeviceStartsItself,
    Device,
    IapDevice,
    Nothing
};

/// How a state is shown in the status label.
struct ConnectionStatus
{
    BilingualText text;
    /// UTF-8 with static storage.
    const char *styleSheet;
};

ConnectionStatus statusOf(ConnectionState state);

/// The state without a bootloader on the bus. `inList`: whether the controlled-device list switches
/// the device on, which counts in normal mode only.
ConnectionState stateOf(const ChosenDevice &device, const LaunchOptions &options, bool inList);
