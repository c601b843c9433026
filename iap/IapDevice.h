#pragma once

#include <QtGlobal>

/// The properties of the chosen device that the IAP programmer needs.
struct IapDevice
{
    /// Whether the device is programmed through the IAP programmer.
    bool isIap = false;
    quint32 productId = 0;
    quint32 vendorId = 0;
};
