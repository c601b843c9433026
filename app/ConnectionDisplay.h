#pragma once

#include "app/MainWindowWidgets.h"
#include "devices/ConnectionMonitor.h"

/// Shows what a look at the buses has found, and presses the start button where that is asked for.
void showConnection(const MonitorOutcome &outcome, const MainWindowWidgets &widgets);
