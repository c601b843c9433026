#pragma once

#include "devices/BusInventory.h"

#include <QByteArray>
#include <QJsonObject>

#include <optional>

/// What stands on the buses, in the form of a report.
namespace BusReport {

/// Returns which devices a report describes in detail: those of the model table's vendors, to which that of
/// the bootloader belongs.
BusInventory::IsWanted wantedVendors();

/// Returns the buses, and what the program decides about them in normal mode. `controlList` is the contents
/// of the control list, or nothing if that cannot be read.
QJsonObject of(const BusInventory &inventory, const std::optional<QByteArray> &controlList);

} // namespace BusReport
