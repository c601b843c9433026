#pragma once

#include "simulator/bus/BusDescription.h"

#include <QByteArray>

/// The one report that switches a simulated device into its bootloader. Written down here a second
/// time, apart from the program under test, so that a mistake there cannot hide behind its copy.
QByteArray updateModeReport(ReportAnswer::Layout layout);
