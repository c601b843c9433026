#include "devices/RefusedDevice.h"

#include "devices/DeviceFiles_linux.h"

QString findRefusedDeviceFile(const std::function<bool(quint32, quint32)> &isOurs)
{
    const QVector<DeviceFiles::DeviceFile> files = DeviceFiles::list();
    for (const DeviceFiles::DeviceFile &file : files) {
        if (isOurs(file.vendorId, file.productId) && DeviceFiles::isRefused(file.path))
            return file.path;
    }
    return QString();
}
