#pragma once

#include <QJsonObject>
#include <QString>

/// Where the workflow gets an image from when the user chose no file. One object serves one run.
class FirmwareSource
{
public:
    virtual ~FirmwareSource() = default;

    /// Obtains the image; returns its path, or an empty string after a failure, which it has
    /// reported and after which it has given the controls back. `*manifest` becomes the manifest's
    /// root object as far as it was read.
    virtual QString fetchFirmware(QJsonObject *manifest) = 0;

    /// The manifest's key for the device: its model name, or the name that the user picked for a
    /// device that already sits in its bootloader.
    virtual QString deviceKey() const = 0;
};
