#pragma once

#include "devices/ChosenDevice.h"
#include "support/LaunchOptions.h"
#include "support/TranslatableText.h"

/// What a scan of the buses found.
enum class ConnectionState {
    OneBootloader,
    SeveralBootloaders,
    /// An automatic launch mode has found its device: the update starts by itself.
    DeviceStartsItself,
    Device,
    IapDevice,
    Nothing
};

/// How the status label shows a state.
struct ConnectionStatus
{
    TranslatableText text;
    /// UTF-8 with static storage.
    const char *styleSheet;
};

ConnectionStatus statusOf(ConnectionState state);

/// Returns the state when no bootloader is connected. `inList` says whether the controlled-device list
/// switches the device on; it counts in normal mode only.
ConnectionState stateOf(const ChosenDevice &device, const LaunchOptions &options, bool inList);
