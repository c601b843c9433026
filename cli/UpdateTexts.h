#pragma once

#include "cli/EventSink.h"

#include <QString>

#include <optional>

/// The texts that a person sees of an update.
namespace LiveLine {

/// Returns the name of a stage for a person.
QString nameOf(UpdateStage stage);

/// Returns the stage, percentage, amount, rate and time left in one line of at most `width` characters.
/// `elapsedMs` is the time that the stage has taken; the rate is left out during its first second.
QString text(UpdateStage stage, const std::optional<UpdateProgress> &progress, qint64 elapsedMs, int width);

/// Returns the sentences that say how an update ended, and what to do if it did not succeed.
QString ending(const UpdateSummary &summary);

} // namespace LiveLine
