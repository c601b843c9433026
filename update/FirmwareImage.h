#pragma once

#include <QString>

/// A firmware image that may be written to a device.
struct FirmwareImage
{
    enum class Origin {
        Default, ///< found in the program's "/qmake" folder, or the path of that folder if it has no image
        User,    ///< picked in the file dialog
        Server,  ///< downloaded
    };

    QString path;
    Origin origin = Origin::Default;
    /// Whether its checksum is equal to the one in the manifest.
    bool checked = false;
    /// The model that the server's image is for; empty for the other origins.
    QString model;
};
