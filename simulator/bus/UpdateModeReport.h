#pragma once

#include "simulator/bus/BusDescription.h"

#include <QByteArray>

/// Returns the only report that switches a simulated device into its bootloader. Intentional: implemented
/// independently of the program under test, so that the simulator does not repeat its mistakes.
QByteArray updateModeReport(ReportAnswer::Layout layout);
