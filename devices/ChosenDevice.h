#pragma once

#include "devices/HidPort.h"

#include <QString>

#include <memory>

/// The device that the next update acts on. It is kept while the device sits in its bootloader.
struct ChosenDevice
{
    /// Model name of the matched table row; empty means no device.
    QString name;
    quint32 vendorId = 0;
    quint32 productId = 0;
    /// Updated through the IAP programmer. Copied from the row in normal mode only.
    quint8 iapFlag = 0;
    /// Accepts the update-mode report on its second HID interface only.
    quint8 hidPathFlag = 0;
    /// That interface; null until it was found. Shared, so that a write in progress keeps it open.
    std::shared_ptr<HidDevice> hidHandle;

    /// Forgets which device it is. Flags and handle stay as they are.
    void clear()
    {
        name.clear();
        vendorId = 0;
        productId = 0;
    }
};
