#pragma once

#include "devices/BusInventory.h"

#include <QByteArray>
#include <QJsonObject>

#include <optional>

/// The part of a report that describes the USB and HID buses.
namespace BusReport {

/// Returns the filter for devices that a report describes in detail: those of the model table's vendors,
/// which include the bootloader's.
BusInventory::IsWanted wantedVendors();

/// Returns the buses and the decision that the program makes about them in normal mode. `controlList` is the
/// contents of the control list, or nothing if the list cannot be read.
QJsonObject of(const BusInventory &inventory, const std::optional<QByteArray> &controlList);

} // namespace BusReport
