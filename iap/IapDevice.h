#pragma once

#include <QtGlobal>

/// What the IAP programmer has to know of the chosen device.
struct IapDevice
{
    /// Whether the device is programmed through the IAP programmer.
    bool isIap = false;
    quint32 productId = 0;
    quint32 vendorId = 0;
};
