#pragma once

#include <QString>
#include <QVector>

/// The device files that the system has for USB devices and for HID interfaces.
namespace DeviceFiles {

struct DeviceFile
{
    QString path;
    quint32 vendorId = 0;
    quint32 productId = 0;
};

/// First those of USB devices, then those of HID interfaces, each by name. `root` is the folder that
/// holds "sys"; the paths of the files begin with "/dev" all the same.
QVector<DeviceFile> list(const QString &root = QString());

/// Whether the file is there, but not for this user to read and write. Does not open it.
bool isRefused(const QString &path);

} // namespace DeviceFiles
