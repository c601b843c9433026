#include "app/DeviceLibraries.h"

#include <QCoreApplication>
#include <QDebug>
#include <QMessageBox>

#include <hidapi.h>
#include <libusb.h>

namespace {

void warnAndAskToQuit(const QString &text)
{
    QMessageBox box(QMessageBox::Warning, QStringLiteral("警告"), text, QMessageBox::Ok);
    box.setDefaultButton(QMessageBox::Ok);
    box.exec();
    QCoreApplication::exit(0);
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
        warnAndAskToQuit(QStringLiteral("libusb初始化失败"));
}

void DeviceLibraries::initialiseHid()
{
    m_hidReady = hid_init() == 0;
    if (m_hidReady)
        return;
    qDebug() << "Failed to initialize HID library.";
    warnAndAskToQuit(QStringLiteral("HIDAPI初始化失败"));
}
