#pragma once

#include "session/UpdateResult.h"

#include <QLatin1String>

/// The names that the events of --json use. docs/cli-events.schema.json lists them for companions: do not
/// change or remove one.
namespace EventNames {

QLatin1String of(UpdateStage stage);
QLatin1String of(UpdateReason reason);
QLatin1String of(UpdateResult::Outcome outcome);

} // namespace EventNames
