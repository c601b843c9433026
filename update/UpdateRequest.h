#pragma once

#include "devices/ChosenDevice.h"
#include "update/FirmwareImage.h"

#include <QString>

/// What an update is about, as it stood when the user started it.
struct UpdateRequest
{
    ChosenDevice device;
    /// A device waited in its bootloader. It cannot say which model it is, so `device` is the one that was
    /// connected before and need not be the same.
    bool inBootloader = false;
    bool localFileMode = false;
    /// The image to burn in local-file mode.
    FirmwareImage image;
    /// The model of the device in its bootloader as somebody has named it beforehand; empty if nobody has.
    QString namedModel;
    /// Whether a local image without a signature is refused.
    bool requireSignature = false;

    /// Returns the model that is updated as far as it is known before the user is asked.
    QString model() const { return inBootloader ? namedModel : device.name; }

    /// Returns whether the IAP programmer writes the image. It never does for a device in a bootloader:
    /// that is a device for a flasher, whatever was connected before.
    bool isIap() const { return !inBootloader && !device.name.isEmpty() && device.iapFlag != 0; }
};
