#pragma once

#include "simulator/bus/BusDescription.h"
#include "simulator/bus/BusPresenter.h"
#include "simulator/bus/BusServer.h"

#include <QJsonObject>

/// What every controller of a simulated bus does, whatever it shows its devices with.
namespace BusController {

/// The bus description, or the bus in the report, that the application's arguments name; without one, says
/// why on the standard error.
std::optional<BusDescription> readDescription();

/// Shows the described devices through `presenter` and serves them, until it is asked to end. Prints
/// the ready line, in which `environment` and the bus's own address tell how a program finds itself
/// on this bus. Returns the exit code.
int serve(const BusDescription &description, BusPresenter &presenter, QJsonObject environment,
          BusServer::FurtherOperations further = {});

/// Says it on the standard error and returns the exit code.
int fail(const QString &text);

} // namespace BusController
