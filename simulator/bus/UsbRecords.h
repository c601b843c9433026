#pragma once

#include "simulator/bus/BusPresenter.h"

#include <QByteArray>

/// The bytes by which a simulated device describes itself.
namespace UsbRecords {

/// Device descriptor followed by the one configuration with its HID interfaces.
QByteArray descriptors(const BusPresenter::Device &device);
/// A vendor report descriptor with `collections` top-level collections, each with output report 4.
QByteArray reportDescriptor(int collections);
/// The report descriptor of a node: its own, or a made one.
QByteArray reportDescriptor(const HidNodeDescription &node);
/// The known interface numbers of the device, each once, ascending.
QVector<int> interfaceNumbers(const BusPresenter::Device &device);

} // namespace UsbRecords
