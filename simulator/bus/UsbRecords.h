#pragma once

#include "simulator/bus/BusPresenter.h"

#include <QByteArray>

/// Creates the descriptors of a simulated device.
namespace UsbRecords {

/// Returns the device descriptor, followed by the only configuration with its HID interfaces.
QByteArray descriptors(const BusPresenter::Device &device);
/// Returns a vendor-specific report descriptor with `collections` top-level collections, each with output
/// report 4.
QByteArray reportDescriptor(int collections);
/// The report descriptor of a node: its own, or a made one.
QByteArray reportDescriptor(const HidNodeDescription &node);
/// Returns the known interface numbers of the device in ascending order, without duplicates.
QVector<int> interfaceNumbers(const BusPresenter::Device &device);

} // namespace UsbRecords
