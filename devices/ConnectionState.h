#pragma once

#include "devices/ChosenDevice.h"
#include "support/TranslatableText.h"
#include "support/process/LaunchOptions.h"

/// The result of scanning the buses.
enum class ConnectionState {
    OneBootloader,
    SeveralBootloaders,
    /// A launch mode has found its device, and the update starts by itself.
    DeviceStartsItself,
    Device,
    IapDevice,
    Nothing
};

/// The text and the colour in which the status label shows a state.
struct ConnectionStatus
{
    TranslatableText text;
    /// A UTF-8 literal with static storage.
    const char *styleSheet;
};

ConnectionStatus statusOf(ConnectionState state);

/// Returns the state when no bootloader is connected. `inList` says whether the controlled-device list
/// switches the device on; it counts in normal mode only.
ConnectionState stateOf(const ChosenDevice &device, const LaunchOptions &options, bool inList);
