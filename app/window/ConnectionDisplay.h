#pragma once

#include "app/window/MainWindowWidgets.h"
#include "devices/ConnectionMonitor.h"

/// Shows the result of one monitor tick in the status label and the device-model label. GUI thread.
void showConnection(const MonitorOutcome &outcome, const MainWindowWidgets &widgets);
