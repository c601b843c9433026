#pragma once

#include "checks/DeviceInfo.h"
#include "devices/models/ModelTable.h"
#include "devices/usb/UsbBus.h"

#include <QString>
#include <QVector>

/// Finds the connected devices that the model table knows, and those in their bootloader. May be
/// used on any thread, but an object only by one at a time.
class DeviceSearch
{
public:
    /// `bus` must outlive the search. `controlList` is the path of the control list, which is read
    /// for each search.
    DeviceSearch(UsbBus &bus, const QString &controlList);

    /// Returns the devices in bus order.
    QVector<DeviceInfo> find();

private:
    DeviceInfo::State stateOf(const ModelRow &row) const;

    UsbBus &m_bus;
    const QString m_controlList;
    const ModelTable m_table;
};

/// Returns what has changed between two searches: first the devices that were disconnected, then those that
/// are new or in another state.
QVector<DeviceInfo> changesBetween(const QVector<DeviceInfo> &before, const QVector<DeviceInfo> &after);
