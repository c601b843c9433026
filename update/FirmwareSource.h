#pragma once

#include "session/UpdateResult.h"
#include "update/UpdateRequest.h"

#include <QJsonObject>
#include <QString>

/// The source of the image if the user has not chosen a file. An object is used for one run.
class FirmwareSource
{
public:
    virtual ~FirmwareSource() = default;

    /// Obtains the image for `request` and returns its path. Reports a failure and returns an empty string;
    /// failure() then returns the reason. Sets `*manifest` to the root object of the manifest, if it could be
    /// read.
    virtual QString fetchFirmware(const UpdateRequest &request, QJsonObject *manifest) = 0;

    /// Returns why fetchFirmware() returned an empty string.
    virtual UpdateReason failure() const = 0;

    /// Returns the manifest's key for the device: its model name, or the name that the user picked for a
    /// device that already waits in its bootloader.
    virtual QString deviceKey() const = 0;
};
