#include "driver/RefusedDevice.h"

#include "driver/DeviceFiles_linux.h"

QString refusedDeviceFile(const std::function<bool(quint32, quint32)> &isOurs)
{
    const QVector<DeviceFiles::DeviceFile> files = DeviceFiles::list();
    for (const DeviceFiles::DeviceFile &file : files) {
        if (isOurs(file.vendorId, file.productId) && DeviceFiles::isRefused(file.path))
            return file.path;
    }
    return QString();
}
