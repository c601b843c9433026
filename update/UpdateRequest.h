#pragma once

#include "devices/ChosenDevice.h"
#include "update/FirmwareImage.h"

#include <QString>

/// The device and the image of an update, at the time when the user started it.
struct UpdateRequest
{
    ChosenDevice device;
    /// Whether a device waits in its bootloader. Its model is then unknown: `device` is the one that was
    /// connected before and may be a different one.
    bool inBootloader = false;
    bool localFileMode = false;
    /// The image to burn in local-file mode.
    FirmwareImage image;
    /// The model of the device in its bootloader, if it was specified beforehand; otherwise empty.
    QString namedModel;
    /// Whether a local image without a signature is refused.
    bool requireSignature = false;

    /// Returns the model to update, if it is known before the user is asked.
    QString model() const { return inBootloader ? namedModel : device.name; }

    /// Returns whether the IAP programmer writes the image. A device in its bootloader is always written by a
    /// flasher, whatever was connected before.
    bool isIap() const { return !inBootloader && !device.name.isEmpty() && device.iapFlag != 0; }
};
