#pragma once

#include "cli/EventSink.h"

#include <QString>

/// The states of devices in words.
namespace DeviceStates {

/// Returns the name that the events of --json use. Do not change one.
QLatin1String nameOf(DeviceInfo::State state);

/// Returns a state in the language of the person.
QString describe(DeviceInfo::State state);

/// Returns one line about a device: position, ids, model and state.
QString describe(const DeviceInfo &device);

} // namespace DeviceStates
