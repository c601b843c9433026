#pragma once

#include <QString>
#include <QStringList>

/// The paths of an update's tools and files. They do not change after start-up.
struct UpdatePaths
{
    /// The folder of the program; it contains "/qmake".
    QString applicationDir;
    /// The program's folder in the system's temporary directory; it contains "/qmake" and "/tmp".
    QString temporaryFolder;
    QString usbFlasher;
    QString hidFlasher;
    /// The address of the firmware manifest.
    QString manifestUrl;
    /// The file in which the manifest is stored.
    QString savedManifest;
    /// The keys, with one of which an image must be signed; see firmwareKeys().
    QStringList firmwareKeys;

    QString downloadedImage() const { return temporaryFolder + QLatin1String("/tmp/dev.img"); }
    QString downloadedIapImage() const { return temporaryFolder + QLatin1String("/tmp/dev.bin"); }
};
