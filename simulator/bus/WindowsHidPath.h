#pragma once

#include "simulator/bus/BusPresenter.h"

/// Generates paths of HID interfaces as on Windows.
namespace WindowsHidPath {

/// Returns the path of one top-level collection (counted from 1) of a node of the device. As on a real system
/// it is in lower case and contains the interface ("mi_00") and the collection ("col04") only if there are
/// several of them.
QByteArray of(const BusPresenter::Device &device, int node, int collection);

/// Returns how often an enumeration lists the node: once for each of its collections.
int collectionsOf(const HidNodeDescription &node);

} // namespace WindowsHidPath
