#pragma once

#include "devices/hid/HidPort.h"

#include <QString>

#include <memory>

/// The device that the next update acts on. It is kept while the device is in its bootloader.
struct ChosenDevice
{
    /// The model name of the matching table row; empty if there is no device.
    QString name;
    quint32 vendorId = 0;
    quint32 productId = 0;
    /// 1 if the device is updated through the IAP programmer, else 0. Copied from the row in normal mode
    /// only.
    quint8 iapFlag = 0;
    /// 1 if the device accepts the update-mode report on one of its HID interfaces only, else 0. HidScan
    /// knows the marker in the path of that interface: the first one for some models, a later one for others.
    quint8 hidPathFlag = 0;
    /// That HID interface; null until it is found. Shared, so that a write in progress keeps it open.
    std::shared_ptr<HidDevice> hidHandle;

    /// Clears the name and the ids. Flags and handle stay as they are.
    void clear()
    {
        name.clear();
        vendorId = 0;
        productId = 0;
    }
};
