#pragma once

#include "session/UpdateResult.h"
#include "update/UpdateRequest.h"

#include <QJsonObject>
#include <QString>

/// Where the workflow gets an image from when the user chose no file. One object serves one run.
class FirmwareSource
{
public:
    virtual ~FirmwareSource() = default;

    /// Obtains the image for `request` and returns its path. After a failure, which it has reported, returns
    /// an empty string; failure() tells the reason. `*manifest` becomes the manifest's root object as far as
    /// it was read.
    virtual QString fetchFirmware(const UpdateRequest &request, QJsonObject *manifest) = 0;

    /// Returns why fetchFirmware() returned an empty string.
    virtual UpdateReason failure() const = 0;

    /// The manifest's key for the device: its model name, or the name that the user picked for a
    /// device that already sits in its bootloader.
    virtual QString deviceKey() const = 0;
};
