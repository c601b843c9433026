#pragma once

#include "app/window/MainWindowWidgets.h"
#include "devices/ConnectionMonitor.h"

/// Shows the result of one monitor tick in the status label and the device-model label. GUI thread.
void showConnection(const MonitorOutcome &outcome, const MainWindowWidgets &widgets);
/// Returns the result of one monitor tick as a text for screen readers: the status, and the device's name if
/// there is one.
QString connectionInWords(const MonitorOutcome &outcome);
