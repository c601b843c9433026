#pragma once

#include "devices/ChosenDevice.h"
#include "devices/ModelTable.h"
#include "devices/UsbBus.h"
#include "support/LaunchOptions.h"

#include <optional>

/// The ids that go to the IAP panel.
struct IapIds
{
    quint32 vendorId = 0;
    quint32 productId = 0;
};

/// What a look at one listing found.
struct UsbScanResult
{
    bool found = false;
    /// The device as it is afterwards; the earlier one when nothing was found.
    ChosenDevice device;
    /// Set for the models that hand their ids to the IAP panel.
    std::optional<IapIds> iapIds;
    /// Whether the HID interface of the device is to be looked for.
    bool hidScanWanted = false;
    /// How many descriptors were looked at: all up to the first match.
    int looked = 0;
};

/// Chooses the first device in bus order that the table knows and the launch mode accepts. What is
/// taken over depends on the mode: only normal mode copies the IAP flag and hands ids over, and
/// ZN58 mode leaves the HID-path flag as it was.
UsbScanResult scanListing(const UsbBus::Listing &listing, const ModelTable &table,
                          const LaunchOptions &options, const ChosenDevice &previous);
