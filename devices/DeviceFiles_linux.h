#pragma once

#include <QString>
#include <QVector>

/// The system's device files of USB devices and HID interfaces.
namespace DeviceFiles {

struct DeviceFile
{
    QString path;
    quint32 vendorId = 0;
    quint32 productId = 0;
};

/// Returns the files of USB devices, then those of HID interfaces, each sorted by the name in sysfs. `root`
/// is the folder that contains "sys"; the returned paths always begin with "/dev".
QVector<DeviceFile> list(const QString &root = QString());

/// Returns whether the file exists but this user may not both read and write it. Does not open it.
bool isRefused(const QString &path);

} // namespace DeviceFiles
