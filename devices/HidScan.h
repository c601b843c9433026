#pragma once

#include "devices/ChosenDevice.h"
#include "devices/HidPort.h"
#include "support/Reporter.h"

#include <QString>

#include <memory>

/// Finds the interface of a composite device that takes the update-mode report, by a marker in its
/// path. GUI thread.
namespace HidScan {

/// Returns the word in its path, or in its markers, by which the interface of the model `name` is found;
/// empty for a model that needs no certain one.
QLatin1String markerOf(const QString &name);

/// Returns whether the interface bears the marker, in whatever letter case. An empty marker is never borne.
bool bears(const HidInterface &seen, QLatin1String marker);

/// Looks through all HID interfaces for the one that the model `name` needs and opens it: the
/// first one that bears the marker and can be opened. Null when there is none. Each interface
/// looked at adds a line to the file `interfaceLogPath`.
std::unique_ptr<HidDevice> findInterface(HidPort &port, const QString &name, quint32 vendorId,
                                         quint32 productId, Reporter &reporter,
                                         const QString &interfaceLogPath);

/// The same for `device`, which keeps its earlier handle when nothing is found. A handle that is
/// replaced is closed as soon as nobody writes to it any more.
void run(HidPort &port, ChosenDevice &device, Reporter &reporter, const QString &interfaceLogPath);

} // namespace HidScan
