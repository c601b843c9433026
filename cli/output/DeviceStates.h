#pragma once

#include "cli/output/EventSink.h"

#include <QString>

/// The texts for the states of devices.
namespace DeviceStates {

/// Returns the name of a state in the events of --json. Companions rely on these names: do not change one.
QLatin1String nameOf(DeviceInfo::State state);

/// Returns a state in the user's language.
QString describe(DeviceInfo::State state);

/// Returns one line about a device: position, ids, model and state.
QString describe(const DeviceInfo &device);

} // namespace DeviceStates
