#pragma once

#include "cli/output/EventSink.h"

#include <QString>

#include <optional>

/// The texts about an update for the user, in the user's language.
namespace UpdateTexts {

/// Returns the name of a stage; empty for a stage that is not shown.
QString stageName(UpdateStage stage);

/// Returns stage, percentage, amount, rate and remaining time in one line of at most `width` characters.
/// `elapsedMs` is the time that the stage has taken; the rate is left out during its first second.
QString progressLine(UpdateStage stage, const std::optional<UpdateProgress> &progress, qint64 elapsedMs,
                     int width);

/// Returns the sentences that say how an update ended, and what to do if it did not succeed.
QString ending(const UpdateSummary &summary);

} // namespace UpdateTexts
