#pragma once

#include "devices/ChosenDevice.h"
#include "devices/models/ModelTable.h"
#include "devices/usb/UsbBus.h"
#include "support/process/LaunchOptions.h"

#include <optional>

/// The ids that are passed to the IAP panel.
struct IapIds
{
    quint32 vendorId = 0;
    quint32 productId = 0;
};

/// The result of scanning one listing.
struct UsbScanResult
{
    bool found = false;
    /// The chosen device after the scan; the earlier one if nothing was found.
    ChosenDevice device;
    /// Set for models whose ids are passed to the IAP panel.
    std::optional<IapIds> iapIds;
    /// Whether to search for the HID interface of the device.
    bool hidScanWanted = false;
    /// The number of examined descriptors: all up to the first match.
    int examined = 0;
};

/// Chooses the first device in bus order that is in the table and that the launch mode accepts. Only normal
/// mode copies the IAP flag and sets `iapIds`; ZN58 mode does not change the HID-path flag.
UsbScanResult scanListing(const UsbBus::Listing &listing, const ModelTable &table,
                          const LaunchOptions &options, const ChosenDevice &previous);
