#include "app/DeviceLibraries.h"

#include <QCoreApplication>
#include <QDebug>
#include <QMessageBox>

#include <hidapi.h>
#include <libusb.h>

namespace {

void warn(const QString &text)
{
    QMessageBox box(QMessageBox::Warning, QStringLiteral("警告"), text, QMessageBox::Ok);
    box.setDefaultButton(QMessageBox::Ok);
    box.exec();
}

} // namespace

DeviceLibraries::~DeviceLibraries()
{
    if (m_hidReady)
        hid_exit();
    if (m_usbReady)
        libusb_exit(nullptr);
}

void DeviceLibraries::initialiseUsb()
{
    const int result = libusb_init(nullptr);
    qDebug() << "libusb_initRET:" << result;
    m_usbReady = result == 0;
    if (!m_usbReady)
        warn(QStringLiteral("libusb初始化失败"));
}

void DeviceLibraries::initialiseHid()
{
    m_hidReady = hid_init() == 0;
    if (m_hidReady)
        return;
    qDebug() << "Failed to initialize HID library.";
    warn(QStringLiteral("HIDAPI初始化失败"));
}

void DeviceLibraries::askToQuitAfterFailure() const
{
    if (!m_usbReady || !m_hidReady)
        QCoreApplication::exit(0);
}
