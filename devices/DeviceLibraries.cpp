#include "devices/DeviceLibraries.h"

#include <QDebug>

#include <hidapi.h>
#include <libusb.h>

DeviceLibraries::~DeviceLibraries()
{
    if (m_hidReady)
        hid_exit();
    if (m_usbReady)
        libusb_exit(nullptr);
}

QString DeviceLibraries::usbVersion()
{
    const libusb_version &version = *libusb_get_version();
    return QStringLiteral("%1.%2.%3").arg(version.major).arg(version.minor).arg(version.micro);
}

QString DeviceLibraries::hidVersion()
{
    return QString::fromLatin1(hid_version_str());
}

bool DeviceLibraries::initialiseUsb()
{
    const int result = libusb_init(nullptr);
    qDebug() << "libusb_initRET:" << result;
    m_usbReady = result == 0;
    return m_usbReady;
}

bool DeviceLibraries::initialiseHid()
{
    m_hidReady = hid_init() == 0;
    if (!m_hidReady)
        qDebug() << "Failed to initialize HID library.";
    return m_hidReady;
}
