#pragma once

#include "simulator/bus/BusDescription.h"
#include "simulator/bus/BusPresenter.h"
#include "simulator/bus/BusServer.h"

#include <QJsonObject>

/// The parts that all controllers of a simulated bus have in common, whatever presenter they use.
namespace BusController {

/// Reads the bus description, or the bus in the report, that is named in the application's arguments. On
/// failure prints the reason to standard error and returns nothing.
std::optional<BusDescription> readDescription();

/// Presents the described devices through `presenter` and serves requests until it is told to quit. Prints
/// the ready line, with `environment` and the address of the bus, from which a program on the bus is started.
/// Returns the exit code.
int serve(const BusDescription &description, BusPresenter &presenter, QJsonObject environment,
          BusServer::FurtherOperations further = {});

/// Prints an error to standard error and returns the exit code.
int fail(const QString &text);

} // namespace BusController
