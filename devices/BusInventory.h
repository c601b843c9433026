#pragma once

#include "devices/hid/HidPort.h"

#include <QByteArray>
#include <QString>
#include <QVector>

#include <functional>

/// One device of the USB bus, as it describes itself. Of a device that is not among the wanted ones only the
/// ids and the class are filled in.
struct UsbRecord
{
    quint16 vendorId = 0;
    quint16 productId = 0;
    quint8 deviceClass = 0;
    /// The 18 bytes of the device descriptor.
    QByteArray descriptor;
    /// The descriptors of each configuration that could be read, as the device sends them.
    QVector<QByteArray> configurations;
    /// Bus and ports from the root hub on, as in "1-2.3"; empty where the system does not tell.
    QString position;
};

/// One HID interface of a wanted device.
struct HidRecord
{
    HidInterface seen;
    /// Null where the system does not tell.
    QByteArray reportDescriptor;
    /// Where its device is connected; empty where the system does not tell.
    QString position;
    /// Whether it could be opened just now.
    bool opens = false;
};

/// What stands on the buses, in more detail than the scans need.
struct BusInventory
{
    /// What the list call returned: the number of devices, or a negative error.
    qint64 usbCount = 0;
    /// In bus order.
    QVector<UsbRecord> usb;
    /// In the order of the enumeration.
    QVector<HidRecord> hid;
    /// How many HID interfaces of other devices there are.
    int otherHid = 0;

    /// Decides by its vendor id whether a device is looked at in detail.
    using IsWanted = std::function<bool(quint32 vendorId)>;

    /// Looks at both buses. Opens the HID interfaces of wanted devices for a moment, and no other device.
    /// `usbReady` tells whether libusb was initialised. May be called from any thread.
    static BusInventory read(bool usbReady, HidPort &port, const IsWanted &isWanted);
};

/// The part of it that only libusb can tell.
void readUsbInventory(bool usbReady, const BusInventory::IsWanted &isWanted, BusInventory &inventory);
