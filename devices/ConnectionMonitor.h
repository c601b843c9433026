#pragma once

#include "devices/ChosenDevice.h"
#include "devices/ConnectionState.h"
#include "devices/DescriptorDump.h"
#include "devices/HidPort.h"
#include "devices/ModelTable.h"
#include "devices/UsbBus.h"
#include "devices/UsbScan.h"
#include "support/LaunchOptions.h"
#include "support/Reporter.h"

#include <QString>

#include <optional>

/// What one look at the buses found and what the window is to do about it, in the order of the
/// members.
struct MonitorOutcome
{
    ConnectionState state = ConnectionState::Nothing;
    /// The chosen device from now on; while a bootloader is there, the one from before.
    ChosenDevice device;
    bool bootloaderPresent = false;
    /// For the IAP panel; set also for a device that is switched off.
    std::optional<IapIds> iapIds;
    /// Whether the device-model label is to be set; a bootloader leaves it as it is.
    bool setDeviceModel = false;
    bool pressStart = false;
    /// Port type "USB", the second selector's first entry, the check button checked.
    bool prepareIapPanel = false;
};

/// Decides once a second what the program is connected to. It keeps nothing between the ticks: the
/// chosen device goes in and comes out. GUI thread.
class ConnectionMonitor
{
public:
    /// What the monitor uses must outlive it.
    struct Surroundings
    {
        UsbBus &usb;
        HidPort &hid;
        Reporter &reporter;
        DescriptorDump::StandardOutput standardOutput;
        /// The controlled-device list; read on every tick.
        QString listPath;
        /// The logs that the scans add to.
        QString interfaceLogPath;
        QString updateLogPath;
    };

    ConnectionMonitor(Surroundings surroundings, LaunchOptions options);

    MonitorOutcome tick(const ChosenDevice &current);

    /// Looks for a device and, where it needs that, for its HID interface. A model that hands its
    /// ids to the IAP panel sets `iapIds`. With `dumpDescriptors`, every descriptor looked at also
    /// goes to the update log. Returns whether a device was chosen; without one, `device` stays.
    bool scanUsb(ChosenDevice &device, std::optional<IapIds> &iapIds, bool dumpDescriptors);

private:
    UsbBus::Listing list();
    int countBootloaders();
    MonitorOutcome reportBootloaders(int count, const ChosenDevice &current);

    Surroundings m_surroundings;
    LaunchOptions m_options;
    ModelTable m_table;
};
