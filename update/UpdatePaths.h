#pragma once

#include <QString>
#include <QStringList>

/// Where an update finds its tools and keeps its files; fixed at start-up.
struct UpdatePaths
{
    /// The program's own folder; it holds "/qmake".
    QString applicationDir;
    /// The program's folder below the system's temporary directory; "/qmake" and "/tmp" lie in it.
    QString temporaryFolder;
    QString usbFlasher;
    QString hidFlasher;
    /// Address of the firmware manifest.
    QString manifestUrl;
    /// Where the manifest is stored.
    QString savedManifest;
    /// The keys of which one must have signed an image; see firmwareKeys().
    QStringList firmwareKeys;

    QString downloadedImage() const { return temporaryFolder + QLatin1String("/tmp/dev.img"); }
    QString downloadedIapImage() const { return temporaryFolder + QLatin1String("/tmp/dev.bin"); }
};
