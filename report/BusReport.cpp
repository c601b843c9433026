#include "report/BusReport.h"

#include "devices/Bootloader.h"
#include "devices/ConnectionState.h"
#include "devices/ControlledDeviceList.h"
#include "devices/UsbId.h"
#include "devices/hid/HidScan.h"
#include "devices/models/ModelTable.h"
#include "report/UsbInterfaces.h"
#include "support/log/QuietReporter.h"

#include <QJsonArray>
#include <QSet>

#include <algorithm>

namespace {

QString hex(const QByteArray &bytes)
{
    return QString::fromLatin1(bytes.toHex());
}

QJsonObject usbDevice(const UsbRecord &record, const ModelTable &table)
{
    QJsonObject device{{QStringLiteral("vendorId"), UsbId::text(record.vendorId)},
                       {QStringLiteral("productId"), UsbId::text(record.productId)},
                       {QStringLiteral("class"), record.deviceClass}};
    if (record.descriptor.isEmpty())
        return device;
    const bool isBootloader = Bootloader::hasIds(record.vendorId, record.productId);
    const ModelRow *row =
        isBootloader ? nullptr : table.find(record.vendorId, record.productId, LaunchOptions());
    const QString model = row ? QString(row->name) : QString();
    QJsonArray configurations;
    QJsonArray interfaces;
    for (const QByteArray &configuration : record.configurations) {
        configurations.append(hex(configuration));
        for (const QJsonValue each : UsbInterfaces::of(configuration))
            interfaces.append(each);
    }
    device.insert(QStringLiteral("position"), record.position);
    device.insert(QStringLiteral("model"), model);
    device.insert(QStringLiteral("bootloader"), isBootloader);
    device.insert(QStringLiteral("iap"), row && row->iapFlag != 0);
    device.insert(QStringLiteral("marker"), QString(HidScan::markerOf(model)));
    device.insert(QStringLiteral("descriptor"), hex(record.descriptor));
    device.insert(QStringLiteral("configurations"), configurations);
    device.insert(QStringLiteral("interfaces"), interfaces);
    return device;
}

QJsonObject hidInterface(const HidRecord &record)
{
    const HidInterface &seen = record.seen;
    return {{QStringLiteral("vendorId"), UsbId::text(seen.vendorId)},
            {QStringLiteral("productId"), UsbId::text(seen.productId)},
            {QStringLiteral("position"), record.position},
            {QStringLiteral("path"), seen.path.isNull() ? QJsonValue() : QString::fromUtf8(seen.path)},
            {QStringLiteral("interface"), seen.interfaceNumber},
            {QStringLiteral("markers"), seen.markers},
            {QStringLiteral("usagePage"), seen.usagePage},
            {QStringLiteral("usage"), seen.usage},
            {QStringLiteral("opens"), record.opens},
            {QStringLiteral("reportDescriptor"),
             record.reportDescriptor.isNull() ? QJsonValue() : hex(record.reportDescriptor)}};
}

QLatin1String nameOf(ConnectionState state)
{
    switch (state) {
    case ConnectionState::OneBootloader:
        return QLatin1String("bootloader");
    case ConnectionState::SeveralBootloaders:
        return QLatin1String("several-bootloaders");
    case ConnectionState::DeviceStartsItself:
    case ConnectionState::Device:
        return QLatin1String("device");
    case ConnectionState::IapDevice:
        return QLatin1String("iap-device");
    case ConnectionState::Nothing:
        break;
    }
    return QLatin1String("nothing");
}

/// Returns the index of the interface that the HID scan would take; -1 if there is none.
int pickedInterface(const QVector<HidRecord> &interfaces, const UsbRecord &device, QLatin1String marker)
{
    const auto picked = std::find_if(interfaces.begin(), interfaces.end(), [&](const HidRecord &each) {
        return HidScan::isWanted(each.seen, device.vendorId, device.productId, marker) && each.opens;
    });
    return picked == interfaces.end() ? -1 : static_cast<int>(picked - interfaces.begin());
}

/// Returns what one tick of the connection monitor would decide.
QJsonObject decision(const BusInventory &inventory, const ModelTable &table,
                     const std::optional<QByteArray> &controlList)
{
    ConnectionState state = ConnectionState::Nothing;
    QString model;
    QJsonValue picked;
    const auto bootloaders =
        std::count_if(inventory.usb.begin(), inventory.usb.end(), [](const UsbRecord &each) {
            return Bootloader::hasIds(each.vendorId, each.productId);
        });
    if (bootloaders > 0) {
        state = bootloaders == 1 ? ConnectionState::OneBootloader : ConnectionState::SeveralBootloaders;
    } else {
        for (const UsbRecord &each : inventory.usb) {
            const ModelRow *row = table.find(each.vendorId, each.productId, LaunchOptions());
            if (!row)
                continue;
            ChosenDevice device;
            device.name = row->name;
            device.iapFlag = row->iapFlag;
            QuietReporter quiet;
            state =
                stateOf(device, LaunchOptions(),
                        controlList && ControlledDeviceList::parseDevices(*controlList, device.name, quiet));
            model = device.name;
            const QLatin1String marker = HidScan::markerOf(model);
            if (!marker.isEmpty())
                picked = pickedInterface(inventory.hid, each, marker);
            break;
        }
    }
    return {{QStringLiteral("state"), nameOf(state)},
            {QStringLiteral("model"), model},
            {QStringLiteral("interface"), picked}};
}

} // namespace

BusInventory::IsWanted BusReport::wantedVendors()
{
    QSet<quint32> vendors;
    const ModelTable table;
    for (const ModelRow &row : table.rows())
        vendors.insert(row.vendorId);
    return [vendors](quint32 vendorId) {
        return vendors.contains(vendorId);
    };
}

QJsonObject BusReport::of(const BusInventory &inventory, const std::optional<QByteArray> &controlList)
{
    const ModelTable table;
    QJsonArray usb;
    for (const UsbRecord &record : inventory.usb)
        usb.append(usbDevice(record, table));
    QJsonArray hid;
    for (const HidRecord &record : inventory.hid)
        hid.append(hidInterface(record));
    return {{QStringLiteral("usbCount"), inventory.usbCount},
            {QStringLiteral("usb"), usb},
            {QStringLiteral("hid"), hid},
            {QStringLiteral("otherHid"), inventory.otherHid},
            {QStringLiteral("decision"), decision(inventory, table, controlList)}};
}
