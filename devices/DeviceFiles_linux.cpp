#include "devices/DeviceFiles_linux.h"

#include <QDir>
#include <QFile>

#include <unistd.h>

#include <cerrno>

namespace {

using DeviceFiles::DeviceFile;

QByteArray contentsOf(const QString &path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll().trimmed() : QByteArray();
}

QString numberedPart(const QByteArray &decimal)
{
    return QStringLiteral("/%1").arg(decimal.toInt(), 3, 10, QLatin1Char('0'));
}

void addUsbDevice(const QString &folder, QVector<DeviceFile> &files)
{
    const auto attribute = [&folder](const char *name) {
        return contentsOf(folder + QLatin1Char('/') + QLatin1String(name));
    };
    bool isDevice = false;
    DeviceFile file;
    // The folder also lists interfaces, which have no ids of their own.
    file.vendorId = attribute("idVendor").toUInt(&isDevice, 16);
    if (!isDevice)
        return;
    file.productId = attribute("idProduct").toUInt(nullptr, 16);
    file.path = QStringLiteral("/dev/bus/usb") + numberedPart(attribute("busnum")) +
                numberedPart(attribute("devnum"));
    files.append(file);
}

void addHidInterface(const QString &folder, const QString &name, QVector<DeviceFile> &files)
{
    const QList<QByteArray> lines = contentsOf(folder + QStringLiteral("/device/uevent")).split('\n');
    for (const QByteArray &line : lines) {
        // HID_ID=0003:000033C3:00008899
        const QList<QByteArray> ids = line.mid(line.indexOf('=') + 1).split(':');
        if (line.startsWith("HID_ID=") && ids.size() == 3)
            files.append({QStringLiteral("/dev/") + name, ids.at(1).toUInt(nullptr, 16),
                          ids.at(2).toUInt(nullptr, 16)});
    }
}

QStringList entriesOf(const QString &folder)
{
    return QDir(folder).entryList(QDir::AllEntries | QDir::System | QDir::NoDotAndDotDot, QDir::Name);
}

} // namespace

QVector<DeviceFile> DeviceFiles::list(const QString &root)
{
    QVector<DeviceFile> files;
    const QString usb = root + QStringLiteral("/sys/bus/usb/devices/");
    const QString hidraw = root + QStringLiteral("/sys/class/hidraw/");
    for (const QString &name : entriesOf(usb))
        addUsbDevice(usb + name, files);
    for (const QString &name : entriesOf(hidraw))
        addHidInterface(hidraw + name, name, files);
    return files;
}

bool DeviceFiles::isRefused(const QString &path)
{
    return access(QFile::encodeName(path).constData(), R_OK | W_OK) != 0 &&
           (errno == EACCES || errno == EPERM);
}
