#pragma once

#include "devices/ChosenDevice.h"
#include "devices/hid/HidPort.h"
#include "support/log/Reporter.h"

#include <QString>

#include <memory>

/// Finds the interface of a composite device that accepts the update-mode report, by a marker in its path.
/// findInterface() and run() append to a log file: GUI thread only. The others may be called from any thread.
namespace HidScan {

/// Returns the word in its path, or in its markers, by which the interface of the model `name` is found;
/// empty for a model that needs no certain one.
QLatin1String markerOf(const QString &name);

/// Returns whether the interface belongs to a device with these ids and has the marker in its path, or in its
/// markers, in whatever letter case. Returns false for an interface without a path and for an empty marker.
bool isWanted(const HidInterface &seen, quint32 vendorId, quint32 productId, QLatin1String marker);

/// Opens the HID interface that the model `name` needs: the first wanted one that can be opened. Returns
/// null if there is none. Appends a line to the file `interfaceLogPath` for each interface that is
/// examined.
std::unique_ptr<HidDevice> findInterface(HidPort &port, const QString &name, quint32 vendorId,
                                         quint32 productId, Reporter &reporter,
                                         const QString &interfaceLogPath);

/// Like findInterface(), but stores the handle in `device`, which keeps its earlier handle if nothing is
/// found. A replaced handle is closed once nobody writes to it any more.
void run(HidPort &port, ChosenDevice &device, Reporter &reporter, const QString &interfaceLogPath);

} // namespace HidScan
