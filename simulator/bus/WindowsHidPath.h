#pragma once

#include "simulator/bus/BusPresenter.h"

/// The paths that Windows gives HID interfaces.
namespace WindowsHidPath {

/// The path of one top-level collection (counted from 1) of a node of the device. As on a real
/// system it is in small letters, names the interface ("mi_00") only where the device has several,
/// and the collection ("col04") only where the interface has several.
QByteArray of(const BusPresenter::Device &device, int node, int collection);

/// How often an enumeration lists the node: once for each of its collections.
int collectionsOf(const HidNodeDescription &node);

} // namespace WindowsHidPath
