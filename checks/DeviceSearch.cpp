#include "checks/DeviceSearch.h"

#include "devices/Bootloader.h"
#include "devices/ControlledDeviceList.h"
#include "devices/RefusedDevice.h"
#include "support/log/QuietReporter.h"

#include <libusb.h>

#include <algorithm>

DeviceSearch::DeviceSearch(UsbBus &bus, const QString &controlList) : m_bus(bus), m_controlList(controlList)
{
}

QVector<DeviceInfo> DeviceSearch::find()
{
    const UsbBus::Listing listing = m_bus.list();
    QVector<DeviceInfo> devices;
    for (int i = 0; i < listing.descriptors.size(); ++i) {
        const libusb_device_descriptor &seen = listing.descriptors.at(i);
        DeviceInfo device;
        device.vendorId = seen.idVendor;
        device.productId = seen.idProduct;
        device.position = listing.positions.value(i);
        const ModelRow *row = m_table.find(seen.idVendor, seen.idProduct, LaunchOptions());
        if (Bootloader::hasIds(seen.idVendor, seen.idProduct)) {
            device.state = DeviceInfo::State::InBootloader;
        } else if (row) {
            device.model = row->name;
            device.state = stateOf(*row);
        } else {
            continue;
        }
        devices.append(device);
    }
    return devices;
}

DeviceInfo::State DeviceSearch::stateOf(const ModelRow &row) const
{
    QuietReporter quiet;
    if (!ControlledDeviceList::findDevForJson(m_controlList, row.name, quiet))
        return DeviceInfo::State::SwitchedOff;
    const QString refused = findRefusedDeviceFile([&row](quint32 vendorId, quint32 productId) {
        return vendorId == row.vendorId && productId == row.productId;
    });
    if (!refused.isEmpty())
        return DeviceInfo::State::NoPermission;
    return row.iapFlag == 0 ? DeviceInfo::State::Ready : DeviceInfo::State::NeedsIapProgrammer;
}

QVector<DeviceInfo> changesBetween(const QVector<DeviceInfo> &before, const QVector<DeviceInfo> &after)
{
    const auto isSameDevice = [](const DeviceInfo &a, const DeviceInfo &b) {
        return a.position == b.position && a.vendorId == b.vendorId && a.productId == b.productId;
    };
    // Without positions two devices may look the same, so each device is matched with one other only.
    QVector<DeviceInfo> unmatchedBefore = before;
    QVector<DeviceInfo> changed;
    for (const DeviceInfo &device : after) {
        if (!unmatchedBefore.removeOne(device))
            changed.append(device);
    }
    QVector<DeviceInfo> changes;
    QVector<DeviceInfo> unmatchedAfter = changed;
    for (DeviceInfo old : qAsConst(unmatchedBefore)) {
        const auto match = std::find_if(unmatchedAfter.begin(), unmatchedAfter.end(),
                                        [&](const DeviceInfo &device) { return isSameDevice(device, old); });
        if (match != unmatchedAfter.end()) {
            unmatchedAfter.erase(match);
            continue;
        }
        old.connected = false;
        changes.append(old);
    }
    return changes + changed;
}
