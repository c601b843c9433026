#pragma once

#include <QString>

/// A firmware image that may be written to a device.
struct FirmwareImage
{
    enum class Origin {
        Default, ///< found in the program's "/qmake" folder, or that folder's name where it holds none
        User,    ///< picked in the file dialog
        Server,  ///< downloaded
    };

    QString path;
    Origin origin = Origin::Default;
    /// Whether its checksum was compared with the manifest's, and was right.
    bool checked = false;
    /// The model that the server's image is for; empty for the other origins.
    QString model;
};
