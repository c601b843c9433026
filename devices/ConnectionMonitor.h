#pragma once

#include "devices/ChosenDevice.h"
#include "devices/ConnectionState.h"
#include "devices/DescriptorDump.h"
#include "devices/hid/HidPort.h"
#include "devices/models/ModelTable.h"
#include "devices/usb/UsbBus.h"
#include "devices/usb/UsbScan.h"
#include "support/log/Reporter.h"
#include "support/process/LaunchOptions.h"

#include <QString>

#include <optional>

/// The result of one monitor tick. The main widget applies the members in their order.
struct MonitorOutcome
{
    ConnectionState state = ConnectionState::Nothing;
    /// The chosen device from now on; unchanged while a bootloader is connected.
    ChosenDevice device;
    bool bootloaderPresent = false;
    /// The IAP panel's new ids; also set for a device that the control list switches off.
    std::optional<IapIds> iapIds;
    /// Whether to update the device-model label; a bootloader leaves it unchanged.
    bool setDeviceModel = false;
    /// Whether to press the start button: an automatic launch mode has found its device.
    bool pressStart = false;
    /// Whether to reset the IAP panel's settings to those for a USB device.
    bool prepareIapPanel = false;
};

/// Determines once a second which device is connected. It keeps no state between ticks: the caller stores the
/// chosen device. GUI thread only.
class ConnectionMonitor
{
public:
    /// What the monitor uses; the references must outlive it.
    struct Dependencies
    {
        UsbBus &usb;
        HidPort &hid;
        Reporter &reporter;
        DescriptorDump::StandardOutput standardOutput;
        /// Path of the controlled-device list, which is read on every tick.
        QString listPath;
        /// Paths of the logs that the scans append to.
        QString interfaceLogPath;
        QString updateLogPath;
    };

    ConnectionMonitor(Dependencies dependencies, LaunchOptions options);

    /// Scans the buses once. `current` is the device chosen so far.
    MonitorOutcome tick(const ChosenDevice &current);

    /// Looks for a known device and, for models that need it, opens its HID interface. Sets `iapIds` for a
    /// model whose ids go to the IAP panel. With `dumpDescriptors`, appends every examined descriptor to the
    /// update log. Returns whether a device was found; otherwise `device` is unchanged.
    bool scanUsb(ChosenDevice &device, std::optional<IapIds> &iapIds, bool dumpDescriptors);

private:
    UsbBus::Listing list();
    int countBootloaders();
    MonitorOutcome reportBootloaders(int count, const ChosenDevice &current);

    Dependencies m_dependencies;
    LaunchOptions m_options;
    ModelTable m_table;
};
